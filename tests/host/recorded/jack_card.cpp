// A sound card for PipeWire with sockets that are plugged by hand: "ROUTE yes|no|unknown" on the
// standard input. README.md tells what it is for and how it is built.

#include <pipewire/pipewire.h>
#include <spa/monitor/device.h>
#include <spa/monitor/utils.h>
#include <spa/param/param.h>
#include <spa/param/props.h>
#include <spa/pod/builder.h>
#include <spa/pod/parser.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

/// One profile, which is always the one in use.
constexpr int kProfile = 0;

using Properties = std::vector<spa_dict_item>;

struct Route {
    std::string name;
    std::string description;
    std::string type;  ///< none if empty
    int device;
    int priority;
    std::uint32_t available;
};

struct Sink {
    const char *name;
    const char *description;
    Properties properties;
    int route;  ///< the one in use
};

/// A device with a sink per Route::device, and the routes that lead out of them.
class Card {
public:
    Card(Properties properties, std::vector<Sink> sinks, std::vector<Route> routes)
        : properties_(std::move(properties)), sinks_(std::move(sinks)), routes_(std::move(routes)) {
        static const spa_device_methods methods{SPA_VERSION_DEVICE_METHODS, add_listener, sync,
                                                enum_params, set_param};
        device_.iface =
            SPA_INTERFACE_INIT(SPA_TYPE_INTERFACE_Device, SPA_VERSION_DEVICE, &methods, this);
        spa_hook_list_init(&listeners_);
    }
    Card(const Card &) = delete;
    Card &operator=(const Card &) = delete;

    /// Its sinks are made once the server has given it a number.
    void put_into(pw_core *core) {
        core_ = core;
        static const pw_proxy_events events = [] {
            pw_proxy_events made{};
            made.version = PW_VERSION_PROXY_EVENTS;
            made.bound = [](void *self, std::uint32_t number) { of(self).add_sinks(number); };
            return made;
        }();
        const spa_dict dict =
            SPA_DICT_INIT(properties_.data(), static_cast<std::uint32_t>(properties_.size()));
        pw_proxy *proxy = static_cast<pw_proxy *>(
            pw_core_export(core, SPA_TYPE_INTERFACE_Device, &dict, &device_, 0));
        pw_proxy_add_listener(proxy, &bound_, &events, this);
    }

    bool plug(const std::string &name, std::uint32_t available) {
        const auto route = std::find_if(routes_.begin(), routes_.end(),
                                        [&name](const Route &each) { return each.name == name; });
        if (route == routes_.end()) {
            return false;
        }
        route->available = available;
        tell_routes();
        return true;
    }

private:
    static spa_param_info param(std::uint32_t id, std::uint32_t flags) {
        spa_param_info info{};
        info.id = id;
        info.flags = flags;
        return info;
    }

    static Card &of(void *self) { return *static_cast<Card *>(self); }

    static int add_listener(void *self, spa_hook *hook, const spa_device_events *events,
                            void *data) {
        Card &card = of(self);
        spa_hook_list before;
        spa_hook_list_isolate(&card.listeners_, &before, hook, events, data);
        card.tell(SPA_DEVICE_CHANGE_MASK_PROPS | SPA_DEVICE_CHANGE_MASK_PARAMS);
        spa_hook_list_join(&card.listeners_, &before);
        return 0;
    }
    static int sync(void *self, int sequence) {
        spa_device_emit_result(&of(self).listeners_, sequence, 0, 0, nullptr);
        return 0;
    }
    static int enum_params(void *self, int sequence, std::uint32_t id, std::uint32_t start,
                           std::uint32_t most, const spa_pod * /*filter*/) {
        Card &card = of(self);
        const std::uint32_t count = card.count_of(id);
        for (std::uint32_t index = start; index < count && index - start < most; ++index) {
            std::array<std::uint8_t, 4096> buffer;
            spa_pod_builder builder = SPA_POD_BUILDER_INIT(buffer.data(), buffer.size());
            spa_result_device_params result{id, index, index + 1, card.build(builder, id, index)};
            spa_device_emit_result(&card.listeners_, sequence, 0, SPA_RESULT_TYPE_DEVICE_PARAMS,
                                   &result);
        }
        return 0;
    }
    static int set_param(void *self, std::uint32_t id, std::uint32_t /*flags*/,
                         const spa_pod *param) {
        if (id != SPA_PARAM_Route || param == nullptr) {
            return id == SPA_PARAM_Profile ? 0 : -ENOENT;
        }
        Card &card = of(self);
        int route = -1;
        int device = -1;
        if (spa_pod_parse_object(param, SPA_TYPE_OBJECT_ParamRoute, nullptr, SPA_PARAM_ROUTE_index,
                                 SPA_POD_Int(&route), SPA_PARAM_ROUTE_device,
                                 SPA_POD_Int(&device)) < 0 ||
            route < 0 || route >= static_cast<int>(card.routes_.size()) ||
            card.routes_[route].device != device) {
            return -EINVAL;
        }
        card.sinks_[device].route = route;
        card.tell_routes();
        return 0;
    }

