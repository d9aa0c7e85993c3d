#include <app_preference.h>

#include <cstring>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "common/gobject.h"
#include "common/main_loop.h"
#include "settings/folder_watch.h"
#include "settings/preference_value.h"
#include "settings/stored_key_file.h"

namespace host {
namespace {

constexpr const char *kGroup = "preferences";

/// A key of any bytes as a name that a key file can hold.
std::string name_of(const std::string &key) {
    const GText escaped(g_uri_escape_string(key.c_str(), "/", FALSE));
    return escaped.get();
}

std::optional<std::string> text_in(GKeyFile *file, const std::string &name) {
    const GText text(g_key_file_get_value(file, kGroup, name.c_str(), nullptr));
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

/// Whether it is a file of preferences, and each of them has a value.
bool is_sound(GKeyFile *file) {
    const std::unique_ptr<char *, decltype(&g_strfreev)> names(
        g_key_file_get_keys(file, kGroup, nullptr, nullptr), &g_strfreev);
    if (!names) {
        return false;
    }
    for (char **name = names.get(); *name != nullptr; ++name) {
        const auto text = text_in(file, *name);
        if (!text || !decode_preference(*text)) {
            return false;
        }
    }
    return true;
}

/// The preferences of the application, with the watches of this process. Main loop.
class Preferences {
public:
    int set(const std::string &key, const PreferenceValue &value) {
        const bool written = file_.change([&key, &value](GKeyFile *file) {
            g_key_file_set_value(file, kGroup, name_of(key).c_str(),
                                 encode_preference(value).c_str());
        });
        if (written && !watches_.empty()) {
            // The folder may be new, so its watch may have missed this.
            watch_folder();
            post_to_main_loop([this] { tell_changes(); });
        }
        return written ? PREFERENCE_ERROR_NONE : PREFERENCE_ERROR_IO_ERROR;
    }

    template <typename T>
    int get(const std::string &key, T &value) {
        std::optional<std::string> text;
        if (const int result = look_up(key, text); result != PREFERENCE_ERROR_NONE) {
            return result;
        }
        const auto stored = decode_preference(*text);
        const T *typed = stored ? std::get_if<T>(&*stored) : nullptr;
        if (typed == nullptr) {
            return PREFERENCE_ERROR_INVALID_PARAMETER;
        }
        value = *typed;
        return PREFERENCE_ERROR_NONE;
    }

    /// @return NO_KEY, or IO_ERROR, when there is no text
    int look_up(const std::string &key, std::optional<std::string> &text) {
        const KeyFilePtr file = file_.read();
        if (!file) {
            return PREFERENCE_ERROR_IO_ERROR;
        }
        text = text_in(file.get(), name_of(key));
        return text ? PREFERENCE_ERROR_NONE : PREFERENCE_ERROR_NO_KEY;
    }

    int watch(const std::string &key, preference_changed_cb callback, void *user_data) {
        std::optional<std::string> text;
        if (const int result = look_up(key, text); result != PREFERENCE_ERROR_NONE) {
            return result;
        }
        watch_folder();
        if (!folder_watch_->is_alive()) {
            return PREFERENCE_ERROR_IO_ERROR;
        }
        watches_[key] = Watch{callback, user_data, std::move(text), ++last_id_};
        return PREFERENCE_ERROR_NONE;
    }

    int unwatch(const std::string &key) {
        if (watches_.erase(key) == 0) {
            return PREFERENCE_ERROR_NO_KEY;
        }
        if (watches_.empty()) {
            folder_watch_.reset();
        }
        return PREFERENCE_ERROR_NONE;
    }

private:
    struct Watch {
        preference_changed_cb callback = nullptr;
        void *user_data = nullptr;
        std::optional<std::string> seen;
        unsigned id = 0;
    };

    void watch_folder() {
        if (!folder_watch_ || !folder_watch_->is_alive()) {
            folder_watch_ =
                std::make_unique<FolderWatch>(file_.folder(), [this] { tell_changes(); });
        }
    }

    void tell_changes() {
        const KeyFilePtr file = file_.read();
        if (!file) {
            return;
        }
        std::vector<std::pair<std::string, unsigned>> changed;
        for (auto &[key, watch] : watches_) {
            auto text = text_in(file.get(), name_of(key));
            if (text != watch.seen) {
                watch.seen = std::move(text);
                changed.emplace_back(key, watch.id);
            }
        }
        // Each call may end or replace any watch, this one's own included.
        for (const auto &[key, id] : changed) {
            const auto found = watches_.find(key);
            if (found != watches_.end() && found->second.id == id) {
                found->second.callback(key.c_str(), found->second.user_data);
            }
        }
    }

    StoredKeyFile file_{std::string(g_get_user_data_dir()) + "/tessel", "preferences.ini",
                        is_sound};
    std::map<std::string, Watch> watches_;
    std::unique_ptr<FolderWatch> folder_watch_;
    unsigned last_id_ = 0;
};

// Never destroyed: a watch that is left belongs to a toolkit that has been shut down by then.
Preferences &preferences() {
    static auto *const instance = new Preferences;
    return *instance;
}

bool is_key(const char *key) {
    return key != nullptr && *key != '\0';
}

int set(const char *key, const PreferenceValue &value) {
    return is_key(key) ? preferences().set(key, value) : PREFERENCE_ERROR_INVALID_PARAMETER;
}

template <typename T>
int get(const char *key, T *value) {
    return is_key(key) && value != nullptr ? preferences().get(key, *value)
                                           : PREFERENCE_ERROR_INVALID_PARAMETER;
}

}  // namespace
}  // namespace host

int preference_set_int(const char *key, int value) {
    return host::set(key, value);
}

int preference_set_double(const char *key, double value) {
    return host::set(key, value);
}

int preference_set_string(const char *key, const char *value) {
    return value != nullptr ? host::set(key, std::string(value))
                            : PREFERENCE_ERROR_INVALID_PARAMETER;
}

int preference_set_boolean(const char *key, bool value) {
    return host::set(key, value);
}

int preference_get_int(const char *key, int *value) {
    return host::get(key, value);
}

int preference_get_double(const char *key, double *value) {
    return host::get(key, value);
}

int preference_get_string(const char *key, char **value) {
    std::string text;
    const int result =
        value != nullptr ? host::get(key, &text) : PREFERENCE_ERROR_INVALID_PARAMETER;
    if (result == PREFERENCE_ERROR_NONE) {
        *value = strdup(text.c_str());
    }
    return result;
}

int preference_get_boolean(const char *key, bool *value) {
    return host::get(key, value);
}

int preference_is_existing(const char *key, bool *existing) {
    if (!host::is_key(key) || existing == nullptr) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    std::optional<std::string> text;
    const int result = host::preferences().look_up(key, text);
    if (result == PREFERENCE_ERROR_IO_ERROR) {
        return result;
    }
    *existing = text.has_value();
    return PREFERENCE_ERROR_NONE;
}

int preference_set_changed_cb(const char *key, preference_changed_cb callback, void *user_data) {
    return host::is_key(key) && callback != nullptr
               ? host::preferences().watch(key, callback, user_data)
               : PREFERENCE_ERROR_INVALID_PARAMETER;
}

int preference_unset_changed_cb(const char *key) {
    return host::is_key(key) ? host::preferences().unwatch(key)
                             : PREFERENCE_ERROR_INVALID_PARAMETER;
}
