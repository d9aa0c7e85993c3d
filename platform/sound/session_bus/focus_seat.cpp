#include "sound/session_bus/focus_seat.h"

#include <algorithm>
#include <utility>

#include "common/service_thread.h"
#include "messaging/session_bus.h"

namespace host::sound {
namespace {

constexpr const char *kBus = "org.freedesktop.DBus";
constexpr const char *kBusPath = "/org/freedesktop/DBus";
constexpr const char *kPath = "/com/orvane/AudioFocus";
constexpr const char *kInterface = "com.orvane.AudioFocus";
constexpr const char *kStateMethod = "State";
constexpr const char *kIntrospection = R"(
<node><interface name="com.orvane.AudioFocus">
<method name="State"><arg name="behavior" type="i" direction="in"/>
<arg name="extra_info" type="s" direction="in"/></method>
</interface></node>)";

constexpr int kBusTimeoutMs = 1000;
/// A holder that doesn't listen loses the focus all the same.
constexpr int kStatementTimeoutMs = 100;
/// Who stated something longest ago is forgotten first.
constexpr std::size_t kMostStatements = 32;
constexpr int kBehaviorBits = SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING;

// Numbers of the bus.
constexpr guint32 kAllowReplacement = 1;
constexpr guint32 kReplaceExisting = 2;
constexpr guint32 kDoNotQueue = 4;
constexpr guint32 kPrimaryOwner = 1;
constexpr guint32 kInQueue = 2;
constexpr guint32 kExists = 3;
constexpr guint32 kAlreadyOwner = 4;

using WeakSeat = std::weak_ptr<FocusSeat>;

struct NodeUnref {
    void operator()(GDBusNodeInfo *info) const { g_dbus_node_info_unref(info); }
};

void free_weak_seat(gpointer seat) {
    delete static_cast<WeakSeat *>(seat);
}

std::shared_ptr<FocusSeat> lock_seat(gpointer seat) {
    return static_cast<WeakSeat *>(seat)->lock();
}

/// Only the bus's own texts are sure to be what it can carry.
std::string valid_utf8(const std::string &text) {
    const GText valid(g_utf8_make_valid(text.c_str(), static_cast<gssize>(text.size())));
    return valid.get();
}

}  // namespace

FocusSeat::FocusSeat(StreamId stream, FocusEvents &events)
    : stream_(stream),
      events_(events),
      chairs_{{{"com.orvane.AudioFocus.Playback", SOUND_STREAM_FOCUS_FOR_PLAYBACK},
               {"com.orvane.AudioFocus.Recording", SOUND_STREAM_FOCUS_FOR_RECORDING}}} {}

FocusSeat::~FocusSeat() = default;

// ---- the bus

void FocusSeat::join() {
    const std::lock_guard calls(calls_mutex_);
    joining_ = std::async(std::launch::async, &open_session_bus);
}

void FocusSeat::leave() {
    const std::lock_guard calls(calls_mutex_);
    if (on_bus()) {
        for (Chair &chair : chairs_) {
            if (holds(chair)) {
                (void)give(chair, {});
            }
        }
    }
    disconnect();
}

/// Whether there is a bus now. One that has gone may be back under its old address.
bool FocusSeat::on_bus() {
    if (joining_.valid()) {
        bus_ = joining_.get();
        connect();
    }
    return bus_ && g_dbus_connection_is_closed(bus_.get()) == FALSE;
}

void FocusSeat::connect() {
    if (!bus_) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        own_name_ = g_dbus_connection_get_unique_name(bus_.get());
    }
    // There, so that the calls of this member and what the bus tells come on that thread.
    run_on_service_thread([this] {
        const std::unique_ptr<GDBusNodeInfo, NodeUnref> node(
            g_dbus_node_info_new_for_xml(kIntrospection, nullptr));
        static constexpr GDBusInterfaceVTable kTable{
            [](GDBusConnection *, const gchar *sender, const gchar *, const gchar *, const gchar *,
               GVariant *parameters, GDBusMethodInvocation *invocation, gpointer data) {
                int behavior = 0;
                const char *extra = nullptr;
                g_variant_get(parameters, "(i&s)", &behavior, &extra);
                if (const auto seat = lock_seat(data)) {
                    seat->stated(sender, {behavior & kBehaviorBits, extra});
                }
                g_dbus_method_invocation_return_value(invocation, nullptr);
            },
            nullptr,
            nullptr,
            {}};
        object_ = g_dbus_connection_register_object(bus_.get(), kPath, node->interfaces[0], &kTable,
                                                    new WeakSeat(weak_from_this()), &free_weak_seat,
                                                    nullptr);
        // The bus handles this before any request that follows, so no change is missed.
        subscription_ = g_dbus_connection_signal_subscribe(
            bus_.get(), kBus, kBus, "NameOwnerChanged", kBusPath, kInterface,
            G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE,
            [](GDBusConnection *, const gchar *, const gchar *, const gchar *, const gchar *,
               GVariant *parameters, gpointer data) {
                const char *name = nullptr;
                const char *before = nullptr;
                const char *after = nullptr;
                g_variant_get(parameters, "(&s&s&s)", &name, &before, &after);
                if (const auto seat = lock_seat(data)) {
                    seat->owner_changed(name, before, after);
                }
            },
            new WeakSeat(weak_from_this()), &free_weak_seat);
    });
}

