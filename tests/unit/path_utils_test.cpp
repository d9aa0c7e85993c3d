// Media paths: what they are, where they lie, what the user is shown for them.

#include <Ecore_File.h>
#include <dlog.h>
#include <gmock/gmock.h>
#include <libintl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TslUtils.h"
#include "log_lines.h"
#include "mock_platform/fake_settings.h"
#include "mock_platform/mock_storage.h"

namespace {

using testing::_;
using testing::Return;
using testing::StrEq;

constexpr char CLOUD[] =
    "/opt/usr/apps/com.orvane.nimbus-relay/shared/data/.cloud/dropbox/cache/root";

/// In which domain the program looked a text of its own up.
const char *looked_up_in = nullptr;

}  // namespace

// Without a catalogue a text's id stands for it.
extern "C" char *dcgettext(const char *domain, const char *id, int) noexcept {
    // The libraries have their texts too.
    if (std::strncmp(id, "IDS_", 4) == 0) {
        looked_up_in = domain;
    }
    return const_cast<char *>(id);
}
extern "C" char *dgettext(const char *domain, const char *id) noexcept {
    return dcgettext(domain, id, LC_MESSAGES);
}

namespace {

/// A text of the program's, freed; none for null.
std::optional<std::string> taken(char *text) {
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

/// A folder of the test's own.
class Folder {
public:
    Folder() {
        std::string name = testing::TempDir() + "tessel-paths-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::string operator/(const std::string &name) const { return m_path + "/" + name; }
    std::string make(const std::string &name) const {
        std::ofstream(*this / name) << "x";
        return *this / name;
    }

private:
    std::string m_path;
};

TEST(StreamingPath, HoldsASchemeAnywhere) {
    for (const char *uri : {"rtp://x", "rtsp://x", "http://x", "https://x", "/a/http://b"}) {
        EXPECT_TRUE(TslUtils::isStreamingPath(uri)) << uri;
    }
    for (const char *uri : {"HTTP://x", "/a/b.mp4", "file:///x", "http:/x", ""}) {
        EXPECT_FALSE(TslUtils::isStreamingPath(uri)) << uri;
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST(StreamingPath, ThatIsNullIsLogged) {
    EXPECT_FALSE(TslUtils::isStreamingPath(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no szUri.")}));
}

TEST(FileExistence, IsThatOfAnythingWithThePath) {
    const Folder folder;
    EXPECT_TRUE(TslUtils::isFileExisted(folder.make("file").c_str()));
    EXPECT_TRUE(TslUtils::isFileExisted((folder / "").c_str()));
    EXPECT_FALSE(TslUtils::isFileExisted((folder / "none").c_str()));
    EXPECT_FALSE(TslUtils::isFileExisted(""));
    EXPECT_FALSE(TslUtils::isFileExisted(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no szFullPath.")}));
}

TEST(ThreeGpFile, HasTheExtensionInLowerCase) {
    EXPECT_TRUE(TslUtils::is3gpFile("/v/a.3gp"));
    EXPECT_TRUE(TslUtils::is3gpFile("a.b.3gp"));
    for (const char *path : {"a.3GP", "a.3gp.bak", "a.3gpp", "a.", "/a.3gp/b"}) {
        EXPECT_FALSE(TslUtils::is3gpFile(path)) << path;
    }
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_FALSE(TslUtils::is3gpFile("3gp"));
    EXPECT_FALSE(TslUtils::is3gpFile(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is no extension."), logs::warn("There is no szFileUri.")}));
}

TEST(PrivateStorage, IsWhatTheSettingSays) {
    mock::fake_vconf().set_bool("memory/setting/personal", true);
    EXPECT_TRUE(TslUtils::isPrivateStorage());
    EXPECT_TRUE(LoggedInfo("Personal Status = 1"));
    mock::fake_vconf().set_bool("memory/setting/personal", false);
    EXPECT_FALSE(TslUtils::isPrivateStorage());
    EXPECT_TRUE(LoggedInfo("Personal Status = 0"));
    EXPECT_TRUE(NotLogged("failed"));
}

TEST(PrivateStorage, IsNoneWithoutTheSetting) {
    EXPECT_FALSE(TslUtils::isPrivateStorage());
    EXPECT_TRUE(LoggedInOrder(
        {logs::info("To get information about TSL_UTIL_VCONF_KEY_PERSONAL_TAG is failed."),
         logs::info("Personal Status = 0")}));
}

struct Directory {
    const char *name;
    const char *(*get)();
    int type;
    const char *error;
};

class MediaDirectory : public testing::TestWithParam<Directory> {};

TEST_P(MediaDirectory, IsTheInternalStorages) {
    EXPECT_CALL(mock::storage(),
                storage_get_directory(0, static_cast<storage_directory_e>(GetParam().type), _));
    EXPECT_EQ(GetParam().get(), "/opt/usr/media/" + std::to_string(GetParam().type));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_P(MediaDirectory, ThatFailsIsLoggedAndLeavesNothing) {
    EXPECT_CALL(mock::storage(), storage_get_directory)
        .WillOnce([](int, storage_directory_e, char **path) {
            *path = strdup("freed by the caller");
            return STORAGE_ERROR_NOT_SUPPORTED;
        });
    EXPECT_EQ(GetParam().get(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(GetParam().error)}));
}

INSTANTIATE_TEST_SUITE_P(
    Table, MediaDirectory,
    testing::Values(Directory{"Music", TslUtils::getMediaMusicDirectory, 5,
                              "* Critical * It is failed to get music directory of storage."},
                    Directory{"Videos", TslUtils::getMediaVideosDirectory, 2,
                              "* Critical * It is failed to get videos directory of storage."},
                    Directory{"Sounds", TslUtils::getMediaSoundsDirectory, 1,
                              "* Critical * It is failed to get sounds directory of storage."}),
    [](const auto &info) { return info.param.name; });

TEST(MediaRoot, IsTheInternalStorages) {
    EXPECT_CALL(mock::storage(), storage_get_root_directory(0, _));
    EXPECT_STREQ(TslUtils::getMediaRootDirectory(), "/opt/usr/media");
}

TEST(MediaRoot, ThatFailsIsLoggedAndLeavesNothing) {
    EXPECT_CALL(mock::storage(), storage_get_root_directory).WillOnce([](int, char **path) {
        *path = strdup("freed by the caller");
        return STORAGE_ERROR_NOT_SUPPORTED;
    });
    EXPECT_EQ(TslUtils::getMediaRootDirectory(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * It is failed to get root directory of storage.")}));
}

TEST(PrivateContent, LiesInThePrivateStorage) {
    EXPECT_TRUE(TslUtils::isPrivateContent("/opt/storage/PrivateStorage/a.mp4"));
    EXPECT_TRUE(TslUtils::isPrivateContent("/x/opt/storage/PrivateStorage"));
    for (const char *path : {"/opt/storage/privatestorage/a", "/opt/storage/sdcard/a", "/a", "",
                             "/opt/storage/sdcard/opt/storage/PrivateStorage/a"}) {
        EXPECT_FALSE(TslUtils::isPrivateContent(path)) << path;
    }
    EXPECT_FALSE(TslUtils::isPrivateContent(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * File Path is nullptr.")}));
}

TEST(Title, IsTheFilesNameWithoutExtension) {
    EXPECT_EQ(taken(TslUtils::getTitleFromPath("/v/a.b.mp4")), "a.b");
    EXPECT_EQ(taken(TslUtils::getTitleFromPath("a.mp4")), "a");
    EXPECT_EQ(taken(TslUtils::getTitleFromPath("/v/a")), "a");
    EXPECT_EQ(taken(TslUtils::getTitleAndExtFromPath("/v/a.b.mp4")), "a.b.mp4");
    EXPECT_TRUE(LoggedInfo("szTitleAndExt : a.b.mp4"));
    EXPECT_TRUE(NoFaultLogged());
}

TEST(Title, OfNoPathIsNone) {
    for (const char *path : {static_cast<const char *>(nullptr), ""}) {
        logs::clear();
        EXPECT_FALSE(taken(TslUtils::getTitleFromPath(path)));
        EXPECT_FALSE(taken(TslUtils::getTitleAndExtFromPath(path)));
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * File Path is nullptr"),
                                      logs::error("* Critical * File Path is nullptr")}));
    }
}

TEST(Subtitle, IsTheFirstOfItsExtensionsThatExists) {
    const Folder folder;
    const std::string video = folder / "a.mp4";
    EXPECT_FALSE(taken(TslUtils::getSubtitlePathFromPath(video.c_str())));
    std::vector<std::string> made;
    for (const char *extension : {".SMI", ".SUB", ".SRT", ".smi", ".sub", ".srt"}) {
        const std::string subtitle = folder.make(std::string("a") + extension);
        EXPECT_EQ(taken(TslUtils::getSubtitlePathFromPath(video.c_str())), subtitle);
    }
}

TEST(Subtitle, OfAPathWithoutDotHasTheExtensionBehindIt) {
    const Folder folder;
    const std::string subtitle = folder.make("a.srt");
    EXPECT_EQ(taken(TslUtils::getSubtitlePathFromPath((folder / "a").c_str())), subtitle);
}

TEST(Subtitle, TakesTheLastDotOfTheWholePath) {
    const Folder folder;
    std::filesystem::create_directory(folder / "a.b");
    const std::string subtitle = folder.make("a.sub");
    EXPECT_EQ(taken(TslUtils::getSubtitlePathFromPath((folder / "a.b/c").c_str())), subtitle);
}

TEST(Subtitle, OfNoPathIsNone) {
    EXPECT_FALSE(taken(TslUtils::getSubtitlePathFromPath(nullptr)));
    EXPECT_FALSE(taken(TslUtils::getSubtitlePathFromPath("")));
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * File path is nullptr or invalid."));
}

TEST(FolderOfAFile, IsAllBeforeTheLastSlash) {
    EXPECT_EQ(taken(TslUtils::getFolderPathFromFile("/a/b/c.mp4")), "/a/b");
    EXPECT_EQ(taken(TslUtils::getFolderPathFromFile("/c.mp4")), "");
    EXPECT_EQ(taken(TslUtils::getFolderPathFromFile("/a/b/")), "/a/b");
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_FALSE(taken(TslUtils::getFolderPathFromFile(nullptr)));
    EXPECT_FALSE(taken(TslUtils::getFolderPathFromFile("")));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * File Path is NULL"),
                                  logs::error("* Critical * Length of szFilePath is zero.")}));
}

struct Shown {
    const char *name;
    std::string path;
    const char *expected;
};

class ShownPath : public testing::TestWithParam<Shown> {};

TEST_P(ShownPath, HasTheStoragesNameInFront) {
    EXPECT_EQ(taken(TslUtils::convertFilePathToAbstractPath(GetParam().path.c_str())),
              GetParam().expected);
    EXPECT_STREQ(looked_up_in, "tessel");
    EXPECT_TRUE(LoggedInfo(std::string("Converted File Path: [") + GetParam().expected + "]"));
    EXPECT_TRUE(NoFaultLogged());
}

INSTANTIATE_TEST_SUITE_P(
    Table, ShownPath,
    testing::Values(
        Shown{"Internal", "/opt/usr/media/v/a.mp4", "IDS_VIDEO_SBODY_DEVICE_STORAGE/v/a.mp4"},
        Shown{"Cloud", std::string(CLOUD) + "/a.mp4", "IDS_CLOUD_BODY_DROPBOX_ABB/a.mp4"},
        Shown{"SdCard", "/opt/storage/sdcard/a.mp4", "IDS_VIDEO_SBODY_SD_CARD/a.mp4"},
        Shown{"Usb", "/opt/storage/usb/a.mp4", "IDS_VPL_TAB_EXTERNAL_STORAGE/a.mp4"},
        Shown{"Private", "/opt/storage/PrivateStorage/a.mp4",
              "IDS_VIDEO_SBODY_DEVICE_STORAGE/a.mp4"},
        // Cut by length from the front, wherever the storage's path stands.
        Shown{"FurtherIn", "/mnt/opt/storage/usb/a.mp4", "IDS_VPL_TAB_EXTERNAL_STORAGE/usb/a.mp4"},
        Shown{"CloudBeforeInternal", "/opt/usr/media" + std::string(CLOUD),
              "IDS_CLOUD_BODY_DROPBOX_ABBbox/cache/root"},
        Shown{"InternalBeforeSdCard", "/opt/storage/sdcard/opt/usr/media/a",
              "IDS_VIDEO_SBODY_DEVICE_STORAGEdcard/opt/usr/media/a"},
        Shown{"SdCardBeforeUsb", "/opt/storage/usb/opt/storage/sdcard",
              "IDS_VIDEO_SBODY_SD_CARDt/storage/sdcard"}),
    [](const auto &info) { return info.param.name; });

TEST(ShownPathOf, NoStorageIsNone) {
    EXPECT_FALSE(taken(TslUtils::convertFilePathToAbstractPath("/home/a.mp4")));
    EXPECT_FALSE(taken(TslUtils::convertFilePathToAbstractPath("")));
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_FALSE(taken(TslUtils::convertFilePathToAbstractPath(nullptr)));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("FilePath is nullptr.")}));
}

TEST(ShownPathFailure, StorageThatGoesBetweenTwoLooksGivesNull) {
    EXPECT_CALL(mock::storage(), storage_get_root_directory)
        .WillOnce([](int, char **path) {
            *path = strdup("/opt/usr/media");
            return STORAGE_ERROR_NONE;
        })
        .WillOnce(testing::Return(static_cast<int>(STORAGE_ERROR_NOT_SUPPORTED)));
    EXPECT_FALSE(taken(TslUtils::convertFilePathToAbstractPath("/opt/usr/media/a.mp4")));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * It is failed to get root directory of storage.")}));
}

TEST(FindString, AdvancesByTheByteThatIsFound) {
    // The third byte is a line feed, whose number is 10.
    const char source[] = "ab\ncdefghijklmn";
    EXPECT_EQ(TslUtils::findString(source, "\nc"), source + 10);
    EXPECT_TRUE(LoggedInfo("It is found at(2)"));
    // An empty text is found at the start.
    const char first[] = "\x03xyz";
    EXPECT_EQ(TslUtils::findString(first, ""), first + 3);
}

TEST(FindString, TakesAByteAsANumberWithoutSign) {
    std::string source(300, 'x');
    source[5] = '\xc8';
    EXPECT_EQ(TslUtils::findString(source.c_str(), "\xc8"), source.c_str() + 200);
}

TEST(FindString, NeedsBothTextsAndASourceThatIsLongEnough) {
    EXPECT_EQ(TslUtils::findString(nullptr, "a"), nullptr);
    EXPECT_EQ(TslUtils::findString("a", nullptr), nullptr);
    EXPECT_EQ(TslUtils::findString("a", "ab"), nullptr);
    EXPECT_EQ(TslUtils::findString("ab", "c"), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There are no string."), logs::warn("There are no string."),
         logs::warn("The size of the target string is bigger than source string.")}));
}

TEST(PathUtils, LogTheirEntry) {
    TslUtils::isStreamingPath("x");
    TslUtils::isFileExisted("x");
    TslUtils::is3gpFile("x.y");
    TslUtils::isPrivateStorage();
    TslUtils::isPrivateContent("x");
    TslUtils::getMediaRootDirectory();
    TslUtils::getMediaMusicDirectory();
    TslUtils::getMediaVideosDirectory();
    TslUtils::getMediaSoundsDirectory();
    taken(TslUtils::getTitleFromPath("x"));
    taken(TslUtils::getTitleAndExtFromPath("x"));
    taken(TslUtils::getSubtitlePathFromPath("x"));
    taken(TslUtils::getFolderPathFromFile("/x"));
    taken(TslUtils::convertFilePathToAbstractPath("x"));
    TslUtils::findString("x", "x");
    for (const char *function :
         {"isStreamingPath", "isFileExisted", "is3gpFile", "isPrivateStorage", "isPrivateContent",
          "_getStorageType", "getMediaRootDirectory", "getMediaMusicDirectory",
          "getMediaVideosDirectory", "getMediaSoundsDirectory", "getTitleFromPath",
          "getTitleAndExtFromPath", "getSubtitlePathFromPath", "getFolderPathFromFile",
          "convertFilePathToAbstractPath", "findString"}) {
        EXPECT_TRUE(LoggedIn(function, DLOG_INFO, "")) << function;
    }
}

}  // namespace
