#include "i18n/locale.h"

#include <Elementary.h>
#include <app_common.h>
#include <libintl.h>
#include <locale.h>
#include <unicode/uloc.h>
#include <vconf.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "app/lifecycle.h"
#include "i18n/catalogue.h"
#include "settings/settings.h"

// Incremented, it tells the text lookup that LANGUAGE has another value.
extern "C" int _nl_msg_cat_cntr;

extern "C" char *__real_bindtextdomain(const char *domain, const char *folder);
extern "C" char *__wrap_bindtextdomain(const char *domain, const char *folder);
extern "C" void __real_elm_language_set(const char *language);
extern "C" void __wrap_elm_language_set(const char *language);

namespace host {
namespace {

constexpr const char *kDomain = "tessel";
constexpr const char *kLanguageKey = "db/menu_widget/language";
constexpr const char *kRegionKey = "db/menu_widget/regionformat";
constexpr const char *kClockKey = "db/menu_widget/regionformat_time1224";
// What the setting of the clock holds.
constexpr int kTwelveHours = 1;
constexpr int kTwentyFourHours = 2;
constexpr const char *kPlainLocale = "C.UTF-8";
constexpr const char *kDefaultLanguage = "en";
constexpr const char *kDefaultRegion = "en_US";

bool is_plain(std::string_view locale) {
    return locale.empty() || locale == "C" || locale == "POSIX" || locale.starts_with("C.");
}

/// Gives a variable's value, empty for one that isn't set.
using Variables = std::function<std::string(const char *variable)>;

// The first of the variables that is set decides, as everywhere.
std::optional<std::string> first_set(const Variables &value_of,
                                     std::initializer_list<const char *> variables) {
    for (const char *variable : variables) {
        const std::string value = value_of(variable);
        if (!value.empty()) {
            return is_plain(value) ? std::nullopt : std::optional<std::string>(value);
        }
    }
    return std::nullopt;
}

NamedLocale read_locale(const Variables &value_of) {
    NamedLocale locale;
    locale.language = first_set(value_of, {"LC_ALL", "LC_MESSAGES", "LANG"});
    const std::string list = value_of("LANGUAGE");
    if (!list.empty()) {
        locale.language = list.substr(0, list.find(':'));
    }
    locale.region = first_set(value_of, {"LC_ALL", "LC_TIME", "LANG"});
    return locale;
}

NamedLocale read_environment() {
    return read_locale([](const char *variable) {
        const char *const value = std::getenv(variable);
        return std::string(value != nullptr ? value : "");
    });
}

NamedLocale read_assignments(const std::vector<std::string> &assignments) {
    return read_locale([&assignments](const char *variable) {
        const std::string begin = std::string(variable) + '=';
        for (const std::string &assignment : assignments) {
            if (assignment.starts_with(begin)) {
                return assignment.substr(begin.size());
            }
        }
        return std::string();
    });
}

std::string without_codeset(const std::string &locale) {
    return locale.substr(0, locale.find_first_of(".@"));
}

bool is_installed(const std::string &locale) {
    const locale_t found = newlocale(LC_ALL_MASK, locale.c_str(), nullptr);
    if (found != nullptr) {
        freelocale(found);
    }
    return found != nullptr;
}

// The toolkit draws UTF-8 only, so a locale counts with that codeset alone.
std::string installed_locale(const std::string &language) {
    const std::string locale = without_codeset(language) + ".UTF-8";
    return is_installed(locale) ? locale : kPlainLocale;
}

// The languages to look texts up in, and where.
struct Lookup {
    std::string languages;
    std::string folder;  // empty before the program has told it
};

Lookup &lookup() {
    static Lookup instance;
    return instance;
}

// The lookup doesn't survive a damaged catalogue.
void apply_lookup() {
    const Lookup &wanted = lookup();
    const std::string list = wanted.folder.empty() ? wanted.languages
                                                   : languages_with_sound_catalogues(
                                                         wanted.languages, wanted.folder, kDomain);
    const char *const present = std::getenv("LANGUAGE");
    if (present == nullptr || list != present) {
        setenv("LANGUAGE", list.c_str(), 1);
    }
    ++_nl_msg_cat_cntr;
}

void set_language_list(const std::string &languages) {
    lookup().languages = languages.empty() ? kDefaultLanguage : languages + ":" + kDefaultLanguage;
    apply_lookup();
}

// What the process speaks.
struct Current {
    std::string language = kDefaultLanguage;
    std::string locale = kPlainLocale;  // one that is installed and goes with the language
};

Current &current() {
    static Current instance;
    return instance;
}

// Makes `language` that of the text lookup.
void adopt_language(const std::string &language) {
    const std::string name = is_plain(language) ? kDefaultLanguage : without_codeset(language);
    set_language_list(name == kDefaultLanguage ? "" : name);
    current() = {name, installed_locale(name)};
}

// Widgets begin on the side where the language does. The toolkit itself looks once, at its start.
void follow_direction() {
    elm_config_mirrored_set(uloc_isRightToLeft(current().language.c_str()) ? EINA_TRUE
                                                                           : EINA_FALSE);
}

void set_process_locale() {
    std::setlocale(LC_ALL, "");
    const char *const messages = std::setlocale(LC_MESSAGES, nullptr);
    const char *const letters = std::setlocale(LC_CTYPE, nullptr);
    // With a plain locale nothing is ever translated, and another codeset can't be drawn.
    if (messages == nullptr || is_plain(messages)) {
        std::setlocale(LC_MESSAGES, current().locale.c_str());
    }
    if (letters == nullptr || std::string_view(letters).find("UTF-8") == std::string_view::npos) {
        std::setlocale(LC_CTYPE, current().locale.c_str());
    }
    std::setlocale(LC_NUMERIC, "C");
}

void speak(const std::string &language) {
    __wrap_elm_language_set(language.c_str());
    raise_app_event(APP_EVENT_LANGUAGE_CHANGED);
}

}  // namespace

const NamedLocale &environment_locale() {
    static const NamedLocale locale = read_environment();
    return locale;
}

void start_locale() {
    const char *const list = std::getenv("LANGUAGE");
    const std::string users_list = list != nullptr ? list : "";
    // The settings take the environment's languages now, before it is changed below.
    const std::unique_ptr<char, decltype(&std::free)> language(vconf_get_str(kLanguageKey),
                                                               &std::free);
    adopt_language(language ? language.get() : "");
    if (!users_list.empty()) {
        set_language_list(users_list);
    }
    bind_textdomain_codeset(kDomain, "UTF-8");
    textdomain(kDomain);
    set_process_locale();
}

void restore_locale() {
    set_process_locale();
    follow_direction();
}

const std::string &current_language() {
    return current().language;
}

void change_language(const std::string &language) {
    // A file that can't be written leaves the language changed for this process.
    static_cast<void>(set_setting(kLanguageKey, language));
    speak(language);
}

std::optional<std::string> current_region() {
    const std::unique_ptr<char, decltype(&std::free)> region(vconf_get_str(kRegionKey), &std::free);
    return region ? std::optional<std::string>(region.get()) : std::nullopt;
}

void change_region(const std::string &region) {
    static_cast<void>(set_setting(kRegionKey, region));
    raise_app_event(APP_EVENT_REGION_FORMAT_CHANGED);
}

Clock current_clock() {
    int clock = 0;
    return vconf_get_int(kClockKey, &clock) == 0 && clock == kTwelveHours
               ? Clock::twelve_hours
               : Clock::twenty_four_hours;
}

void follow_locale(const std::vector<std::string> &assignments) {
    const NamedLocale locale = read_assignments(assignments);
    const std::string language = locale.language.value_or(kDefaultLanguage);
    if (without_codeset(language) != current_language() &&
        follow_desktop_setting(kLanguageKey, language)) {
        speak(language);
    }
    const std::string region = locale.region.value_or(kDefaultRegion);
    if (region != current_region() && follow_desktop_setting(kRegionKey, region)) {
        raise_app_event(APP_EVENT_REGION_FORMAT_CHANGED);
    }
}

void change_clock(Clock clock) {
    const int setting = clock == Clock::twelve_hours ? kTwelveHours : kTwentyFourHours;
    static_cast<void>(set_setting(kClockKey, std::to_string(setting)));
    raise_app_event(APP_EVENT_REGION_FORMAT_CHANGED);
}

}  // namespace host

char *__wrap_bindtextdomain(const char *domain, const char *folder) {
    char *const bound = __real_bindtextdomain(domain, folder);
    if (bound != nullptr && folder != nullptr && std::string_view(domain) == host::kDomain) {
        host::lookup().folder = folder;
        host::apply_lookup();
    }
    return bound;
}

void __wrap_elm_language_set(const char *language) {
    if (language == nullptr) {
        return;
    }
    host::adopt_language(language);
    host::follow_direction();
    __real_elm_language_set(host::current().locale.c_str());
    // The toolkit sets all of the locale, and the program's numbers are not for a person to read.
    std::setlocale(LC_NUMERIC, "C");
}