    [[nodiscard]] std::uint32_t count_of(std::uint32_t id) const {
        switch (id) {
        case SPA_PARAM_EnumProfile:
        case SPA_PARAM_Profile:
            return 1;
        case SPA_PARAM_EnumRoute:
            return static_cast<std::uint32_t>(routes_.size());
        case SPA_PARAM_Route:
            return static_cast<std::uint32_t>(sinks_.size());
        default:
            return 0;
        }
    }

    spa_pod *build(spa_pod_builder &builder, std::uint32_t id, std::uint32_t index) const {
        switch (id) {
        case SPA_PARAM_EnumRoute:
            return build_route(builder, id, static_cast<int>(index), -1);
        case SPA_PARAM_Route:
            return build_route(builder, id, sinks_[index].route, static_cast<int>(index));
        default:
            return build_profile(builder, id);
        }
    }

    spa_pod *build_profile(spa_pod_builder &builder, std::uint32_t id) const {
        std::vector<int> devices;
        for (std::size_t index = 0; index < sinks_.size(); ++index) {
            devices.push_back(static_cast<int>(index));
        }
        const int count = static_cast<int>(devices.size());
        spa_pod_frame object;
        spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_ParamProfile, id);
        spa_pod_builder_add(&builder, SPA_PARAM_PROFILE_index, SPA_POD_Int(kProfile),
                            SPA_PARAM_PROFILE_name, SPA_POD_String("output:all"),
                            SPA_PARAM_PROFILE_description, SPA_POD_String("All outputs"),
                            SPA_PARAM_PROFILE_priority, SPA_POD_Int(100),
                            SPA_PARAM_PROFILE_available, SPA_POD_Id(SPA_PARAM_AVAILABILITY_yes), 0);
        spa_pod_builder_prop(&builder, SPA_PARAM_PROFILE_classes, 0);
        spa_pod_frame classes;
        spa_pod_builder_push_struct(&builder, &classes);
        spa_pod_builder_int(&builder, 1);
        spa_pod_builder_add_struct(&builder, SPA_POD_String("Audio/Sink"), SPA_POD_Int(count),
                                   SPA_POD_String("card.profile.devices"),
                                   SPA_POD_Array(sizeof(int), SPA_TYPE_Int, count, devices.data()));
        spa_pod_builder_pop(&builder, &classes);
        return static_cast<spa_pod *>(spa_pod_builder_pop(&builder, &object));
    }

    /// @param device  that it is in use for; -1: just a description
    spa_pod *build_route(spa_pod_builder &builder, std::uint32_t id, int index, int device) const {
        const Route &route = routes_[index];
        spa_pod_frame object;
        spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_ParamRoute, id);
        spa_pod_builder_add(
            &builder, SPA_PARAM_ROUTE_index, SPA_POD_Int(index), SPA_PARAM_ROUTE_direction,
            SPA_POD_Id(SPA_DIRECTION_OUTPUT), SPA_PARAM_ROUTE_name,
            SPA_POD_String(route.name.c_str()), SPA_PARAM_ROUTE_description,
            SPA_POD_String(route.description.c_str()), SPA_PARAM_ROUTE_priority,
            SPA_POD_Int(route.priority), SPA_PARAM_ROUTE_available, SPA_POD_Id(route.available),
            SPA_PARAM_ROUTE_profiles, SPA_POD_Array(sizeof(int), SPA_TYPE_Int, 1, &kProfile),
            SPA_PARAM_ROUTE_devices, SPA_POD_Array(sizeof(int), SPA_TYPE_Int, 1, &route.device), 0);
        if (!route.type.empty()) {
            spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_info, 0);
            spa_pod_builder_add_struct(&builder, SPA_POD_Int(1), SPA_POD_String("port.type"),
                                       SPA_POD_String(route.type.c_str()));
        }
        if (device >= 0) {
            spa_pod_builder_add(&builder, SPA_PARAM_ROUTE_device, SPA_POD_Int(device),
                                SPA_PARAM_ROUTE_profile, SPA_POD_Int(kProfile), 0);
            add_full_volume(builder);
        }
        return static_cast<spa_pod *>(spa_pod_builder_pop(&builder, &object));
    }

    static void add_full_volume(spa_pod_builder &builder) {
        constexpr std::array<float, 2> volumes{1.0F, 1.0F};
        spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
        spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_Props, SPA_PARAM_Route, SPA_PROP_mute, SPA_POD_Bool(false),
            SPA_PROP_channelVolumes,
            SPA_POD_Array(sizeof(float), SPA_TYPE_Float, volumes.size(), volumes.data()));
    }

    void tell_routes() {
        // The server asks again for what has another serial.
        for (spa_param_info &info : params_) {
            if (info.id == SPA_PARAM_EnumRoute || info.id == SPA_PARAM_Route) {
                info.flags ^= SPA_PARAM_INFO_SERIAL;
            }
        }
        tell(SPA_DEVICE_CHANGE_MASK_PARAMS);
    }
    void tell(std::uint64_t changes) {
        const spa_dict dict =
            SPA_DICT_INIT(properties_.data(), static_cast<std::uint32_t>(properties_.size()));
        spa_device_info info{};
        info.version = SPA_VERSION_DEVICE_INFO;
        info.change_mask = changes;
        info.props = &dict;
        info.params = params_.data();
        info.n_params = static_cast<std::uint32_t>(params_.size());
        spa_device_emit_info(&listeners_, &info);
    }

    void add_sinks(std::uint32_t number) {
        const std::string card = std::to_string(number);
        for (std::size_t index = 0; index < sinks_.size(); ++index) {
            const std::string device = std::to_string(index);
            Properties properties = sinks_[index].properties;
            properties.insert(properties.end(), {{"factory.name", "support.null-audio-sink"},
                                                 {"media.class", "Audio/Sink"},
                                                 {"audio.position", "FL,FR"},
                                                 {"node.name", sinks_[index].name},
                                                 {"node.description", sinks_[index].description},
                                                 {"device.id", card.c_str()},
                                                 {"card.profile.device", device.c_str()}});
            const spa_dict dict =
                SPA_DICT_INIT(properties.data(), static_cast<std::uint32_t>(properties.size()));
            pw_core_create_object(core_, "adapter", PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, &dict,
                                  0);
        }
    }

    const Properties properties_;
    std::vector<Sink> sinks_;
    std::vector<Route> routes_;
    std::array<spa_param_info, 4> params_{param(SPA_PARAM_EnumProfile, SPA_PARAM_INFO_READ),
                                          param(SPA_PARAM_Profile, SPA_PARAM_INFO_READWRITE),
                                          param(SPA_PARAM_EnumRoute, SPA_PARAM_INFO_READ),
                                          param(SPA_PARAM_Route, SPA_PARAM_INFO_READWRITE)};
    spa_device device_{};
    spa_hook_list listeners_{};
    spa_hook bound_{};
    pw_core *core_ = nullptr;
};

