#include "messaging/instance.h"

#include <gio/gio.h>

#include <atomic>
#include <string_view>
#include <utility>

#include "common/service_thread.h"
#include "messaging/desktop_application.h"
#include "messaging/session_bus.h"

namespace host {
namespace {

constexpr const char *kBusName = "org.freedesktop.DBus";
constexpr const char *kBusPath = "/org/freedesktop/DBus";
constexpr int kBusTimeoutMs = 1000;
// The first may still be starting; it answers once its main loop runs.
constexpr int kHandOverTimeoutMs = 5000;
constexpr guint32 kDoNotQueue = 4;
constexpr guint32 kExists = 3;

constexpr const char *kIntrospection = R"(
<node><interface name="org.freedesktop.Application">
<method name="Activate"><arg type="a{sv}" direction="in"/></method>
<method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
<method name="ActivateAction"><arg type="s" direction="in"/><arg type="av" direction="in"/>
<arg type="a{sv}" direction="in"/></method>
</interface></node>)";

struct NodeUnref {
    void operator()(GDBusNodeInfo *info) const { g_dbus_node_info_unref(info); }
};

using Done = std::function<void(GVariant *answer)>;

// An asynchronous call whose answer, null for a failure, comes back on the service thread.
void call_bus(GDBusConnection *bus, const char *name, const char *path, const char *interface,
              const char *method, GVariant *parameters, int timeout_ms, Done done) {
    g_dbus_connection_call(
        bus, name, path, interface, method, parameters, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        timeout_ms, nullptr,
        [](GObject *source, GAsyncResult *result, gpointer data) {
            const std::unique_ptr<Done> done(static_cast<Done *>(data));
            const GVariantPtr answer(
                g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
            (*done)(answer.get());
        },
        new Done(std::move(done)));
}

class BusDelivery : public Instance::Delivery {
public:
    BusDelivery(AppControlPtr request, GDBusMethodInvocation *invocation)
        : request_(std::move(request)), invocation_(invocation) {}

    ~BusDelivery() override {
        if (invocation_ != nullptr) {
            g_dbus_method_invocation_return_dbus_error(invocation_,
                                                       "org.freedesktop.DBus.Error.ServiceUnknown",
                                                       "The application is ending");
        }
    }

    [[nodiscard]] const app_control_s *request() const override { return request_.get(); }

    void accept() override {
        g_dbus_method_invocation_return_value(std::exchange(invocation_, nullptr), nullptr);
    }

private:
    AppControlPtr request_;
    // Owned by the call; answering it gives the reference away.
    GDBusMethodInvocation *invocation_;
};

}  // namespace

// Lives on the service thread; the calls on their way keep it.
class Instance::Member : public std::enable_shared_from_this<Member> {
public:
    explicit Member(Handlers handlers) : handlers_(std::move(handlers)) {}

    void join(GDBusConnection *bus, AppControlPtr request, std::function<void(Role)> decided) {
        request_ = std::move(request);
        decided_ = std::move(decided);
        if (bus == nullptr) {
            decide(Role::play);
            return;
        }
        bus_.reset(G_DBUS_CONNECTION(g_object_ref(bus)));
        serve();
        request_name(kDoNotQueue, [this](guint32 answer) { named(answer); });
    }

    void leave() {
        left_ = true;
        if (!bus_) {
            return;
        }
        if (registration_ != 0) {
            g_dbus_connection_unregister_object(bus_.get(), registration_);
            registration_ = 0;
        }
        call_bus(bus_.get(), kBusName, kBusPath, kBusName, "ReleaseName",
                 g_variant_new("(s)", kOwnId), kBusTimeoutMs, [](GVariant *) {});
        bus_.reset();
    }

private:
    void request_name(guint32 flags, std::function<void(guint32)> done) {
        call_bus(bus_.get(), kBusName, kBusPath, kBusName, "RequestName",
                 g_variant_new("(su)", kOwnId, flags), kBusTimeoutMs,
                 [self = shared_from_this(), done = std::move(done)](GVariant *answer) {
                     guint32 number = 0;
                     if (answer != nullptr && g_variant_is_of_type(answer, G_VARIANT_TYPE("(u)"))) {
                         g_variant_get(answer, "(u)", &number);
                     }
                     done(number);
                 });
    }

    void named(guint32 answer) {
        if (answer == kExists && bus_) {
            hand_over();
        } else {
            decide(Role::play);
        }
    }

    void hand_over() {
        const ApplicationCall call = call_for(*request_);
        call_bus(bus_.get(), kOwnId, object_path_of(kOwnId).c_str(), kApplicationInterface,
                 call.method, call.parameters, kHandOverTimeoutMs,
                 [self = shared_from_this()](GVariant *accepted) {
                     if (accepted != nullptr) {
                         self->decide(Role::handed_over);
                         return;
                     }
                     // The first is ending: be next in line for its name, and play.
                     if (self->bus_) {
                         self->request_name(0, [](guint32) {});
                     }
                     self->decide(Role::play);
                 });
    }

    void decide(Role role) {
        if (decided_) {
            std::exchange(decided_, nullptr)(role);
        }
    }

    void serve() {
        const std::unique_ptr<GDBusNodeInfo, NodeUnref> node(
            g_dbus_node_info_new_for_xml(kIntrospection, nullptr));
        static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
        registration_ = g_dbus_connection_register_object(
            bus_.get(), object_path_of(kOwnId).c_str(), node->interfaces[0], &table,
            new std::shared_ptr<Member>(shared_from_this()),
            [](gpointer data) { delete static_cast<std::shared_ptr<Member> *>(data); }, nullptr);
    }

    static void called(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                       const gchar *method, GVariant *parameters, GDBusMethodInvocation *invocation,
                       gpointer data) {
        (*static_cast<std::shared_ptr<Member> *>(data))->answer(method, parameters, invocation);
    }

    void answer(std::string_view method, GVariant *parameters, GDBusMethodInvocation *invocation) {
        if (method == "ActivateAction") {
            act(parameters, invocation);
            return;
        }
        auto delivery =
            std::make_shared<BusDelivery>(request_of(std::string(method), parameters), invocation);
        if (!left_) {
            handlers_.deliver(std::move(delivery));
        }
    }

    void act(GVariant *parameters, GDBusMethodInvocation *invocation) {
        const char *action = nullptr;
        g_variant_get_child(parameters, 0, "&s", &action);
        if (std::string_view(action) != kQuitAction) {
            g_dbus_method_invocation_return_dbus_error(
                invocation, "org.freedesktop.DBus.Error.InvalidArgs", "Unknown action");
            return;
        }
        g_dbus_method_invocation_return_value(invocation, nullptr);
        handlers_.quit();
    }

    Handlers handlers_;
    GObjectPtr<GDBusConnection> bus_;
    AppControlPtr request_;
    bool left_ = false;
    guint registration_ = 0;
    std::function<void(Role)> decided_;
};

Instance::Instance(Handlers handlers) : member_(std::make_shared<Member>(std::move(handlers))) {}

Instance::~Instance() {
    // The last to hold it must be the thread that it lives on.
    run_on_service_thread([this] {
        member_->leave();
        member_.reset();
    });
}

void Instance::join(const app_control_s &request, std::function<void(Role)> decided) {
    const auto copy = std::make_shared<AppControlPtr>(std::make_unique<app_control_s>(request));
    with_session_bus(
        [member = member_, copy, decided = std::move(decided)](GDBusConnection *bus) mutable {
            member->join(bus, std::move(*copy), std::move(decided));
        });
}

void Instance::leave() {
    post_to_service_thread([member = member_] { member->leave(); });
}

}  // namespace host
