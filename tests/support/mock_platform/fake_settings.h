#pragma once

#include <device/power.h>
#include <vconf.h>

#include <map>
#include <string>
#include <variant>

/// Settings by key and type.
class FakeVconf {
public:
    using Value = std::variant<int, bool, std::string>;

    void set_int(const std::string &key, int value) { m_values[key] = value; }
    void set_bool(const std::string &key, bool value) { m_values[key] = value; }
    void set_str(const std::string &key, const std::string &value) { m_values[key] = value; }
    void unset(const std::string &key) { m_values.erase(key); }

    int vconf_get_int(const char *key, int *value);
    int vconf_get_bool(const char *key, int *value);
    char *vconf_get_str(const char *key);

private:
    std::map<std::string, Value> m_values;
};

/// Locks, with the number of calls. Requests aren't counted: one release ends any number.
class FakePower {
public:
    bool is_locked(power_lock_e type) const;
    int requests() const { return m_requests; }
    int releases() const { return m_releases; }

    int device_power_request_lock(power_lock_e type, int timeout_ms);
    int device_power_release_lock(power_lock_e type);

private:
    std::map<power_lock_e, bool> m_locked;
    int m_requests = 0;
    int m_releases = 0;
};

/// Texts of the platform; a text it doesn't know comes back as it is.
class FakeI18n {
public:
    void set_text(const std::string &message, const std::string &text) { m_texts[message] = text; }

    const char *i18n_get_text(const char *message);

private:
    std::map<std::string, std::string> m_texts;
};

namespace mock {
FakeVconf &fake_vconf();
FakePower &fake_power();
FakeI18n &fake_i18n();
}  // namespace mock