struct Machine {
    pw_main_loop *loop;
    Card built_in;
    Card headset;
};

void follow(Machine &machine, const std::string &route, const std::string &state) {
    static const std::map<std::string, std::uint32_t> states = {
        {"yes", SPA_PARAM_AVAILABILITY_yes},
        {"no", SPA_PARAM_AVAILABILITY_no},
        {"unknown", SPA_PARAM_AVAILABILITY_unknown}};
    const auto found = states.find(state);
    if (found == states.end() || !(machine.built_in.plug(route, found->second) ||
                                   machine.headset.plug(route, found->second))) {
        std::cerr << "no such route or state: " << route << ' ' << state << '\n';
    }
}

void read_order(void *data, int /*fd*/, std::uint32_t /*mask*/) {
    Machine &machine = *static_cast<Machine *>(data);
    std::string route;
    std::string state;
    if (std::cin >> route >> state) {
        follow(machine, route, state);
    } else {
        pw_main_loop_quit(machine.loop);
    }
}

}  // namespace

int main(int argc, char **argv) {
    pw_init(&argc, &argv);
    Machine machine{
        pw_main_loop_new(nullptr),
        {{{"device.name", "alsa_card.built-in"},
          {"device.description", "Built-in Audio"},
          {"device.api", "alsa"},
          {"device.bus", "pci"},
          {"device.form-factor", "internal"},
          {"media.class", "Audio/Device"}},
         {{"alsa_output.built-in.analog-stereo", "Built-in Audio Analog Stereo", {}, 0},
          {"alsa_output.built-in.hdmi-stereo", "Built-in Audio HDMI", {}, 2}},
         {{"analog-output-speaker", "Speaker", "speaker", 0, 100, SPA_PARAM_AVAILABILITY_unknown},
          {"analog-output-headphones", "Headphones", "headphones", 0, 200,
           SPA_PARAM_AVAILABILITY_no},
          {"hdmi-output-0", "HDMI / DisplayPort", "hdmi", 1, 50, SPA_PARAM_AVAILABILITY_no}}},
        {{{"device.name", "bluez_card.00_11_22_33_44_55"},
          {"device.description", "Kitchen headset"},
          {"device.api", "bluez5"},
          {"device.bus", "bluetooth"},
          {"device.form-factor", "headset"},
          {"media.class", "Audio/Device"}},
         {{"bluez_output.00_11_22_33_44_55.1", "Kitchen headset", {{"device.api", "bluez5"}}, 0}},
         {{"headset-output", "Headset", "bluetooth", 0, 10, SPA_PARAM_AVAILABILITY_yes}}}};
    pw_context *context = pw_context_new(pw_main_loop_get_loop(machine.loop), nullptr, 0);
    pw_core *core = pw_context_connect(context, nullptr, 0);
    if (core == nullptr) {
        std::cerr << "no server\n";
        return 1;
    }
    machine.built_in.put_into(core);
    machine.headset.put_into(core);
    pw_loop_add_io(pw_main_loop_get_loop(machine.loop), 0, SPA_IO_IN | SPA_IO_HUP, false,
                   read_order, &machine);
    pw_main_loop_run(machine.loop);
    pw_core_disconnect(core);
    pw_context_destroy(context);
    pw_main_loop_destroy(machine.loop);
    pw_deinit();
    return 0;
}
