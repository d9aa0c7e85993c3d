// Preferences: values in a key file that survives a crash, watches that see other processes.

#include <Ecore.h>
#include <app_preference.h>
#include <dlog.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "child_process.h"
#include "log/log.h"
#include "main_loop.h"
#include "settings/preference_value.h"

namespace {

namespace fs = std::filesystem;

// The folder is taken from the environment once in a process.
const std::string &data_home() {
    static const child::TemporaryFolder folder;
    static const bool set = setenv("XDG_DATA_HOME", folder.path().c_str(), 1) == 0;
    EXPECT_TRUE(set);
    return folder.path();
}

std::string folder() {
    return data_home() + "/tessel";
}

std::string file() {
    return folder() + "/preferences.ini";
}

std::string text_of(const std::string &path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::vector<std::string> names_in_folder() {
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder())) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

using Text = std::unique_ptr<char, decltype(&std::free)>;

std::string string_of(const char *key) {
    char *value = nullptr;
    const int result = preference_get_string(key, &value);
    const Text owner(value, &std::free);
    return result == 0 ? value : "(" + std::to_string(result) + ")";
}

int int_of(const char *key) {
    int value = -1;
    EXPECT_EQ(preference_get_int(key, &value), 0) << key;
    return value;
}

void change_elsewhere(const std::string &key, int value) {
    child::Process writer({child::program("preference-probe"), "set", key, std::to_string(value)},
                          {});
    ASSERT_EQ(writer.wait(), 0) << writer.errors();
}

class Preference : public testing::Test {
protected:
    static void SetUpTestSuite() { ecore_init(); }
    static void TearDownTestSuite() { ecore_shutdown(); }

    Preference() { fs::remove_all(data_home() + "/tessel"); }

