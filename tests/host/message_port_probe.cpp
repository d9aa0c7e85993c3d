// Opens the message port that it is given and tells on standard output what comes in.

#include <Ecore.h>
#include <message_port.h>

#include <cstdio>

namespace {

void received(int, const char *sender, const char *, bool, bundle *content, void *) {
    char *text = nullptr;
    bundle_get_str(content, "text", &text);
    std::printf("got %s from %s\n", text != nullptr ? text : "(none)",
                sender != nullptr ? sender : "(none)");
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        return 2;
    }
    ecore_init();
    if (message_port_register_local_port(argv[1], received, nullptr) <= 0) {
        return 1;
    }
    std::puts("open");
    std::fflush(stdout);
    ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}
