// A program that takes the playback focus with the behaviour bits given, tells on standard output
// what becomes of it, gives it back on SIGUSR1, takes it again on SIGUSR2 and ends on SIGTERM:
// focus-probe BEHAVIOUR.

#include <sound_manager.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "common/service_thread.h"

int main(int argc, char **argv) {
    if (argc != 2) {
        return 2;
    }
    const int behavior = std::atoi(argv[1]);
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGUSR1, SIGUSR2, SIGTERM}) {
        sigaddset(&signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

    sound_stream_info_h stream = nullptr;
    sound_manager_create_stream_information(
        SOUND_STREAM_TYPE_MEDIA,
        [](sound_stream_info_h, sound_stream_focus_mask_e, sound_stream_focus_state_e state,
           sound_stream_focus_change_reason_e, int told, const char *, void *) {
            std::printf("%s %d\n", state == SOUND_STREAM_FOCUS_STATE_RELEASED ? "lost" : "regained",
                        told);
        },
        nullptr, &stream);
    constexpr auto kPlayback = SOUND_STREAM_FOCUS_FOR_PLAYBACK;
    const auto take = [&] {
        std::printf("taken %d\n",
                    sound_manager_acquire_focus(stream, kPlayback, behavior, nullptr));
    };
    take();
    for (int signal = 0; sigwait(&signals, &signal) == 0 && signal != SIGTERM;) {
        if (signal == SIGUSR1) {
            std::printf("given back %d\n",
                        sound_manager_release_focus(stream, kPlayback, behavior, nullptr));
        } else {
            take();
        }
    }
    sound_manager_destroy_stream_information(stream);
    host::stop_service_thread();
    return 0;
}
