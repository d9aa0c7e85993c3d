#include "i18n/locale_watch.h"

#include <optional>
#include <string>
#include <vector>

#include "common/gobject.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "i18n/locale.h"
#include "messaging/bus_signal.h"
#include "messaging/system_bus.h"

namespace host {
namespace {

constexpr const char *kInterface = "org.freedesktop.locale1";
constexpr BusSignal::Source kChanges{.sender = kInterface,
                                     .path = "/org/freedesktop/locale1",
                                     .interface = "org.freedesktop.DBus.Properties",
                                     .name = "PropertiesChanged",
                                     .first_argument = kInterface};

/// The locale among the changed properties: texts such as "LANG=fr_FR.UTF-8".
std::optional<std::vector<std::string>> locale_of(GVariant *parameters) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)"))) {
        return std::nullopt;
    }
    const GVariantPtr properties(g_variant_get_child_value(parameters, 1));
    const GVariantPtr locale(
        g_variant_lookup_value(properties.get(), "Locale", G_VARIANT_TYPE_STRING_ARRAY));
    if (!locale) {
        return std::nullopt;
    }
    std::vector<std::string> assignments;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, locale.get());
    const char *text = nullptr;
    while (g_variant_iter_next(&iterator, "&s", &text) != FALSE) {
        assignments.emplace_back(text);
    }
    return assignments;
}

/// Service thread.
struct Watch {
    bool wanted = false;
    std::optional<BusSignal> changes;
};

Watch &watch() {
    static Watch instance;
    return instance;
}

void heard(GVariant *parameters) {
    if (const auto assignments = locale_of(parameters)) {
        post_to_main_loop([assignments] { follow_locale(*assignments); });
    }
}

}  // namespace

void start_locale_watch() {
    post_to_service_thread([] { watch().wanted = true; });
    with_system_bus([](GDBusConnection *bus, const char * /*why_not*/) {
        if (bus != nullptr && watch().wanted) {
            watch().changes.emplace(bus, kChanges, heard);
        }
    });
}

void stop_locale_watch() {
    run_on_service_thread([] {
        watch().wanted = false;
        watch().changes.reset();
    });
}

}  // namespace host
