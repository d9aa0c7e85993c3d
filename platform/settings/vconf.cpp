#include <glib.h>
#include <sys/stat.h>
#include <vconf.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

#include "common/gobject.h"
#include "i18n/locale.h"
#include "settings/settings.h"
#include "settings/stored_key_file.h"

namespace host {
namespace {

constexpr const char *kLanguageKey = "db/menu_widget/language";
constexpr const char *kRegionKey = "db/menu_widget/regionformat";
constexpr std::string_view kVolatilePrefix = "memory/";

// What tells that a file is another than the one read before.
struct FileStamp {
    ino_t inode = 0;
    off_t size = -1;
    timespec changed{};

    static FileStamp of(const std::string &file) {
        struct stat status {};
        if (stat(file.c_str(), &status) != 0) {
            return {};
        }
        return {status.st_ino, status.st_size, status.st_mtim};
    }
    bool operator==(const FileStamp &other) const {
        return inode == other.inode && size == other.size &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

struct Name {
    std::string group;
    std::string key;
};

std::optional<Name> split_name(const std::string &name) {
    const std::size_t slash = name.rfind('/');
    if (slash == std::string::npos || slash == 0 || slash + 1 == name.size()) {
        return std::nullopt;
    }
    return Name{name.substr(0, slash), name.substr(slash + 1)};
}

class Settings {
public:
    Settings() {
        const NamedLocale &locale = environment_locale();
        if (locale.language) {
            overrides_[kLanguageKey] = *locale.language;
        }
        if (locale.region) {
            overrides_[kRegionKey] = *locale.region;
        }
    }

    std::optional<std::string> get(const std::string &name) {
        const std::lock_guard lock(mutex_);
        const auto found = overrides_.find(name);
        if (found != overrides_.end()) {
            return found->second;
        }
        return stored(name);
    }

    bool follow(const std::string &name, const std::string &value) {
        const std::lock_guard lock(mutex_);
        if (chosen_.contains(name) || (!overrides_.contains(name) && stored(name))) {
            return false;
        }
        overrides_[name] = value;
        return true;
    }

    bool set(const std::string &name, const std::string &value) {
        const std::lock_guard lock(mutex_);
        chosen_.insert(name);
        const auto split = split_name(name);
        if (!split) {
            return false;
        }
        const bool written = !name.starts_with(kVolatilePrefix) && write(*split, value);
        if (written) {
            // From here on the file says it, and a later change of it counts.
            overrides_.erase(name);
        } else {
            overrides_[name] = value;
        }
        return written || name.starts_with(kVolatilePrefix);
    }

private:
    /// What the file says.
    std::optional<std::string> stored(const std::string &name) {
        const auto split = split_name(name);
        if (!split) {
            return std::nullopt;
        }
        refresh();
        const GText text(
            g_key_file_get_string(file_.get(), split->group.c_str(), split->key.c_str(), nullptr));
        return text ? std::optional<std::string>(text.get()) : std::nullopt;
    }

    void refresh() {
        const FileStamp now = FileStamp::of(key_file_.path());
        if (file_ && now == stamp_) {
            return;
        }
        file_ = key_file_.read();
        if (!file_) {
            // One that can't be read is one without settings.
            file_.reset(g_key_file_new());
        }
        stamp_ = now;
    }

    bool write(const Name &name, const std::string &value) {
        return key_file_.change([&name, &value](GKeyFile *file) {
            g_key_file_set_string(file, name.group.c_str(), name.key.c_str(), value.c_str());
        });
    }

    StoredKeyFile key_file_{std::string(g_get_user_config_dir()) + "/tessel", "settings.ini"};
    std::mutex mutex_;
    std::map<std::string, std::string> overrides_;
    std::set<std::string> chosen_;  ///< set by the user in this process
    KeyFilePtr file_;
    FileStamp stamp_;
};

Settings &settings() {
    static Settings instance;
    return instance;
}

}  // namespace

bool set_setting(const std::string &key, const std::string &value) {
    return settings().set(key, value);
}

bool follow_desktop_setting(const std::string &key, const std::string &value) {
    return settings().follow(key, value);
}

}  // namespace host

namespace {

std::optional<std::string> setting(const char *key) {
    return key != nullptr ? host::settings().get(key) : std::nullopt;
}

}  // namespace

int vconf_get_int(const char *key, int *value) {
    const auto text = setting(key);
    gint64 number = 0;
    if (!text || value == nullptr ||
        !g_ascii_string_to_signed(text->c_str(), 10, G_MININT32, G_MAXINT32, &number, nullptr)) {
        return -1;
    }
    *value = static_cast<int>(number);
    return 0;
}

int vconf_get_bool(const char *key, int *value) {
    const auto text = setting(key);
    if (!text || value == nullptr) {
        return -1;
    }
    if (*text == "true" || *text == "1") {
        *value = 1;
        return 0;
    }
    if (*text == "false" || *text == "0") {
        *value = 0;
        return 0;
    }
    return -1;
}

char *vconf_get_str(const char *key) {
    const auto text = setting(key);
    return text ? strdup(text->c_str()) : nullptr;
}
