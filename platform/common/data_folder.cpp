#include "common/data_folder.h"

#include <sys/auxv.h>

#include <system_error>

namespace host {
namespace {

std::filesystem::path program_file() {
    std::error_code error;
    std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        return file;
    }
    // Where there is no /proc: the name that the kernel was given to start the program by.
    const auto *name = reinterpret_cast<const char *>(getauxval(AT_EXECFN));
    if (name == nullptr) {
        return {};
    }
    file = std::filesystem::canonical(name, error);
    return error ? std::filesystem::path() : file;
}

std::filesystem::path beside(const std::filesystem::path &program) {
    return program.empty() ? program : program.parent_path().parent_path() / "share" / "tessel";
}

}  // namespace

const std::filesystem::path &data_folder() {
    static const std::filesystem::path folder = beside(program_file());
    return folder;
}

}  // namespace host
