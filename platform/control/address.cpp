#include "control/address.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace host {
namespace {

constexpr std::string_view kPrefix = "control-";
constexpr std::string_view kSuffix = ".sock";

}  // namespace

std::string control_directory() {
    if (const char *runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && *runtime) {
        return std::string(runtime) + "/tessel";
    }
    const char *temporary = std::getenv("TMPDIR");
    return std::string(temporary != nullptr && *temporary ? temporary : "/tmp") + "/tessel-" +
           std::to_string(getuid());
}

std::string control_socket(pid_t pid) {
    return control_directory() + '/' + std::string(kPrefix) + std::to_string(pid) +
           std::string(kSuffix);
}

std::vector<pid_t> control_sockets() {
    std::vector<pid_t> pids;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(control_directory(), error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix) ||
            name.size() <= kPrefix.size() + kSuffix.size()) {
            continue;
        }
        const char *first = name.data() + kPrefix.size();
        const char *last = name.data() + name.size() - kSuffix.size();
        pid_t pid = 0;
        if (const auto [stop, code] = std::from_chars(first, last, pid);
            code == std::errc() && stop == last && pid > 0) {
            pids.push_back(pid);
        }
    }
    std::sort(pids.begin(), pids.end());
    return pids;
}

}  // namespace host
