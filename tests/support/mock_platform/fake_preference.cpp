#include "fake_preference.h"

#include <cstring>

#include "slot.h"

namespace mock {

FakePreference &fake_preference() {
    static Slot<FakePreference> slot;
    return slot.get();
}

}  // namespace mock

namespace {

bool is_key(const char *key) {
    return key != nullptr && *key != '\0';
}

}  // namespace

int FakePreference::set(const char *key, Value value) {
    if (!is_key(key)) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    m_values[key] = std::move(value);
    if (const auto found = m_watches.find(key); found != m_watches.end()) {
        const Watch watch = found->second;
        watch.callback(key, watch.user_data);
    }
    return PREFERENCE_ERROR_NONE;
}

int FakePreference::preference_get_string(const char *key, char **value) const {
    std::string text;
    const int result = get(key, &text);
    if (result == PREFERENCE_ERROR_NONE) {
        *value = strdup(text.c_str());
    }
    return result;
}

int FakePreference::preference_is_existing(const char *key, bool *existing) const {
    if (!is_key(key) || existing == nullptr) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    *existing = m_values.contains(key);
    return PREFERENCE_ERROR_NONE;
}

int FakePreference::preference_set_changed_cb(const char *key, preference_changed_cb callback,
                                              void *user_data) {
    if (!is_key(key) || callback == nullptr) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    if (!m_values.contains(key)) {
        return PREFERENCE_ERROR_NO_KEY;
    }
    m_watches[key] = Watch{callback, user_data};
    return PREFERENCE_ERROR_NONE;
}

int FakePreference::preference_unset_changed_cb(const char *key) {
    if (!is_key(key)) {
        return PREFERENCE_ERROR_INVALID_PARAMETER;
    }
    return m_watches.erase(key) > 0 ? PREFERENCE_ERROR_NONE : PREFERENCE_ERROR_NO_KEY;
}
