// The user's media folders, as the desktop has them.

#include <gtest/gtest.h>
#include <storage.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "child_process.h"

namespace {

// The folders are taken from the environment once in a process.
const std::string &home() {
    static const child::TemporaryFolder folder;
    static const bool set = [] {
        const std::string config = folder.path() + "/config";
        std::filesystem::create_directories(config);
        std::ofstream(config + "/user-dirs.dirs")
            << "XDG_VIDEOS_DIR=\"$HOME/My Films\"\nXDG_MUSIC_DIR=\"/srv/music\"\n";
        return setenv("HOME", folder.path().c_str(), 1) == 0 &&
               setenv("XDG_CONFIG_HOME", config.c_str(), 1) == 0;
    }();
    EXPECT_TRUE(set);
    return folder.path();
}

class Storage : public testing::Test {
protected:
    Storage() : home_(home()) {}

    static std::string folder(storage_directory_e type) {
        char *path = nullptr;
        EXPECT_EQ(storage_get_directory(STORAGE_INTERNAL, type, &path), STORAGE_ERROR_NONE);
        const std::unique_ptr<char, decltype(&std::free)> owner(path, &std::free);
        return path != nullptr ? path : "";
    }

    const std::string home_;
};

TEST_F(Storage, HasItsRootInTheHomeFolder) {
    char *path = nullptr;
    ASSERT_EQ(storage_get_root_directory(STORAGE_INTERNAL, &path), STORAGE_ERROR_NONE);
    const std::unique_ptr<char, decltype(&std::free)> owner(path, &std::free);
    EXPECT_EQ(path, home_);
}

TEST_F(Storage, HasTheFoldersThatTheUserHasChosen) {
    EXPECT_EQ(folder(STORAGE_DIRECTORY_VIDEOS), home_ + "/My Films");
    EXPECT_EQ(folder(STORAGE_DIRECTORY_MUSIC), "/srv/music");
}

TEST_F(Storage, HasFoldersUnderHomeForTheRest) {
    EXPECT_EQ(folder(STORAGE_DIRECTORY_IMAGES), home_ + "/Pictures");
    EXPECT_EQ(folder(STORAGE_DIRECTORY_SOUNDS), home_ + "/Sounds");
    EXPECT_EQ(folder(STORAGE_DIRECTORY_SYSTEM_RINGTONES), home_ + "/Ringtones");
}

TEST_F(Storage, RefusesWhatItDoesNotHave) {
    char *path = nullptr;
    EXPECT_EQ(storage_get_root_directory(1, &path), STORAGE_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(storage_get_directory(1, STORAGE_DIRECTORY_MUSIC, &path),
              STORAGE_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(storage_get_directory(0, static_cast<storage_directory_e>(9), &path),
              STORAGE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(storage_get_directory(0, static_cast<storage_directory_e>(-1), &path),
              STORAGE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(storage_get_root_directory(0, nullptr), STORAGE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(storage_get_directory(0, STORAGE_DIRECTORY_MUSIC, nullptr),
              STORAGE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(path, nullptr);
}

}  // namespace
