// What can go wrong with a medium, and that each fault is told in time, once, with its number.

#include <gtest/gtest.h>
#include <player.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <Ecore.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "common/unique_fd.h"
#include "host_seams.h"
#include "loopback_server.h"
#include "main_loop.h"
#include "player/player_host.h"
#include "process_counts.h"
#include "short_limits.h"

namespace {

namespace fs = std::filesystem;
using support::LoopbackServer;
using support::read_request;
using support::send_all;
using support::ShortLimits;
using support::wait_for_client_to_go;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
/// A checked program takes many times as long to load a plug-in; the two seconds that a person may
/// have to wait are measured on the program itself, by the end-to-end tests of the release build.
constexpr double kFaultLimit = 10.0;
#else
constexpr double kFaultLimit = 2.0;
#endif

std::string clip(const std::string &name) {
    return TESSEL_TEST_MEDIA "/" + name;
}

class PlayerFaults : public testing::Test {
protected:
    void SetUp() override {
        seams::reset();
        ASSERT_EQ(player_create(&player_), PLAYER_ERROR_NONE);
        player_set_error_cb(
            player_, [](int code, void *self) { static_cast<PlayerFaults *>(self)->note(code); },
            this);
        player_set_display(player_, PLAYER_DISPLAY_TYPE_OVERLAY, GET_DISPLAY(seams::window()));
        folder_ = fs::temp_directory_path() / ("player-faults-" + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override {
        EXPECT_EQ(player_destroy(player_), PLAYER_ERROR_NONE);
        seams::reset();
        fs::remove_all(folder_);
    }

    void note(int code) {
        const std::lock_guard lock(mutex_);
        errors_.push_back(code);
    }
    [[nodiscard]] std::vector<int> errors() const {
        const std::lock_guard lock(mutex_);
        return errors_;
    }
    [[nodiscard]] bool wait_for_error(double limit = kFaultLimit) const {
        return support::run_main_loop_until([this] { return !errors().empty(); }, limit);
    }
    void prepare(const std::string &target) {
        ASSERT_EQ(player_set_uri(player_, target.c_str()), PLAYER_ERROR_NONE);
        ASSERT_EQ(
            player_prepare_async(
                player_, [](void *self) { ++static_cast<PlayerFaults *>(self)->prepared_; }, this),
            PLAYER_ERROR_NONE);
    }
    void expect_fault(const std::string &target, int code) {
        prepare(target);
        EXPECT_TRUE(wait_for_error()) << target;
        EXPECT_EQ(errors(), std::vector<int>{code}) << target;
        EXPECT_EQ(prepared_, 0);
        player_state_e state = PLAYER_STATE_NONE;
        EXPECT_EQ(player_get_state(player_, &state), PLAYER_ERROR_NONE);
        EXPECT_EQ(state, PLAYER_STATE_IDLE);
        const auto failures = seams::failures();
        ASSERT_EQ(failures.size(), 1U);
        EXPECT_EQ(failures.front().find('\n'), std::string::npos);
        EXPECT_NE(failures.front().find(target), std::string::npos) << failures.front();
        // The same fault as the result of the other way to prepare.
        EXPECT_EQ(player_prepare(player_), code) << target;
        EXPECT_EQ(errors().size(), 1U);
    }
    void start(const std::string &target) {
        prepare(target);
        ASSERT_TRUE(support::run_main_loop_until([this] { return prepared_ == 1; }));
        ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    }
    void expect_refused(const char *uri) {
        EXPECT_EQ(player_set_uri(player_, uri), PLAYER_ERROR_INVALID_URI) << uri;
    }

    player_h player_ = nullptr;
    std::atomic<int> prepared_ = 0;
    fs::path folder_;

private:
    mutable std::mutex mutex_;
    std::vector<int> errors_;
};

std::string contents(const std::string &name) {
    std::ifstream file(clip(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Before it is opened

TEST_F(PlayerFaults, SchemesThatAreNotOpened) {
    expect_refused("bogus://somewhere/clip.mp4");
    expect_refused("ftp://somewhere/clip.mp4");
    expect_refused("content://media/1");
    EXPECT_EQ(seams::failures().size(), 3U);
}

TEST_F(PlayerFaults, MalformedAddresses) {
    expect_refused("http://");
    expect_refused("http:/clip.mp4");
    expect_refused("http://[half/clip.mp4");
    expect_refused("rtsp:");
    expect_refused("file://%zz");
    expect_refused("http://127.0.0.1/a\nb.mp4");
    expect_refused("http://127.0.0.1/\xFF\xFE.mp4");
}

TEST_F(PlayerFaults, ARefusedNameLeavesNothingToPrepare) {
    ASSERT_EQ(player_set_uri(player_, clip("minute.mp4").c_str()), PLAYER_ERROR_NONE);
    expect_refused("bogus://somewhere");
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_INVALID_OPERATION);
}

// While it is opened

TEST_F(PlayerFaults, MissingFile) {
    expect_fault(clip("no such file.mp4"), PLAYER_ERROR_NO_SUCH_FILE);
}

TEST_F(PlayerFaults, MissingFolder) {
    expect_fault(clip("no such folder/clip.mp4"), PLAYER_ERROR_NO_SUCH_FILE);
}

TEST_F(PlayerFaults, EmptyFile) {
    expect_fault(clip("empty.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, Text) {
    expect_fault(clip("text.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, NoKnownType) {
    expect_fault(clip("zeros.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, NoStreamCanBeDecoded) {
    expect_fault(clip("unknown_both.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, DamagedBeyondPlaying) {
    expect_fault(clip("no_index.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, AnIndexThatLeadsNowhere) {
    expect_fault(clip("lost_index.mp4"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, ASoundWithARateBeyondAllNumbers) {
    expect_fault(clip("endless_rate.webm"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, ASoundWithMoreChannelsThanLoudspeakersHavePlaces) {
    expect_fault(clip("countless_channels.webm"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, ASoundWithMoreChannelsThanCanBeMixed) {
    expect_fault(clip("many_channels.wav"), PLAYER_ERROR_NOT_SUPPORTED_FILE);
}

TEST_F(PlayerFaults, Folder) {
    expect_fault(folder_, PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, Device) {
    expect_fault("/dev/zero", PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, NamedPipe) {
    const std::string pipe = folder_ / "pipe.mp4";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expect_fault(pipe, PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, NoPermission) {
    const fs::path secret = folder_ / "secret.mp4";
    fs::copy_file(clip("one_second.mp4"), secret);
    fs::permissions(secret, fs::perms::none);
    // Permissions don't bind the superuser.
    constexpr uid_t kNobody = 65534;
    const uid_t self = geteuid();
    if (self == 0) {
        fs::permissions(folder_, fs::perms::all);
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    expect_fault(secret, PLAYER_ERROR_INVALID_OPERATION);
    if (self == 0) {
        ASSERT_EQ(seteuid(self), 0);
    }
}

TEST_F(PlayerFaults, OutOfDescriptors) {
    // What is loaded on first use needs descriptors, too.
    start(clip("one_second.mp4"));
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    prepared_ = 0;
    std::vector<host::UniqueFd> hoard;
    for (;;) {
        host::UniqueFd one(dup(0));
        if (!one) {
            break;
        }
        hoard.push_back(std::move(one));
        if (hoard.size() > 3000) {
            break;
        }
    }
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit full{static_cast<rlim_t>(hoard.back().get() + 1), limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &full), 0);
    prepare(clip("one_second.mp4"));
    EXPECT_TRUE(wait_for_error());
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_INVALID_OPERATION});
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
}

// Over a network

TEST_F(PlayerFaults, ConnectionRefused) {
    std::string address;
    {
        const LoopbackServer closed([](int) {});
        address = closed.address();
    }
    expect_fault(address, PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, NotOnTheServer) {
    const LoopbackServer server([](int connection) {
        read_request(connection);
        send_all(connection,
                 "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    expect_fault(server.address(), PLAYER_ERROR_NO_SUCH_FILE);
}

TEST_F(PlayerFaults, ForbiddenByTheServer) {
    const LoopbackServer server([](int connection) {
        read_request(connection);
        send_all(connection,
                 "HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    expect_fault(server.address(), PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, ServersGetTenSecondsToAnswerAndTwentyOfSilence) {
    const host::NetworkLimits limits;
    EXPECT_EQ(limits.connect, std::chrono::seconds(10));
    EXPECT_EQ(limits.stall, std::chrono::seconds(20));
}

TEST_F(PlayerFaults, AServerThatNeverAnswersIsGivenUp) {
    const ShortLimits limits(std::chrono::milliseconds(1000), std::chrono::milliseconds(60'000));
    const LoopbackServer server([](int connection) {
        read_request(connection);
        wait_for_client_to_go(connection);
    });
    prepare(server.address());
    const double begin = ecore_time_get();
    EXPECT_TRUE(wait_for_error(15.0));
    EXPECT_GE(ecore_time_get() - begin, 1.0);
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_INVALID_OPERATION});
    EXPECT_NE(seams::failures().front().find("the server doesn't answer"), std::string::npos);
}

TEST_F(PlayerFaults, AServerThatFallsSilentIsGivenUp) {
    const ShortLimits limits(std::chrono::milliseconds(60'000), std::chrono::milliseconds(1000));
    const LoopbackServer server([](int connection) {
        read_request(connection);
        const std::string whole = contents("h264_aac.mp4");
        send_all(connection, "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nContent-Length: " +
                                 std::to_string(whole.size()) + "\r\n\r\n" + whole.substr(0, 3000));
        wait_for_client_to_go(connection);
    });
    prepare(server.address());
    EXPECT_TRUE(wait_for_error(15.0));
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_INVALID_OPERATION});
    EXPECT_NE(seams::failures().front().find("no more data comes"), std::string::npos);
}

TEST_F(PlayerFaults, AConnectionThatIsCut) {
    const LoopbackServer server([](int connection) {
        read_request(connection);
        const std::string whole = contents("h264_aac.mp4");
        send_all(connection, "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nContent-Length: " +
                                 std::to_string(whole.size()) + "\r\n\r\n" + whole.substr(0, 3000));
    });
    prepare(server.address());
    EXPECT_TRUE(wait_for_error());
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_INVALID_OPERATION});
}

TEST_F(PlayerFaults, ALivePlaylistWhosePiecesAreMissingIsGivenUp) {
    const ShortLimits limits(std::chrono::milliseconds(60'000), std::chrono::milliseconds(1000));
    // Without a time for its pieces it is read again at once, and again.
    const std::string list =
        "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:0.25,\npiece.ts\n";
    const LoopbackServer server([&list](int connection) {
        const bool asks_for_list = read_request(connection).starts_with("GET /list.m3u8");
        send_all(connection,
                 std::string(asks_for_list ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 404 Not Found\r\n") +
                     "Content-Type: application/vnd.apple.mpegurl\r\nConnection: close\r\n"
                     "Content-Length: " +
                     std::to_string(asks_for_list ? list.size() : 0) + "\r\n\r\n" +
                     (asks_for_list ? list : ""));
    });
    expect_fault(server.address("/list.m3u8"), PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerFaults, ThoseOfANetworkLeaveNothingBehind) {
    // The libraries below keep some for a while, but not one more each round.
    constexpr unsigned kRounds = 6;
    const ShortLimits limits(std::chrono::milliseconds(200), std::chrono::milliseconds(200));
    const std::string whole = contents("h264_aac.mp4");
    const std::string part = "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nContent-Length: " +
                             std::to_string(whole.size()) + "\r\n\r\n" + whole.substr(0, 3000);
    const LoopbackServer refuses([](int connection) {
        read_request(connection);
        send_all(connection,
                 "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    const LoopbackServer leaves([&part](int connection) {
        read_request(connection);
        send_all(connection, part);
    });
    const LoopbackServer falls_silent([&part](int connection) {
        read_request(connection);
        send_all(connection, part);
        wait_for_client_to_go(connection);
    });
    const LoopbackServer never_answers([](int connection) {
        read_request(connection);
        wait_for_client_to_go(connection);
    });
    const auto meet_all = [&] {
        for (const LoopbackServer *server : {&refuses, &leaves, &falls_silent, &never_answers}) {
            ASSERT_EQ(player_set_uri(player_, server->address().c_str()), PLAYER_ERROR_NONE);
            EXPECT_LT(player_prepare(player_), 0);
        }
    };
    // What is loaded on first use stays.
    meet_all();
    const std::size_t threads = support::threads();
    const std::size_t descriptors = support::descriptors();
    for (unsigned round = 0; round < kRounds; ++round) {
        meet_all();
    }
    EXPECT_TRUE(support::run_main_loop_until([&] {
        return support::threads() < threads + kRounds &&
               support::descriptors() < descriptors + kRounds;
    })) << support::threads()
        << " threads of " << threads << ", " << support::descriptors() << " descriptors of "
        << descriptors;
}

TEST_F(PlayerFaults, AGoodServerIsNoFault) {
    const LoopbackServer server([](int connection) {
        read_request(connection);
        const std::string whole = contents("one_second.mp4");
        send_all(connection,
                 "HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nConnection: close\r\n"
                 "Content-Length: " +
                     std::to_string(whole.size()) + "\r\n\r\n" + whole);
    });
    start(server.address());
    EXPECT_TRUE(support::run_main_loop_until([] { return seams::completions() == 1; }));
    EXPECT_TRUE(errors().empty());
}

// While it plays

TEST_F(PlayerFaults, AFileThatIsCutShortWhileItPlays) {
    const fs::path copy = folder_ / "copy.mp4";
    fs::copy_file(clip("h264_aac.mp4"), copy);
    start(copy);
    fs::resize_file(copy, 40000);
    EXPECT_TRUE(wait_for_error(5.0));
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_NOT_SUPPORTED_FILE});
    EXPECT_EQ(seams::completions(), 0);
}

TEST_F(PlayerFaults, AFileThatIsGoneAndCutWhileItPlays) {
    const fs::path copy = folder_ / "copy.mp4";
    fs::copy_file(clip("h264_aac.mp4"), copy);
    start(copy);
    fs::resize_file(copy, 40000);
    fs::remove(copy);
    EXPECT_TRUE(wait_for_error(5.0));
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_NO_SUCH_FILE});
}

TEST_F(PlayerFaults, AfterAFaultThePlayerCanBeUnpreparedAndUsedAgain) {
    const fs::path copy = folder_ / "copy.mp4";
    fs::copy_file(clip("h264_aac.mp4"), copy);
    start(copy);
    fs::resize_file(copy, 40000);
    ASSERT_TRUE(wait_for_error(5.0));
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_EQ(player_set_play_position(player_, 0, true, nullptr, nullptr),
              PLAYER_ERROR_SEEK_FAILED);
    EXPECT_EQ(player_stop(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_uri(player_, clip("one_second.mp4").c_str()), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_NONE);
}

TEST_F(PlayerFaults, AnInjectedErrorComesThroughTheCallback) {
    start(clip("minute.mp4"));
    ASSERT_TRUE(host::inject_player_error(PLAYER_ERROR_NO_SUCH_FILE));
    EXPECT_TRUE(wait_for_error());
    EXPECT_EQ(errors(), std::vector<int>{PLAYER_ERROR_NO_SUCH_FILE});
    EXPECT_EQ(seams::failures().size(), 1U);
}

TEST_F(PlayerFaults, AnInjectedErrorThatEndsNothingIsNoFailure) {
    start(clip("minute.mp4"));
    ASSERT_TRUE(host::inject_player_error(PLAYER_ERROR_SEEK_FAILED));
    EXPECT_TRUE(wait_for_error());
    EXPECT_TRUE(seams::failures().empty());
}

}  // namespace