    // As another program would leave it.
    static void leave_file(const std::string &text) {
        fs::create_directories(folder());
        std::ofstream(file()) << text;
    }
};

TEST_F(Preference, KeepsEachOfTheFourTypes) {
    EXPECT_EQ(preference_set_int("int", -2147483647 - 1), 0);
    EXPECT_EQ(preference_set_double("double", 0.1), 0);
    EXPECT_EQ(preference_set_string("string", "text"), 0);
    EXPECT_EQ(preference_set_boolean("boolean", true), 0);
    EXPECT_EQ(int_of("int"), -2147483647 - 1);
    double real = 0.0;
    EXPECT_EQ(preference_get_double("double", &real), 0);
    EXPECT_EQ(real, 0.1);
    EXPECT_EQ(string_of("string"), "text");
    bool truth = false;
    EXPECT_EQ(preference_get_boolean("boolean", &truth), 0);
    EXPECT_TRUE(truth);
}

TEST_F(Preference, OfAnotherTypeOrAbsentLeavesTheResultAlone) {
    EXPECT_EQ(preference_set_string("k", "5"), 0);
    int number = 42;
    double real = 4.2;
    bool truth = true;
    char *text = nullptr;
    EXPECT_EQ(preference_get_int("k", &number), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_get_double("k", &real), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_get_boolean("k", &truth), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_get_int("missing", &number), PREFERENCE_ERROR_NO_KEY);
    EXPECT_EQ(preference_get_string("missing", &text), PREFERENCE_ERROR_NO_KEY);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(real, 4.2);
    EXPECT_TRUE(truth);
    EXPECT_EQ(text, nullptr);
}

TEST_F(Preference, TakesItsNewTypeWithItsNewValue) {
    EXPECT_EQ(preference_set_string("k", "5"), 0);
    EXPECT_EQ(preference_set_int("k", 6), 0);
    EXPECT_EQ(int_of("k"), 6);
    EXPECT_EQ(string_of("k"), "(" + std::to_string(PREFERENCE_ERROR_INVALID_PARAMETER) + ")");
}

TEST_F(Preference, RefusesWhatIsNoKeyOrNoPlace) {
    int number = 0;
    bool flag = false;
    const auto callback = [](const char *, void *) {};
    for (const char *key : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(preference_set_int(key, 1), PREFERENCE_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(preference_get_int(key, &number), PREFERENCE_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(preference_is_existing(key, &flag), PREFERENCE_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(preference_set_changed_cb(key, callback, nullptr),
                  PREFERENCE_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(preference_unset_changed_cb(key), PREFERENCE_ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(preference_set_int("k", 1), 0);
    EXPECT_EQ(preference_set_string("k", nullptr), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_get_int("k", nullptr), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_get_string("k", nullptr), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_is_existing("k", nullptr), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(preference_set_changed_cb("k", nullptr, nullptr), PREFERENCE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(int_of("k"), 1);
}

TEST_F(Preference, ExistsOnceItIsSet) {
    bool exists = true;
    EXPECT_EQ(preference_is_existing("k", &exists), 0);
    EXPECT_FALSE(exists);
    EXPECT_EQ(preference_set_boolean("k", false), 0);
    EXPECT_EQ(preference_is_existing("k", &exists), 0);
    EXPECT_TRUE(exists);
}

TEST_F(Preference, HasAKeyOfAnyBytes) {
    const std::vector<std::string> keys{" ",         "=",          "a=b",  "[x]",
                                        "a[b]",      "#comment",   "a\nb", "\xff",
                                        "\t",        "\xc3\xa9t",  "%41",  "A",
                                        "db/volume", "../../etc",  "key ", ";",
                                        "\\n",       "a\\x3d\r\n", "\x7f", std::string(3000, 'k')};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(preference_set_int(keys[i].c_str(), static_cast<int>(i)), 0) << keys[i];
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(int_of(keys[i].c_str()), static_cast<int>(i)) << keys[i];
    }
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"preferences.ini"});
}

TEST_F(Preference, HasATextOfAnyBytes) {
    for (const std::string text :
         {"", " ", "  blanks  ", "\"", "\\", "\\\\\\", "a\nb\r\n", "[preferences]", "\xff\xfe",
          "\xc3\xa9\xe2\x82\xac", "#", ";", "%s%n", "\x01\x1b[2J"}) {
        EXPECT_EQ(preference_set_string("k", text.c_str()), 0) << text;
        EXPECT_EQ(string_of("k"), text);
    }
    const std::string large(1000000, 'x');
    EXPECT_EQ(preference_set_string("k", large.c_str()), 0);
    EXPECT_EQ(string_of("k"), large);
}

TEST_F(Preference, KeepsANumberToItsLastBit) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {1.0 / 3.0, Limits::max(), Limits::denorm_min(), -0.0, 1e300,
                               Limits::infinity(), -Limits::infinity()}) {
        EXPECT_EQ(preference_set_double("k", value), 0);
        double read = 42.0;
        EXPECT_EQ(preference_get_double("k", &read), 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(std::signbit(read), std::signbit(value));
    }
    double read = 0.0;
    EXPECT_EQ(preference_set_double("k", Limits::quiet_NaN()), 0);
    EXPECT_EQ(preference_get_double("k", &read), 0);
    EXPECT_TRUE(std::isnan(read));
}

TEST_F(Preference, IsReadableInTheFile) {
    preference_set_int("level", 7);
    preference_set_string("name", "\xc3\xa9 \"x\"\n");
    EXPECT_EQ(text_of(file()),
              "[preferences]\nlevel=int:7\nname=string:\"\xc3\xa9 \\\"x\\\"\\n\"\n");
    struct stat status {};
    ASSERT_EQ(stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(Preference, LeavesWhatElseStandsInTheFile) {
    leave_file("# by hand\n[preferences]\na=int:1\n\n[later]\nkey=kept\n");
    EXPECT_EQ(preference_set_int("b", 2), 0);
    const std::string text = text_of(file());
    EXPECT_NE(text.find("# by hand\n"), std::string::npos);
    EXPECT_NE(text.find("\na=int:1\n"), std::string::npos);
    EXPECT_NE(text.find("\nb=int:2\n"), std::string::npos);
    EXPECT_NE(text.find("[later]\nkey=kept\n"), std::string::npos);
}

TEST_F(Preference, FollowsTheFileAtOnce) {
    leave_file("[preferences]\na=int:1\n");
    EXPECT_EQ(int_of("a"), 1);
    // The same length, and within the same tick of the file system's clock.
    leave_file("[preferences]\na=int:2\n");
    EXPECT_EQ(int_of("a"), 2);
}

TEST_F(Preference, IsWrittenInOnePiece) {
    EXPECT_EQ(preference_set_int("a", 1), 0);
    const std::string before = text_of(file());
    std::ifstream reader(file());
    EXPECT_EQ(preference_set_int("a", 2), 0);
    std::ostringstream seen;
    seen << reader.rdbuf();
    EXPECT_EQ(seen.str(), before);
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"preferences.ini"});
}

TEST_F(Preference, ThatIsSetToWhatItIsCostsNoWrite) {
    EXPECT_EQ(preference_set_int("a", 1), 0);
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(stat(file().c_str(), &before), 0);
    EXPECT_EQ(preference_set_int("a", 1), 0);
    ASSERT_EQ(stat(file().c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

// A crash of the writer.

TEST_F(Preference, IsTheOldOrTheNewOneWhereverItsWriterIsKilled) {
    constexpr std::size_t length = 200000;
    EXPECT_EQ(preference_set_string("witness", "untouched"), 0);
    EXPECT_EQ(preference_set_string("k", std::string(length, 'b').c_str()), 0);
    const std::string a(length, 'a');
    const std::string b(length, 'b');
    int found_a = 0;
    for (int round = 0; round < 100; ++round) {
        child::Process writer(
            {child::program("preference-probe"), "alternate", "k", std::to_string(length)}, {});
        ASSERT_TRUE(writer.prints("writing")) << writer.errors();
        // The rounds spread the moments over several writes.
        std::this_thread::sleep_for(std::chrono::microseconds(round * 97));
        writer.send(SIGKILL);
        ASSERT_EQ(writer.wait(), -SIGKILL);
        const std::string value = string_of("k");
        ASSERT_TRUE(value == a || value == b) << "after round " << round;
        found_a += value == a ? 1 : 0;
        ASSERT_EQ(string_of("witness"), "untouched");
    }
    // Both came, so the writers were not all killed at the same place.
    EXPECT_GT(found_a, 0);
    EXPECT_LT(found_a, 100);
    // What a writer left half done was no loss, and doesn't pile up.
    EXPECT_EQ(preference_set_string("k", "after"), 0);
    EXPECT_EQ(names_in_folder(), std::vector<std::string>{"preferences.ini"});
}

TEST_F(Preference, OfSeveralWritersAtOnceLosesNothing) {
    std::vector<std::unique_ptr<child::Process>> writers;
    for (int i = 0; i < 8; ++i) {
        writers.push_back(std::make_unique<child::Process>(
            std::vector<std::string>{child::program("preference-probe"), "set",
                                     "key" + std::to_string(i), std::to_string(i)},
            child::Environment{}));
    }
    for (auto &writer : writers) {
        EXPECT_EQ(writer->wait(), 0);
    }
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(int_of(("key" + std::to_string(i)).c_str()), i);
    }
}

TEST_F(Preference, IsNotSetWhileAStoppedWriterHoldsTheFile) {
    EXPECT_EQ(preference_set_int("a", 1), 0);
    const host::UniqueFd other(open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
    EXPECT_EQ(preference_set_int("a", 2), PREFERENCE_ERROR_IO_ERROR);
    EXPECT_EQ(int_of("a"), 1);
    ASSERT_EQ(flock(other.get(), LOCK_UN), 0);
    EXPECT_EQ(preference_set_int("a", 2), 0);
    EXPECT_EQ(int_of("a"), 2);
}

// A file that can't be used.

class DamagedPreference : public Preference, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedPreference, FileIsSetAsideWithOneLineAndReadingGoesOn) {
    leave_file(GetParam());
    ASSERT_TRUE(host::set_log_levels("HOST:warn"));
    testing::internal::CaptureStderr();
    bool exists = true;
    int number = 42;
    EXPECT_EQ(preference_is_existing("a", &exists), 0);
    EXPECT_FALSE(exists);
    EXPECT_EQ(preference_get_int("a", &number), PREFERENCE_ERROR_NO_KEY);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(preference_set_int("a", 2), 0);
    EXPECT_EQ(int_of("a"), 2);
    const std::string log = testing::internal::GetCapturedStderr();
    ASSERT_TRUE(host::set_log_levels("off"));
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    EXPECT_NE(log.find("The damaged file " + file() + " was set aside as " + file() + ".damaged"),
              std::string::npos)
        << log;
    EXPECT_EQ(text_of(file() + ".damaged"), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedPreference,
    testing::Values("", "nonsense", "\n\n", "a=int:1\n", "[preferences\na=int:1\n",
                    "[other]\na=1\n", "[preferences]\na=int:1\nb", "[preferences]\na=int:\n",
                    "[preferences]\na=1\n", "[preferences]\na=int:1x\n",
                    "[preferences]\na=int:99999999999\n", "[preferences]\na=double:\n",
                    "[preferences]\na=double:1,5\n", "[preferences]\na=string:\"x\n",
                    "[preferences]\na=string:x\n", "[preferences]\na=string:\"x\\\"\n",
                    "[preferences]\na=boolean:yes\n", "[preferences]\na=boolean:true \n",
                    "[preferences]\na=float:1\n", std::string("[preferences]\na=int:1\n\0\0\0", 26),
                    std::string("\0\0\0\0\0\0\0\0", 8), "\xff\xfe\x00[", "\x89PNG\r\n\x1a\n"));

TEST_F(Preference, FileThatIsDamagedAgainIsSetAsideUnderAFurtherName) {
    for (const std::string text : {"first", "second", "third"}) {
        leave_file(text);
        EXPECT_EQ(string_of("a"), "(" + std::to_string(PREFERENCE_ERROR_NO_KEY) + ")");
    }
    EXPECT_EQ(text_of(file() + ".damaged"), "first");
    EXPECT_EQ(text_of(file() + ".damaged-2"), "second");
    EXPECT_EQ(text_of(file() + ".damaged-3"), "third");
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(Preference, FileThatIsDamagedIsSetAsideByAWriterToo) {
    leave_file("nonsense");
    EXPECT_EQ(preference_set_int("a", 1), 0);
    EXPECT_EQ(int_of("a"), 1);
    EXPECT_EQ(text_of(file() + ".damaged"), "nonsense");
}

TEST_F(Preference, ThatCannotBeReadIsAnErrorAndIsNotOverwritten) {
    fs::create_directories(file());
    std::ofstream(file() + "/inside") << "kept";
    bool exists = true;
    int number = 42;
    EXPECT_EQ(preference_is_existing("a", &exists), PREFERENCE_ERROR_IO_ERROR);
    EXPECT_EQ(preference_get_int("a", &number), PREFERENCE_ERROR_IO_ERROR);
    EXPECT_EQ(preference_set_int("a", 1), PREFERENCE_ERROR_IO_ERROR);
    EXPECT_EQ(number, 42);
    EXPECT_TRUE(exists);
    EXPECT_EQ(text_of(file() + "/inside"), "kept");
}

TEST_F(Preference, ThatIsAPipeDoesNotHoldUpItsReader) {
    fs::create_directories(folder());
    ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
    int number = 0;
    EXPECT_EQ(preference_get_int("a", &number), PREFERENCE_ERROR_IO_ERROR);
}

TEST_F(Preference, WithoutAFolderToBeInIsAnError) {
    std::ofstream(folder()) << "no folder";
    int number = 0;
    EXPECT_EQ(preference_set_int("a", 1), PREFERENCE_ERROR_IO_ERROR);
    EXPECT_EQ(preference_get_int("a", &number), PREFERENCE_ERROR_NO_KEY);
    EXPECT_EQ(text_of(folder()), "no folder");
}

// Watches.

class PreferenceWatch : public Preference {
public:
    ~PreferenceWatch() override {
        for (const char *key : {"a", "b"}) {
            preference_unset_changed_cb(key);
        }
    }

    int watch(const char *key) {
        return preference_set_changed_cb(
            key,
            [](const char *changed, void *data) {
                auto *self = static_cast<PreferenceWatch *>(data);
                self->changes_.emplace_back(changed);
                self->on_main_thread_ = eina_main_loop_is() != EINA_FALSE;
            },
            this);
    }

    // A change of another key comes after whatever came before it.
    void expect_nothing_before_change_of(const char *other) {
        changes_.clear();
        change_elsewhere(other, 99);
        EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
        EXPECT_EQ(changes_, std::vector<std::string>{other});
    }

    std::vector<std::string> changes_;
    bool on_main_thread_ = false;
};

TEST_F(PreferenceWatch, SeesAChangeOfAnotherProcessOnTheMainLoop) {
    preference_set_int("a", 1);
    ASSERT_EQ(watch("a"), 0);
    change_elsewhere("a", 2);
    EXPECT_TRUE(changes_.empty());
    EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
    EXPECT_EQ(changes_, std::vector<std::string>{"a"});
    EXPECT_TRUE(on_main_thread_);
    EXPECT_EQ(int_of("a"), 2);
}

TEST_F(PreferenceWatch, SeesAChangeOfThisProcessOnALaterTurn) {
    preference_set_int("a", 1);
    ASSERT_EQ(watch("a"), 0);
    preference_set_int("a", 2);
    EXPECT_TRUE(changes_.empty());
    EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
    support::run_loop_turns();
    EXPECT_EQ(changes_, std::vector<std::string>{"a"});
}

TEST_F(PreferenceWatch, SeesAChangeOfTheTypeAlone) {
    preference_set_int("a", 1);
    ASSERT_EQ(watch("a"), 0);
    preference_set_double("a", 1.0);
    EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
}

TEST_F(PreferenceWatch, IsSilentForOtherKeysAndForTheSameValue) {
    preference_set_int("a", 1);
    preference_set_int("b", 1);
    ASSERT_EQ(watch("a"), 0);
    ASSERT_EQ(watch("b"), 0);
    preference_set_int("other", 2);
    preference_set_int("a", 1);
    change_elsewhere("a", 1);
    expect_nothing_before_change_of("b");
}

TEST_F(PreferenceWatch, OfAMissingKeyIsRefused) {
    EXPECT_EQ(watch("a"), PREFERENCE_ERROR_NO_KEY);
    EXPECT_EQ(preference_unset_changed_cb("a"), PREFERENCE_ERROR_NO_KEY);
}

TEST_F(PreferenceWatch, ThatWasUnsetIsSilent) {
    preference_set_int("a", 1);
    preference_set_int("b", 1);
    ASSERT_EQ(watch("a"), 0);
    ASSERT_EQ(watch("b"), 0);
    change_elsewhere("a", 2);
    EXPECT_EQ(preference_unset_changed_cb("a"), 0);
    EXPECT_EQ(preference_unset_changed_cb("a"), PREFERENCE_ERROR_NO_KEY);
    expect_nothing_before_change_of("b");
}

TEST_F(PreferenceWatch, IsTheNewestOneOfItsKey) {
    preference_set_int("a", 1);
    bool old_called = false;
    EXPECT_EQ(
        preference_set_changed_cb(
            "a", [](const char *, void *data) { *static_cast<bool *>(data) = true; }, &old_called),
        0);
    ASSERT_EQ(watch("a"), 0);
    change_elsewhere("a", 2);
    EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
    EXPECT_FALSE(old_called);
}

TEST_F(PreferenceWatch, MayBeEndedInsideItsOwnCallback) {
    preference_set_int("a", 1);
    int calls = 0;
    EXPECT_EQ(preference_set_changed_cb(
                  "a",
                  [](const char *key, void *data) {
                      ++*static_cast<int *>(data);
                      EXPECT_EQ(preference_unset_changed_cb(key), 0);
                      EXPECT_STREQ(key, "a");
                  },
                  &calls),
              0);
    change_elsewhere("a", 2);
    EXPECT_TRUE(support::run_main_loop_until([&calls] { return calls > 0; }));
    preference_set_int("b", 1);
    ASSERT_EQ(watch("b"), 0);
    change_elsewhere("a", 3);
    expect_nothing_before_change_of("b");
    EXPECT_EQ(calls, 1);
}

TEST_F(PreferenceWatch, ThatIsReplacedByAnothersCallbackSeesLaterChangesOnly) {
    leave_file("[preferences]\na=int:1\nb=int:1\n");
    bool old_called = false;
    const auto note = [](const char *, void *data) { *static_cast<bool *>(data) = true; };
    EXPECT_EQ(preference_set_changed_cb(
                  "a",
                  [](const char *, void *data) {
                      static_cast<PreferenceWatch *>(data)->changes_.emplace_back("a");
                      EXPECT_EQ(static_cast<PreferenceWatch *>(data)->watch("b"), 0);
                  },
                  this),
              0);
    EXPECT_EQ(preference_set_changed_cb("b", note, &old_called), 0);
    leave_file("[preferences]\na=int:2\nb=int:2\n");
    EXPECT_TRUE(support::run_main_loop_until([this] { return !changes_.empty(); }));
    support::run_loop_turns();
    EXPECT_EQ(changes_, std::vector<std::string>{"a"});
    EXPECT_FALSE(old_called);
    change_elsewhere("b", 3);
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 2; }));
}

TEST_F(PreferenceWatch, SeesTheValueGoWithADamagedFileAndComeAgain) {
    preference_set_int("a", 1);
    ASSERT_EQ(watch("a"), 0);
    leave_file("nonsense");
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 1; }));
    change_elsewhere("a", 1);
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 2; }));
}

TEST_F(PreferenceWatch, GoesOnWhenTheFolderWasRemovedAndMadeAnew) {
    preference_set_int("a", 1);
    ASSERT_EQ(watch("a"), 0);
    fs::remove_all(folder());
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 1; }));
    preference_set_int("a", 2);
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 2; }));
    change_elsewhere("a", 3);
    EXPECT_TRUE(support::run_main_loop_until([this] { return changes_.size() == 3; }));
}

TEST(PreferenceValue, IsOneLine) {
    EXPECT_EQ(host::encode_preference(std::string("a\nb")), "string:\"a\\nb\"");
    EXPECT_EQ(host::encode_preference(true), "boolean:true");
    EXPECT_EQ(host::encode_preference(0.5), "double:0.5");
    EXPECT_EQ(host::encode_preference(-3), "int:-3");
    EXPECT_EQ(host::decode_preference("string:\"a\\nb\""),
              host::PreferenceValue(std::string("a\nb")));
    EXPECT_FALSE(host::decode_preference(""));
    EXPECT_FALSE(host::decode_preference("int"));
}

}  // namespace
