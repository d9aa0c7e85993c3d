#include "messaging/bus_signal.h"

#include <utility>

namespace host {

BusSignal::BusSignal(GDBusConnection *bus, const Source &source, Heard heard)
    : bus_(G_DBUS_CONNECTION(g_object_ref(bus))),
      heard_(std::move(heard)),
      subscription_(g_dbus_connection_signal_subscribe(
          bus, source.sender, source.interface, source.name, source.path, source.first_argument,
          G_DBUS_SIGNAL_FLAGS_NONE,
          [](GDBusConnection *, const gchar *, const gchar *, const gchar *, const gchar *,
             GVariant *parameters,
             gpointer self) { static_cast<BusSignal *>(self)->heard_(parameters); },
          this, nullptr)) {}

// No call comes after this: it is made on the same thread, and only for a subscription that lives.
BusSignal::~BusSignal() {
    g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

}  // namespace host