void FocusSeat::disconnect() {
    if (!bus_) {
        return;
    }
    run_on_service_thread([this] {
        g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
        g_dbus_connection_unregister_object(bus_.get(), object_);
        if (g_dbus_connection_is_closed(bus_.get()) == FALSE) {
            g_dbus_connection_close(bus_.get(), nullptr, nullptr, nullptr);
        }
        bus_.reset();
    });
}

GVariantPtr FocusSeat::call_bus(const char *method, GVariant *parameters) {
    return GVariantPtr(g_dbus_connection_call_sync(bus_.get(), kBus, kBusPath, kBus, method,
                                                   parameters, nullptr, G_DBUS_CALL_FLAGS_NONE,
                                                   kBusTimeoutMs, nullptr, nullptr));
}

// ---- what the stream does

int FocusSeat::acquire(int mask, const FocusStatement &statement) {
    const std::lock_guard calls(calls_mutex_);
    if (!on_bus() && session_bus_address()) {
        // What is held without a bus is to be held on the one that is back.
        disconnect();
        bus_ = open_session_bus();
        connect();
        const std::lock_guard lock(mutex_);
        for (Chair &chair : chairs_) {
            mask |= bus_ && chair.held ? chair.mask : 0;
            chair.held = chair.held && !bus_;
        }
    }
    int taken = 0;
    for (Chair &chair : chairs_) {
        if ((chair.mask & mask) == 0 || holds(chair)) {
            continue;
        }
        if (const int result = take(chair, statement); result != SOUND_MANAGER_ERROR_NONE) {
            for (Chair &other : chairs_) {
                if ((other.mask & taken) != 0) {
                    (void)give(other, statement);
                }
            }
            return result;
        }
        taken |= chair.mask;
    }
    return SOUND_MANAGER_ERROR_NONE;
}

int FocusSeat::release(int mask, const FocusStatement &statement) {
    const std::lock_guard calls(calls_mutex_);
    for (const Chair &chair : chairs_) {
        if ((chair.mask & mask) != 0 && !holds(chair)) {
            return SOUND_MANAGER_ERROR_INVALID_STATE;
        }
    }
    int result = SOUND_MANAGER_ERROR_NONE;
    for (Chair &chair : chairs_) {
        if ((chair.mask & mask) != 0) {
            result = std::min(result, give(chair, statement));
        }
    }
    return result;
}

int FocusSeat::held() {
    const std::lock_guard lock(mutex_);
    int mask = 0;
    for (const Chair &chair : chairs_) {
        mask |= chair.held ? chair.mask : 0;
    }
    return mask;
}

void FocusSeat::set_reacquisition(bool enable) {
    const std::lock_guard calls(calls_mutex_);
    {
        const std::lock_guard lock(mutex_);
        reacquisition_ = enable;
    }
    if (!on_bus()) {
        return;
    }
    for (Chair &chair : chairs_) {
        if (keep_or_give_up(chair)) {
            // Says anew whether to queue when it is replaced; doesn't change who holds it.
            (void)call_bus(
                "RequestName",
                g_variant_new("(su)", chair.name, kAllowReplacement | (enable ? 0U : kDoNotQueue)));
        } else if (!enable) {
            (void)call_bus("ReleaseName", g_variant_new("(s)", chair.name));
        }
        end_move(chair);
    }
}

/// @return whether the chair is held. If not, whatever happens to it from now on isn't reported.
bool FocusSeat::keep_or_give_up(Chair &chair) {
    const std::lock_guard lock(mutex_);
    if (!chair.held && !reacquisition_) {
        chair.move = Move::giving;
    }
    return chair.held;
}

