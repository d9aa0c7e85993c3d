#include "messaging/system_bus.h"

#include <memory>
#include <utility>

#include "common/gobject.h"
#include "common/service_thread.h"

namespace host {
namespace {

using Ready = std::function<void(GDBusConnection *, const char *)>;

void got(GObject * /*source*/, GAsyncResult *result, gpointer data) {
    const std::unique_ptr<Ready> ready(static_cast<Ready *>(data));
    GErrorPtr error;
    const GObjectPtr<GDBusConnection> bus(g_bus_get_finish(result, out(error)));
    if (bus) {
        // A bus that dies must not take the program with it.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    (*ready)(bus.get(), bus ? nullptr : error->message);
}

}  // namespace

void with_system_bus(Ready ready) {
    post_to_service_thread([ready = std::move(ready)] {
        g_bus_get(G_BUS_TYPE_SYSTEM, nullptr, &got, std::make_unique<Ready>(ready).release());
    });
}

}  // namespace host
