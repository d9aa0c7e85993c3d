// Texts that are spoken, by a real speech service whose only voice writes them down.

#include "access/speech.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "child_process.h"
#include "main_loop.h"

namespace {

using host::speak;
using host::Spoken;

class Server {
public:
    explicit Server(const std::string &folder) : folder_(folder) {
        std::filesystem::create_directories(folder + "/conf/modules");
        std::ofstream(folder + "/conf/speechd.conf")
            << "DefaultModule writer\nAddModule \"writer\" \"sd_generic\" \"writer.conf\"\n"
               "AudioOutputMethod \"libao\"\nDefaultLanguage \"en\"\n";
        std::ofstream(folder + "/conf/modules/writer.conf")
            << "GenericExecuteSynth \"echo $VOICE \\'$DATA\\' >> " << folder << "/said\"\n"
            << "GenericCmdDependency \"echo\"\n"
               "GenericLanguage \"en\" \"en\" \"utf-8\"\nGenericLanguage \"fr\" \"fr\" \"utf-8\"\n"
               "AddVoice \"en\" \"MALE1\" \"english\"\nAddVoice \"fr\" \"MALE1\" \"french\"\n";
        process_.emplace(std::vector<std::string>{"speech-dispatcher", "-s", "-C", folder + "/conf",
                                                  "-S", folder + "/socket", "-P", folder + "/pid",
                                                  "-L", folder, "-t", "0"},
                         child::Environment{});
        EXPECT_TRUE(support::run_main_loop_until(
            [this] { return std::filesystem::exists(folder_ + "/socket"); }));
    }
    ~Server() {
        process_->send(SIGTERM);
        process_->wait();
        std::filesystem::remove(folder_ + "/socket");
    }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

private:
    std::string folder_;
    std::optional<child::Process> process_;
};

class Speech : public testing::Test {
protected:
    Speech() {
        setenv("SPEECHD_ADDRESS", ("unix_socket:" + folder_.path() + "/socket").c_str(), 1);
    }
    ~Speech() override {
        host::stop_speech();
        unsetenv("SPEECHD_ADDRESS");
    }

    [[nodiscard]] std::string said() const {
        std::ostringstream text;
        text << std::ifstream(folder_.path() + "/said").rdbuf();
        return text.str();
    }
    /// Says it and waits for what becomes of it.
    static std::optional<Spoken> fate(const std::string &text, const std::string &language = "en",
                                      bool discardable = true) {
        auto told = std::make_shared<std::optional<Spoken>>();
        speak(text, language, discardable, [told](Spoken how) { *told = how; });
        static_cast<void>(support::run_main_loop_until([told] { return told->has_value(); }));
        return *told;
    }

    child::TemporaryFolder folder_;
};

TEST_F(Speech, IsHeardToItsEnd) {
    const Server server(folder_.path());
    EXPECT_EQ(fate("7"), Spoken::whole);
    EXPECT_EQ(said(), "english 7\n");
}

TEST_F(Speech, IsInTheLanguageOfTheText) {
    const Server server(folder_.path());
    EXPECT_EQ(fate("un", "fr"), Spoken::whole);
    EXPECT_EQ(fate("two", "en"), Spoken::whole);
    EXPECT_EQ(said(), "french un\nenglish two\n");
}

TEST_F(Speech, OfALanguageThatTheServiceDoesNotKnowIsHeardToo) {
    const Server server(folder_.path());
    EXPECT_EQ(fate("sep", "eo"), Spoken::whole);
    EXPECT_NE(said().find("sep"), std::string::npos);
}

TEST_F(Speech, TakesTextsThatLookLikeCommands) {
    const Server server(folder_.path());
    EXPECT_EQ(fate(".\r\nQUIT\r\n"), Spoken::whole);
    EXPECT_EQ(fate("after"), Spoken::whole);
    EXPECT_NE(said().find("QUIT"), std::string::npos);
    EXPECT_NE(said().find("after"), std::string::npos);
}

TEST_F(Speech, WithoutAServiceIsSkipped) {
    EXPECT_EQ(fate("7"), Spoken::skipped);
    EXPECT_EQ(fate("8"), Spoken::skipped);
}

TEST_F(Speech, FindsAServiceThatComesLater) {
    EXPECT_EQ(fate("7"), Spoken::skipped);
    const Server server(folder_.path());
    EXPECT_EQ(fate("8"), Spoken::whole);
    EXPECT_EQ(said(), "english 8\n");
}

TEST_F(Speech, FindsAServiceThatWasStartedAnew) {
    {
        const Server server(folder_.path());
        EXPECT_EQ(fate("7"), Spoken::whole);
    }
    EXPECT_EQ(fate("8"), Spoken::skipped);
    const Server server(folder_.path());
    EXPECT_EQ(fate("9"), Spoken::whole);
    EXPECT_EQ(said(), "english 7\nenglish 9\n");
}

TEST_F(Speech, IsEndedAtOnceWhileTextsWait) {
    const Server server(folder_.path());
    for (int i = 0; i < 50; ++i) {
        speak("text", "en", false, {});
    }
    host::stop_speech();
    // Texts after the end begin anew.
    EXPECT_EQ(fate("7"), Spoken::whole);
}

}  // namespace