int FocusSeat::take(Chair &chair, const FocusStatement &statement) {
    if (!on_bus()) {
        const std::lock_guard lock(mutex_);
        chair.held = true;
        return SOUND_MANAGER_ERROR_NONE;
    }
    tell(chair.name, statement);
    guint32 flags = kAllowReplacement | kReplaceExisting;
    {
        const std::lock_guard lock(mutex_);
        flags |= reacquisition_ ? 0 : kDoNotQueue;
        chair.move = Move::taking;
    }
    const GVariantPtr answer = call_bus("RequestName", g_variant_new("(su)", chair.name, flags));
    guint32 place = 0;
    if (answer) {
        g_variant_get(answer.get(), "(u)", &place);
    }
    if (place == kInQueue) {
        // Whoever doesn't let go may not be waited for either.
        set_move(chair, Move::giving);
        (void)call_bus("ReleaseName", g_variant_new("(s)", chair.name));
    }
    end_move(chair);
    if (place == kPrimaryOwner || place == kAlreadyOwner) {
        return SOUND_MANAGER_ERROR_NONE;
    }
    if (place == kInQueue || place == kExists) {
        return SOUND_MANAGER_ERROR_POLICY;
    }
    return on_bus() ? SOUND_MANAGER_ERROR_INTERNAL : take(chair, statement);
}

int FocusSeat::give(Chair &chair, const FocusStatement &statement) {
    if (on_bus()) {
        set_move(chair, Move::giving);
        if (const std::string next = next_in_line(chair); !next.empty()) {
            tell(next.c_str(), statement);
        }
        const GVariantPtr answer = call_bus("ReleaseName", g_variant_new("(s)", chair.name));
        end_move(chair);
        if (!answer && on_bus()) {
            return SOUND_MANAGER_ERROR_INTERNAL;
        }
    }
    const std::lock_guard lock(mutex_);
    chair.held = false;
    return SOUND_MANAGER_ERROR_NONE;
}

/// @param whom  a bus name; nobody may have it
void FocusSeat::tell(const char *whom, const FocusStatement &statement) {
    const GVariantPtr heard(g_dbus_connection_call_sync(
        bus_.get(), whom, kPath, kInterface, kStateMethod,
        g_variant_new("(is)", statement.behavior, valid_utf8(statement.extra_info).c_str()),
        nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, kStatementTimeoutMs, nullptr, nullptr));
}

std::string FocusSeat::next_in_line(const Chair &chair) {
    const GVariantPtr answer = call_bus("ListQueuedOwners", g_variant_new("(s)", chair.name));
    if (!answer) {
        return {};
    }
    const GVariantPtr owners(g_variant_get_child_value(answer.get(), 0));
    if (g_variant_n_children(owners.get()) < 2) {
        return {};
    }
    const char *second = nullptr;
    g_variant_get_child(owners.get(), 1, "&s", &second);
    return second;
}

bool FocusSeat::holds(const Chair &chair) {
    const std::lock_guard lock(mutex_);
    return chair.held;
}

void FocusSeat::set_move(Chair &chair, Move move) {
    const std::lock_guard lock(mutex_);
    chair.move = move;
}

void FocusSeat::end_move(Chair &chair) {
    // The bus told of changes before it answered, and the service thread takes one after the other.
    run_on_service_thread([] {});
    set_move(chair, Move::none);
}

// ---- what others do

void FocusSeat::stated(const std::string &who, FocusStatement statement) {
    const std::lock_guard lock(mutex_);
    std::erase_if(statements_, [&who](const auto &entry) { return entry.first == who; });
    statements_.emplace_back(who, std::move(statement));
    if (statements_.size() > kMostStatements) {
        statements_.pop_front();
    }
}

void FocusSeat::owner_changed(const std::string &name, const std::string &before,
                              const std::string &after) {
    const std::lock_guard lock(mutex_);
    const auto chair = std::find_if(chairs_.begin(), chairs_.end(),
                                    [&name](const Chair &each) { return each.name == name; });
    const bool gained = after == own_name_;
    if (chair == chairs_.end() || gained == (before == own_name_)) {
        return;
    }
    chair->held = gained;
    if (chair->move == Move::giving) {
        return;
    }
    if (chair->move == Move::taking && gained) {
        chair->move = Move::none;
        return;
    }
    FocusChange change;
    change.mask = chair->mask;
    change.state = gained ? SOUND_STREAM_FOCUS_STATE_ACQUIRED : SOUND_STREAM_FOCUS_STATE_RELEASED;
    const std::string &other = gained ? before : after;
    for (const auto &[who, statement] : statements_) {
        if (who == other) {
            change.behavior = statement.behavior;
            change.extra_info = statement.extra_info;
        }
    }
    events_.focus_changed(stream_, change);
}

}  // namespace host::sound
