#include "player/library_loader.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <vector>

namespace host {
namespace {

namespace fs = std::filesystem;

/// The names of the libraries that an ELF file of this machine's own kind needs.
class NeededNames {
public:
    explicit NeededNames(const fs::path &file) : stream_(file, std::ios::binary) {
        ElfW(Ehdr) header{};
        if (!read_at(0, &header, 1) || !is_native(header)) {
            return;
        }
        segments_.resize(header.e_phnum);
        if (!read_at(header.e_phoff, segments_.data(), segments_.size())) {
            return;
        }
        for (const ElfW(Phdr) & segment : segments_) {
            if (segment.p_type == PT_DYNAMIC) {
                read_dynamic(segment);
            }
        }
    }
    const std::vector<std::string> &names() const { return names_; }

private:
    static constexpr std::size_t kMostEntries = 4096;

    static bool is_native(const ElfW(Ehdr) & header) {
        constexpr auto kClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
        return std::string_view(reinterpret_cast<const char *>(header.e_ident), SELFMAG) ==
                   ELFMAG &&
               header.e_ident[EI_CLASS] == kClass && header.e_phentsize == sizeof(ElfW(Phdr));
    }

    template <typename T>
    bool read_at(std::size_t place, T *to, std::size_t count) {
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(place));
        stream_.read(reinterpret_cast<char *>(to), static_cast<std::streamsize>(count * sizeof(T)));
        return static_cast<bool>(stream_);
    }

    /// Where in the file an address of the loaded library is.
    std::size_t place_of(ElfW(Addr) address) const {
        for (const ElfW(Phdr) & segment : segments_) {
            if (segment.p_type == PT_LOAD && address >= segment.p_vaddr &&
                address - segment.p_vaddr < segment.p_filesz) {
                return address - segment.p_vaddr + segment.p_offset;
            }
        }
        return 0;
    }

    void read_dynamic(const ElfW(Phdr) & segment) {
        const std::size_t count = segment.p_filesz / sizeof(ElfW(Dyn));
        if (count > kMostEntries) {
            return;
        }
        std::vector<ElfW(Dyn)> entries(count);
        if (!read_at(segment.p_offset, entries.data(), count)) {
            return;
        }
        std::size_t texts = 0;
        for (const ElfW(Dyn) & entry : entries) {
            if (entry.d_tag == DT_STRTAB) {
                texts = place_of(entry.d_un.d_ptr);
            }
        }
        for (const ElfW(Dyn) & entry : entries) {
            if (entry.d_tag == DT_NEEDED && texts != 0) {
                add_name(texts + entry.d_un.d_val);
            }
        }
    }

    void add_name(std::size_t place) {
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(place));
        std::string name;
        if (std::getline(stream_, name, '\0') && !name.empty()) {
            names_.push_back(std::move(name));
        }
    }

    std::ifstream stream_;
    std::vector<ElfW(Phdr)> segments_;
    std::vector<std::string> names_;
};

/// The folders that the libraries of this process came from.
std::vector<fs::path> folders_in_use() {
    std::vector<fs::path> folders;
    dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *data) {
            auto &found = *static_cast<std::vector<fs::path> *>(data);
            const fs::path folder = fs::path(info->dlpi_name).parent_path();
            if (folder.is_absolute() &&
                std::find(found.begin(), found.end(), folder) == found.end()) {
                found.push_back(folder);
            }
            return 0;
        },
        &folders);
    return folders;
}

class Loader {
public:
    void load_needed_of(const fs::path &library) {
        const NeededNames needed(library);
        for (const std::string &name : needed.names()) {
            load(name);
        }
    }

private:
    void load(const std::string &name) {
        if (!seen_.insert(name).second ||
            dlopen(name.c_str(), RTLD_LAZY | RTLD_NOLOAD) != nullptr) {
            return;
        }
        for (const fs::path &folder : folders_) {
            std::error_code error;
            if (fs::exists(folder / name, error)) {
                load_needed_of(folder / name);
                break;
            }
        }
        dlopen(name.c_str(), RTLD_LAZY);
    }

    const std::vector<fs::path> folders_ = folders_in_use();
    std::unordered_set<std::string> seen_;
};

}  // namespace

void load_needed_libraries(const fs::path &library) {
    Loader().load_needed_of(library);
}

}  // namespace host
