#pragma once

#include <gio/gio.h>

#include <functional>

#include "common/gobject.h"

namespace host {

/// Hears one kind of signal of a bus for as long as it lives. Made, called and destroyed on the
/// service thread.
class BusSignal {
public:
    /// Null stands for any.
    struct Source {
        const char *sender = nullptr;
        const char *path = nullptr;
        const char *interface = nullptr;
        const char *name = nullptr;
        const char *first_argument = nullptr;
    };
    /// The parameters are borrowed for the call.
    using Heard = std::function<void(GVariant *parameters)>;

    BusSignal(GDBusConnection *bus, const Source &source, Heard heard);
    ~BusSignal();
    BusSignal(const BusSignal &) = delete;
    BusSignal &operator=(const BusSignal &) = delete;

private:
    GObjectPtr<GDBusConnection> bus_;
    Heard heard_;
    guint subscription_;
};

}  // namespace host
