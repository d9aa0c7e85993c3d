#include "access/screen_reader.h"

#include <Elementary.h>
#include <dlog.h>
#include <gio/gio.h>
#include <uxt.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "access/extents.h"
#include "access/speech.h"
#include "common/gobject.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "messaging/session_bus.h"

namespace host {
namespace {

constexpr char kBusName[] = "org.a11y.Bus";
constexpr char kBusPath[] = "/org/a11y/bus";
constexpr char kStatusInterface[] = "org.a11y.Status";
constexpr char kScreenReaderEnabled[] = "ScreenReaderEnabled";

// The snapshots that every query is answered from.
std::atomic<bool> desktop_says{false};
enum class Word { none, off, on };
std::atomic<Word> tester_says{Word::none};

/// Follows the desktop's status object for the life of the process. Lives on the service thread.
class StatusWatch {
public:
    static void start(GDBusConnection *bus) {
        // The object is only listened to: a desktop without assistive technologies isn't made to
        // start them. It is followed when it appears later.
        constexpr auto flags =
            static_cast<GDBusProxyFlags>(G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START |
                                         G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START_AT_CONSTRUCTION);
        cancellable().reset(g_cancellable_new());
        g_dbus_proxy_new(bus, flags, nullptr, kBusName, kBusPath, kStatusInterface,
                         cancellable().get(), &StatusWatch::created, nullptr);
    }

    static void stop() {
        if (cancellable()) {
            g_cancellable_cancel(cancellable().get());
        }
        proxy().reset();
    }

private:
    static void created(GObject *, GAsyncResult *result, gpointer) {
        GErrorPtr error;
        proxy().reset(g_dbus_proxy_new_finish(result, out(error)));
        if (!proxy()) {
            if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE) {
                return;
            }
            __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "No word on screen readers: %s",
                         error->message);
            return;
        }
        g_signal_connect(proxy().get(), "g-properties-changed",
                         G_CALLBACK(&StatusWatch::properties_changed), nullptr);
        g_signal_connect(proxy().get(), "notify::g-name-owner",
                         G_CALLBACK(&StatusWatch::owner_changed), nullptr);
        read();
    }

    static void properties_changed(GDBusProxy *, GVariant *, GStrv, gpointer) { read(); }
    static void owner_changed(GDBusProxy *, GParamSpec *, gpointer) { read(); }

    /// Without an owner the proxy holds no property, and no screen reader is on.
    static void read() {
        const GVariantPtr value(
            g_dbus_proxy_get_cached_property(proxy().get(), kScreenReaderEnabled));
        desktop_says = value &&
                       g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) != FALSE &&
                       g_variant_get_boolean(value.get()) != FALSE;
    }

    static GObjectPtr<GCancellable> &cancellable() {
        static GObjectPtr<GCancellable> instance;
        return instance;
    }

    static GObjectPtr<GDBusProxy> &proxy() {
        static GObjectPtr<GDBusProxy> instance;
        return instance;
    }
};

void watch_status() {
    static std::once_flag once;
    std::call_once(once, [] {
        with_session_bus([](GDBusConnection *bus) {
            if (bus != nullptr) {
                StatusWatch::start(bus);
            }
        });
    });
}

}  // namespace

void start_accessibility() {
    report_extents_on_desktop();
    watch_status();
    // Whoever has set it knows better.
    if (std::getenv("ELM_ATSPI_MODE") != nullptr) {
        return;
    }
    // The toolkit connects while the main loop waits, without end on a bus that doesn't answer, so
    // it is let do so only after this process has connected.
    with_session_bus([](GDBusConnection *bus) {
        if (bus != nullptr) {
            post_to_main_loop([] { elm_config_atspi_mode_set(EINA_TRUE); });
        }
    });
}

void stop_accessibility() {
    stop_speech();
    run_on_service_thread([] { StatusWatch::stop(); });
}

bool screen_reader_enabled() {
    watch_status();
    const Word word = tester_says;
    return word == Word::none ? desktop_says.load() : word == Word::on;
}

void switch_screen_reader(bool on) {
    tester_says = on ? Word::on : Word::off;
}

}  // namespace host

int uxt_access_is_accessibility_enabled(void) {
    return host::screen_reader_enabled() ? 1 : 0;
}
