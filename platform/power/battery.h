#pragma once

namespace host {

/// How the battery is, as UPower says it.
enum class BatteryLevel { unknown, none, low, critical, action };

struct BatteryState {
    BatteryLevel level = BatteryLevel::unknown;
    bool discharging = false;
};

/// The battery of the machine: what vconf's "memory/sysman/battery_status_low" says, and the low
/// battery event. Thread: main loop.
///
/// The event is raised, with one line on standard error, when the critical or the action level is
/// reached while the battery discharges. What the machine starts with raises nothing.

/// Watches UPower on the system bus, and goes on when it comes later or starts again. Without it
/// there is no state.
void start_battery_watch();
void stop_battery_watch();

/// The battery is found to be in this state: nothing has changed.
void note_battery(const BatteryState &state);
/// The battery has come into this state, as UPower or a tester says.
void report_battery(const BatteryState &state);

}  // namespace host
