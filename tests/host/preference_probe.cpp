// Changes preferences from another process: "set KEY NUMBER" once, "text KEY TEXT" once, or
// "alternate KEY LENGTH" for ever, between two texts of that length.

#include <app_preference.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int alternate(const char *key, std::size_t length) {
    const std::string texts[] = {std::string(length, 'a'), std::string(length, 'b')};
    for (unsigned turn = 0;; ++turn) {
        if (const int result = preference_set_string(key, texts[turn % 2].c_str()); result != 0) {
            return result;
        }
        if (turn == 0) {
            std::puts("writing");
            std::fflush(stdout);
        }
    }
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        return 2;
    }
    const std::string command = argv[1];
    int result = -1;
    if (command == "set") {
        result = preference_set_int(argv[2], std::atoi(argv[3]));
    } else if (command == "text") {
        result = preference_set_string(argv[2], argv[3]);
    } else if (command == "alternate") {
        result = alternate(argv[2], std::strtoul(argv[3], nullptr, 10));
    }
    return result == PREFERENCE_ERROR_NONE ? 0 : 1;
}
