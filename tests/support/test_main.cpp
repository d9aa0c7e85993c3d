#include "test_main.h"

#include <Efreet.h>
#include <Elementary.h>
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <utility>
#include <vector>

#include "log_lines.h"

namespace {

std::vector<std::function<void()>> &resets() {
    static std::vector<std::function<void()>> functions;
    return functions;
}

class Cleaner : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override { logs::clear(); }
    void OnTestEnd(const testing::TestInfo &) override {
        for (auto reset = resets().rbegin(); reset != resets().rend(); ++reset) {
            (*reset)();
        }
    }
};

void set_default(const char *name, const char *value) {
    ::setenv(name, value, 0);
}

}  // namespace

namespace support {

void after_each_test(std::function<void()> reset) {
    resets().push_back(std::move(reset));
}

}  // namespace support

int main(int argc, char **argv) {
    set_default("ELM_ENGINE", "buffer");
    set_default("EINA_LOG_LEVEL", "0");
    set_default("EINA_LOG_BACKTRACE", "-1");
    set_default("LC_ALL", "C.UTF-8");
    testing::InitGoogleMock(&argc, argv);
    // The listener comes first so that expectations are verified while a test still counts.
    testing::UnitTest::GetInstance()->listeners().Append(new Cleaner);
    efreet_cache_disable();  // as the host does
    elm_init(argc, argv);
    // As the host does: the toolkit's handler of ended children spoils errno.
    std::signal(SIGCHLD, SIG_DFL);
    const int status = RUN_ALL_TESTS();
    elm_shutdown();
    return status;
}
