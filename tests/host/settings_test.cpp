// System settings: the key file that a user may edit, and what the process itself sets.

#include "settings/settings.h"

#include <gtest/gtest.h>
#include <vconf.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>

#include "child_process.h"

namespace {

// The folder of the settings is taken from the environment once in a process.
const std::string &config_home() {
    static const child::TemporaryFolder folder;
    static const bool set = setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1) == 0 &&
                            unsetenv("LANGUAGE") == 0 && setenv("LC_ALL", "fr_FR.UTF-8", 1) == 0;
    EXPECT_TRUE(set);
    return folder.path();
}

std::string settings_file() {
    return config_home() + "/tessel/settings.ini";
}

std::string read_file() {
    std::ostringstream text;
    text << std::ifstream(settings_file()).rdbuf();
    return text.str();
}

std::optional<std::string> text_of(const char *key) {
    const std::unique_ptr<char, decltype(&std::free)> text(vconf_get_str(key), &std::free);
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

class Settings : public testing::Test {
protected:
    Settings() {
        std::filesystem::create_directories(config_home() + "/tessel");
        std::filesystem::remove(settings_file());
    }
    // Replaced as an editor does it.
    static void write_file(const std::string &text) {
        std::ofstream(settings_file() + ".new") << text;
        std::filesystem::rename(settings_file() + ".new", settings_file());
    }
};

TEST_F(Settings, WithoutAFileNothingIsSet) {
    int value = 42;
    EXPECT_EQ(vconf_get_int("db/test/number", &value), -1);
    EXPECT_EQ(vconf_get_bool("db/test/truth", &value), -1);
    EXPECT_EQ(value, 42);
    EXPECT_FALSE(text_of("db/test/text"));
}

TEST_F(Settings, AreReadFromTheKeyFileByType) {
    write_file("[db/test]\nnumber=-7\ntruth=true\nlie=0\ntext=hello there\n");
    int value = 42;
    EXPECT_EQ(vconf_get_int("db/test/number", &value), 0);
    EXPECT_EQ(value, -7);
    EXPECT_EQ(vconf_get_bool("db/test/truth", &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(vconf_get_bool("db/test/lie", &value), 0);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(text_of("db/test/text"), "hello there");
}

TEST_F(Settings, OfAnotherTypeLeaveTheResultAlone) {
    write_file("[db/test]\nnumber=7x\nlarge=99999999999\ntruth=maybe\n");
    int value = 42;
    EXPECT_EQ(vconf_get_int("db/test/number", &value), -1);
    EXPECT_EQ(vconf_get_int("db/test/large", &value), -1);
    EXPECT_EQ(vconf_get_bool("db/test/truth", &value), -1);
    EXPECT_EQ(value, 42);
}

TEST_F(Settings, RefuseWhatIsNoKey) {
    int value = 42;
    EXPECT_EQ(vconf_get_int(nullptr, &value), -1);
    EXPECT_EQ(vconf_get_bool(nullptr, &value), -1);
    EXPECT_EQ(vconf_get_str(nullptr), nullptr);
    EXPECT_EQ(vconf_get_str(""), nullptr);
    EXPECT_EQ(vconf_get_str("name"), nullptr);
    EXPECT_EQ(vconf_get_str("group/"), nullptr);
    write_file("[db/test]\nnumber=7\n");
    EXPECT_EQ(vconf_get_int("db/test/number", nullptr), -1);
    EXPECT_FALSE(host::set_setting("name", "x"));
}

TEST_F(Settings, FollowTheFileWhenItChanges) {
    write_file("[db/test]\ntext=old\n");
    EXPECT_EQ(text_of("db/test/text"), "old");
    write_file("[db/test]\ntext=new\n");
    EXPECT_EQ(text_of("db/test/text"), "new");
}

TEST_F(Settings, AreWrittenBesideWhatStandsInTheFile) {
    write_file("# kept\n[db/other]\ntext=stays\n");
    EXPECT_TRUE(host::set_setting("db/test/colour", "dark red"));
    EXPECT_EQ(text_of("db/test/colour"), "dark red");
    const std::string file = read_file();
    EXPECT_NE(file.find("# kept"), std::string::npos);
    EXPECT_NE(file.find("text=stays"), std::string::npos);
    EXPECT_NE(file.find("colour=dark red"), std::string::npos);
}

TEST_F(Settings, FollowTheFileAfterTheyWereSetHereToo) {
    EXPECT_TRUE(host::set_setting("db/test/shade", "light"));
    EXPECT_EQ(text_of("db/test/shade"), "light");
    write_file("[db/test]\nshade=dark grey\n");
    EXPECT_EQ(text_of("db/test/shade"), "dark grey");
}

TEST_F(Settings, AreWrittenInOnePiece) {
    write_file("[db/test]\ntext=old\n");
    const std::string file = settings_file();
    // A reader that has the file open keeps the whole old one, so it was replaced, not overwritten.
    std::ifstream reader(file);
    EXPECT_TRUE(host::set_setting("db/test/piece", "1"));
    std::ostringstream seen;
    seen << reader.rdbuf();
    EXPECT_EQ(seen.str(), "[db/test]\ntext=old\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(config_home() + "/tessel"), {}), 1);
}

TEST_F(Settings, OfADamagedFileAreSetAsideAndNotOverwritten) {
    write_file("[db/test]\ntext=kept\nnonsense");
    EXPECT_FALSE(text_of("db/test/text"));
    EXPECT_TRUE(host::set_setting("db/test/new", "1"));
    EXPECT_EQ(read_file(), "[db/test]\nnew=1\n");
    std::ostringstream aside;
    aside << std::ifstream(settings_file() + ".damaged").rdbuf();
    EXPECT_EQ(aside.str(), "[db/test]\ntext=kept\nnonsense");
    std::filesystem::remove(settings_file() + ".damaged");
}

TEST_F(Settings, OfTheMemoryAreNeverWritten) {
    EXPECT_TRUE(host::set_setting("memory/sysman/battery_status_low", "6"));
    int value = 0;
    EXPECT_EQ(vconf_get_int("memory/sysman/battery_status_low", &value), 0);
    EXPECT_EQ(value, 6);
    EXPECT_FALSE(std::filesystem::exists(settings_file()));
}

TEST_F(Settings, ThatCannotBeWrittenHoldForTheProcess) {
    std::filesystem::remove_all(config_home() + "/tessel");
    std::ofstream(config_home() + "/tessel") << "no folder";
    EXPECT_FALSE(host::set_setting("db/test/unwritten", "x"));
    EXPECT_EQ(text_of("db/test/unwritten"), "x");
    std::filesystem::remove(config_home() + "/tessel");
}

TEST_F(Settings, OfTheDesktopHoldForTheProcessAndAreNotWritten) {
    write_file("[db/other]\nkey=1\n");
    EXPECT_TRUE(host::follow_desktop_setting("db/test/desktop", "first"));
    EXPECT_TRUE(host::follow_desktop_setting("db/test/desktop", "second"));
    EXPECT_EQ(text_of("db/test/desktop"), "second");
    EXPECT_EQ(read_file(), "[db/other]\nkey=1\n");
}

TEST_F(Settings, ThatTheUserHasChosenStayWhateverTheDesktopSays) {
    write_file("[db/test]\nearlier=mine\n");
    EXPECT_FALSE(host::follow_desktop_setting("db/test/earlier", "theirs"));
    EXPECT_EQ(text_of("db/test/earlier"), "mine");
    EXPECT_TRUE(host::follow_desktop_setting("db/test/later", "theirs"));
    EXPECT_TRUE(host::set_setting("db/test/later", "mine"));
    EXPECT_FALSE(host::follow_desktop_setting("db/test/later", "theirs"));
    EXPECT_EQ(text_of("db/test/later"), "mine");
}

// Last of this file's, as it sets what the others leave alone.
TEST_F(Settings, LanguageAndRegionComeFromTheEnvironmentUntilTheyAreSet) {
    write_file("[db/menu_widget]\nlanguage=de_DE\nregionformat=de_DE\n");
    EXPECT_EQ(text_of("db/menu_widget/language"), "fr_FR.UTF-8");
    EXPECT_EQ(text_of("db/menu_widget/regionformat"), "fr_FR.UTF-8");
    EXPECT_TRUE(host::set_setting("db/menu_widget/language", "ko_KR"));
    EXPECT_EQ(text_of("db/menu_widget/language"), "ko_KR");
}

}  // namespace
