#include "fake_settings.h"

#include <cstring>

#include "slot.h"

namespace mock {

FakeVconf &fake_vconf() {
    static Slot<FakeVconf> slot;
    return slot.get();
}

FakePower &fake_power() {
    static Slot<FakePower> slot;
    return slot.get();
}

FakeI18n &fake_i18n() {
    static Slot<FakeI18n> slot;
    return slot.get();
}

}  // namespace mock

namespace {

template <typename T>
const T *find(const std::map<std::string, FakeVconf::Value> &values, const char *key) {
    if (key == nullptr) {
        return nullptr;
    }
    const auto item = values.find(key);
    return item == values.end() ? nullptr : std::get_if<T>(&item->second);
}

}  // namespace

int FakeVconf::vconf_get_int(const char *key, int *value) {
    const auto *found = find<int>(m_values, key);
    if (found == nullptr || value == nullptr) {
        return -1;
    }
    *value = *found;
    return 0;
}

int FakeVconf::vconf_get_bool(const char *key, int *value) {
    const auto *found = find<bool>(m_values, key);
    if (found == nullptr || value == nullptr) {
        return -1;
    }
    *value = *found ? 1 : 0;
    return 0;
}

char *FakeVconf::vconf_get_str(const char *key) {
    const auto *found = find<std::string>(m_values, key);
    return found == nullptr ? nullptr : strdup(found->c_str());
}

bool FakePower::is_locked(power_lock_e type) const {
    const auto item = m_locked.find(type);
    return item != m_locked.end() && item->second;
}

int FakePower::device_power_request_lock(power_lock_e type, int timeout_ms) {
    if (type > POWER_LOCK_DISPLAY_DIM || timeout_ms < 0) {
        return DEVICE_ERROR_INVALID_PARAMETER;
    }
    ++m_requests;
    m_locked[type] = true;
    return DEVICE_ERROR_NONE;
}

int FakePower::device_power_release_lock(power_lock_e type) {
    ++m_releases;
    if (!is_locked(type)) {
        return DEVICE_ERROR_OPERATION_FAILED;
    }
    m_locked[type] = false;
    return DEVICE_ERROR_NONE;
}

const char *FakeI18n::i18n_get_text(const char *message) {
    if (message == nullptr) {
        return nullptr;
    }
    const auto item = m_texts.find(message);
    return item == m_texts.end() ? message : item->second.c_str();
}
