#include "player/library_loader.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

/// A plug-in that needs a library which nothing else in this program needs.
fs::path matroska_plugin() {
    void *const gstreamer = dlopen("libgstreamer-1.0.so.0", RTLD_LAZY);
    Dl_info library{};
    EXPECT_NE(dladdr(dlsym(gstreamer, "gst_init"), &library), 0);
    return fs::path(library.dli_fname).parent_path() / "gstreamer-1.0" / "libgstmatroska.so";
}

bool is_loaded(const char *name) {
    void *const library = dlopen(name, RTLD_LAZY | RTLD_NOLOAD);
    if (library != nullptr) {
        dlclose(library);
    }
    return library != nullptr;
}

constexpr char kNeeded[] = "libgstriff-1.0.so.0";

TEST(LibraryLoader, BadFilesLoadNothing) {
    std::ifstream whole(matroska_plugin(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
    ASSERT_GT(bytes.size(), 4096U);
    const fs::path file = fs::path(testing::TempDir()) / "library_loader_test.so";
    for (const std::size_t length : {0, 1, 4, 16, 63, 64, 65, 120, 400, 1000}) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes.substr(0, length);
        host::load_needed_libraries(file);
    }
    std::string torn = bytes;
    // The header's offset of the segments and their number.
    torn.replace(32, 8, "\xff\xff\xff\xff\xff\xff\xff\x7f", 8);
    torn.replace(56, 2, "\xff\xff", 2);
    std::ofstream(file, std::ios::binary | std::ios::trunc) << torn;
    host::load_needed_libraries(file);
    host::load_needed_libraries(fs::path(testing::TempDir()));
    host::load_needed_libraries(file.string() + ".missing");
    fs::remove(file);

    EXPECT_FALSE(is_loaded(kNeeded));
}

TEST(LibraryLoader, LoadsWhatAPluginNeedsAndNotThePlugin) {
    ASSERT_FALSE(is_loaded(kNeeded));

    host::load_needed_libraries(matroska_plugin());

    EXPECT_TRUE(is_loaded(kNeeded));
    EXPECT_FALSE(is_loaded(matroska_plugin().string().c_str()));
}

}  // namespace
