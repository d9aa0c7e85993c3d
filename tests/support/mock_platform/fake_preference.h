#pragma once

#include <app_preference.h>

#include <map>
#include <string>
#include <variant>

/// Preferences in memory, with one watch for a key. A change calls its watch at once.
class FakePreference {
public:
    using Value = std::variant<int, double, std::string, bool>;

    const std::map<std::string, Value> &values() const { return m_values; }
    int watches() const { return static_cast<int>(m_watches.size()); }
    bool is_watched(const std::string &key) const { return m_watches.contains(key); }

    int set(const char *key, Value value);
    template <typename T>
    int get(const char *key, T *value) const;
    int preference_get_string(const char *key, char **value) const;
    int preference_is_existing(const char *key, bool *existing) const;
    int preference_set_changed_cb(const char *key, preference_changed_cb callback, void *user_data);
    int preference_unset_changed_cb(const char *key);

private:
    struct Watch {
        preference_changed_cb callback;
        void *user_data;
    };
    std::map<std::string, Value> m_values;
    std::map<std::string, Watch> m_watches;
};

template <typename T>
int FakePreference::get(const char *key, T *value) const {
    if (key == nullptr || *key == '\0' || value == nullptr) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    const auto found = m_values.find(key);
    if (found == m_values.end()) {
        return PREFERENCE_ERROR_NO_KEY;
    }
    const T *typed = std::get_if<T>(&found->second);
    if (typed == nullptr) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    *value = *typed;
    return PREFERENCE_ERROR_NONE;
}

namespace mock {
FakePreference &fake_preference();
}
