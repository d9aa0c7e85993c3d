#pragma once

#include <app_control.h>

#include <optional>
#include <string>

#include "app/options.h"

namespace host {

/// What is special to one kind of application at the turns of its life, which Application drives.
/// Thread: main; from create() on, inside the main loop.
class ApplicationKind {
public:
    virtual ~ApplicationKind() = default;

    /// Before anything is started.
    virtual void adapt(Options & /*options*/) {}
    /// After the environment has been prepared, before the toolkit is.
    virtual void warm_up() {}
    /// What must stand before the loop runs.
    /// @return false, after one line on standard error, when it can't be had
    [[nodiscard]] virtual bool start() { return true; }

    /// @return false to end without any further call
    [[nodiscard]] virtual bool create() = 0;
    /// `request` is the application's own to change, valid during the call.
    virtual void take(app_control_h request) = 0;
    virtual void set_foreground(bool /*foreground*/) {}
    /// The loop has ended; only after a create() that succeeded.
    virtual void terminate() = 0;
    /// Frees what start() and warm_up() have set up.
    virtual void stop() {}

    /// Whether a person can see and touch the application.
    [[nodiscard]] virtual bool has_screen() const { return true; }
    /// Whether there is something to be seen from which `--screenshot` counts its time.
    [[nodiscard]] virtual bool has_picture() const { return false; }
    /// One line that says why the run was in vain; nothing when it wasn't.
    [[nodiscard]] virtual std::optional<std::string> failure() const { return std::nullopt; }
};

}  // namespace host
