#include <sound_manager.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "messaging/session_bus.h"
#include "sound/backend.h"
#include "sound/backend_choice.h"
#include "sound/callback_thread.h"
#include "sound/focus.h"
#include "sound/listener.h"
#include "sound/output.h"

using host::sound::Backend;
using host::sound::BackendChoice;
using host::sound::CallbackThread;
using host::sound::Device;
using host::sound::Focus;
using host::sound::FocusChange;
using host::sound::FocusStatement;
using host::sound::Listener;
using host::sound::StreamId;

struct sound_stream_info_s {
    StreamId id = 0;
    Listener<const FocusChange &> focus;
};

struct sound_device_s {
    Device device;
};

struct sound_device_list_s {
    std::vector<sound_device_s> devices;
    std::size_t next = 0;
};

namespace {

struct DeviceListener {
    int id = 0;
    int mask = 0;
    Listener<sound_device_s &, bool> changed;
};

/// The part of the interface that is the same for every backend: handles, callbacks and their
/// threads.
class SoundManager final : public host::sound::Events, public host::sound::FocusEvents {
public:
    static SoundManager &instance() {
        static SoundManager manager;
        return manager;
    }

    [[nodiscard]] std::shared_ptr<Backend> backend() const { return backend_.current(); }
    void choose() { backend_.choose(); }
    void use(host::sound::BackendFactory factory) { backend_.use(factory); }

    Focus &focus() {
        const std::lock_guard lock(mutex_);
        if (!focus_) {
            focus_ = host::session_bus_address() ? host::sound::create_session_bus_focus(*this)
                                                 : host::sound::create_builtin_focus(*this);
        }
        return *focus_;
    }
    void use(host::sound::FocusFactory factory) {
        auto focus = factory(*this);
        const std::lock_guard lock(mutex_);
        focus_ = std::move(focus);
    }

    // Events, on any thread.

    void volume_changed(sound_type_e type, unsigned level) override {
        // Whoever sets a callback after the change isn't told of it.
        report_thread_.post([this, type, level, callback = volume.current()] {
            volume.call(callback, type, level);
        });
    }

    void device_changed(const Device &device, bool connected) override {
        std::vector<std::shared_ptr<DeviceListener>> listeners;
        {
            const std::lock_guard lock(mutex_);
            listeners = device_listeners_;
        }
        report_thread_.post([listeners = std::move(listeners), device, connected] {
            sound_device_s handle{device};
            for (const auto &listener : listeners) {
                if ((listener->mask & device.mask()) != 0) {
                    listener->changed.call(handle, connected);
                }
            }
        });
    }

    void focus_changed(StreamId stream, const FocusChange &change) override {
        focus_thread_.post([this, stream, change] {
            if (const auto found = find_stream(stream)) {
                found->focus.call(change);
            }
        });
    }

    void stream_gain_changed(double changed) override { gain.call(changed); }

    void output_returned() override { output.call(); }

    // Streams.

    std::shared_ptr<sound_stream_info_s> add_stream() {
        const std::lock_guard lock(mutex_);
        auto stream = std::make_shared<sound_stream_info_s>();
        stream->id = ++last_stream_;
        streams_.emplace(stream.get(), stream);
        return stream;
    }

    /// Null for a handle that isn't alive.
    [[nodiscard]] std::shared_ptr<sound_stream_info_s> stream(sound_stream_info_h handle) const {
        const std::lock_guard lock(mutex_);
        const auto found = streams_.find(handle);
        return found == streams_.end() ? nullptr : found->second;
    }

    std::shared_ptr<sound_stream_info_s> remove_stream(sound_stream_info_h handle) {
        const std::lock_guard lock(mutex_);
        const auto node = streams_.extract(handle);
        return node.empty() ? nullptr : node.mapped();
    }

    [[nodiscard]] bool is_focus_held(sound_stream_info_h but) {
        std::vector<StreamId> ids;
        {
            const std::lock_guard lock(mutex_);
            for (const auto &[handle, stream] : streams_) {
                if (handle != but) {
                    ids.push_back(stream->id);
                }
            }
        }
        return std::any_of(ids.begin(), ids.end(), [this](StreamId id) {
            return (focus().held(id) & SOUND_STREAM_FOCUS_FOR_PLAYBACK) != 0;
        });
    }

    [[nodiscard]] bool has_stream() const {
        const std::lock_guard lock(mutex_);
        return !streams_.empty();
    }

    // Device callbacks and lists.

    std::shared_ptr<DeviceListener> add_device_listener(int mask) {
        const std::lock_guard lock(mutex_);
        auto listener = std::make_shared<DeviceListener>();
        listener->id = ++last_device_listener_;
        listener->mask = mask;
        device_listeners_.push_back(listener);
        return listener;
    }

    std::shared_ptr<DeviceListener> remove_device_listener(int id) {
        const std::lock_guard lock(mutex_);
        const auto found = std::find_if(device_listeners_.begin(), device_listeners_.end(),
                                        [id](const auto &entry) { return entry->id == id; });
        if (found == device_listeners_.end()) {
            return nullptr;
        }
        auto listener = *found;
        device_listeners_.erase(found);
        return listener;
    }

    sound_device_list_h add_list(std::unique_ptr<sound_device_list_s> list) {
        const std::lock_guard lock(mutex_);
        const auto handle = list.get();
        lists_.emplace(handle, std::move(list));
        return handle;
    }

    [[nodiscard]] bool has_list(sound_device_list_h handle) const {
        const std::lock_guard lock(mutex_);
        return lists_.contains(handle);
    }

    bool remove_list(sound_device_list_h handle) {
        const std::lock_guard lock(mutex_);
        return lists_.erase(handle) > 0;
    }

    void set_safety_volume(int level) {
        const std::lock_guard lock(mutex_);
        safety_volume_ = level;
    }

    Listener<sound_type_e, unsigned> volume;
    Listener<double> gain;
    Listener<> output;

private:
    SoundManager() : backend_(*this) {}

    [[nodiscard]] std::shared_ptr<sound_stream_info_s> find_stream(StreamId id) const {
        const std::lock_guard lock(mutex_);
        for (const auto &[handle, stream] : streams_) {
            if (stream->id == id) {
                return stream;
            }
        }
        return nullptr;
    }

    mutable std::mutex mutex_;
    std::map<sound_stream_info_h, std::shared_ptr<sound_stream_info_s>> streams_;
    std::map<sound_device_list_h, std::unique_ptr<sound_device_list_s>> lists_;
    std::vector<std::shared_ptr<DeviceListener>> device_listeners_;
    StreamId last_stream_ = 0;
    int last_device_listener_ = 0;
    int safety_volume_ = 0;

    // In this order: what reports goes first, then the threads, then what they use.
    CallbackThread report_thread_;
    CallbackThread focus_thread_;
    BackendChoice backend_;
    std::unique_ptr<Focus> focus_;
};

SoundManager &manager() {
    return SoundManager::instance();
}

constexpr int kFocusBits = SOUND_STREAM_FOCUS_FOR_PLAYBACK | SOUND_STREAM_FOCUS_FOR_RECORDING;
constexpr int kBehaviorBits = SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING;
constexpr int kDeviceBits = SOUND_DEVICE_TYPE_INTERNAL_MASK | SOUND_DEVICE_TYPE_EXTERNAL_MASK;

/// At least one of `allowed` and nothing else.
bool is_mask(int bits, int allowed) {
    return bits != 0 && (bits & ~allowed) == 0;
}

bool is_sound_type(sound_type_e type) {
    return type >= SOUND_TYPE_SYSTEM && type <= SOUND_TYPE_VOICE;
}

bool is_level(sound_type_e type, int level) {
    return is_sound_type(type) && level >= 0 && level <= manager().backend()->max_volume(type);
}

FocusStatement statement_of(int behavior, const char *extra_info) {
    return {behavior, extra_info != nullptr ? extra_info : ""};
}

/// What a server tells first is no change to anybody, unless somebody has asked before.
void learn_what_is_there() {
    (void)manager().backend()->devices();
}

bool are_focus_arguments(sound_stream_focus_mask_e mask, int behavior) {
    return is_mask(mask, kFocusBits) && (behavior & ~kBehaviorBits) == 0;
}

}  // namespace

namespace host {

double stream_gain() {
    return manager().backend()->stream_gain();
}

void on_stream_gain_changed(std::function<void(double)> changed) {
    manager().gain.set(std::move(changed));
}

void on_sound_output_returned(std::function<void()> returned) {
    manager().output.set(std::move(returned));
}

namespace sound {

std::shared_ptr<Backend> backend() {
    return manager().backend();
}

void choose_backend() {
    manager().choose();
}

void use_backend(BackendFactory factory) {
    manager().use(factory);
}

bool is_focus_held(sound_stream_info_h but) {
    return manager().is_focus_held(but);
}

void use_focus(FocusFactory factory) {
    manager().use(factory);
}

}  // namespace sound
}  // namespace host

int sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                            sound_stream_focus_state_changed_cb callback,
                                            void *user_data, sound_stream_info_h *stream_info) {
    if (stream_type != SOUND_STREAM_TYPE_MEDIA || stream_info == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const auto stream = manager().add_stream();
    if (callback != nullptr) {
        stream->focus.set([callback, user_data, handle = stream.get()](const FocusChange &change) {
            callback(handle, change.mask, change.state, change.reason, change.behavior,
                     change.extra_info.empty() ? nullptr : change.extra_info.c_str(), user_data);
        });
    }
    manager().focus().add_stream(stream->id);
    *stream_info = stream.get();
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_destroy_stream_information(sound_stream_info_h stream_info) {
    const auto stream = manager().remove_stream(stream_info);
    if (!stream) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    manager().focus().remove_stream(stream->id);
    stream->focus.clear();
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info) {
    const auto stream = manager().stream(stream_info);
    if (!stream || !are_focus_arguments(focus_mask, sound_behavior)) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    return manager().focus().acquire(stream->id, focus_mask,
                                     statement_of(sound_behavior, extra_info));
}

int sound_manager_release_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info) {
    const auto stream = manager().stream(stream_info);
    if (!stream || !are_focus_arguments(focus_mask, sound_behavior)) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    return manager().focus().release(stream->id, focus_mask,
                                     statement_of(sound_behavior, extra_info));
}

int sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable) {
    const auto stream = manager().stream(stream_info);
    if (!stream) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    manager().focus().set_reacquisition(stream->id, enable);
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_get_max_volume(sound_type_e type, int *max) {
    if (!is_sound_type(type) || max == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    *max = manager().backend()->max_volume(type);
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_set_volume(sound_type_e type, int volume) {
    if (!is_level(type, volume)) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    return manager().backend()->set_volume(type, volume) ? SOUND_MANAGER_ERROR_NONE
                                                         : SOUND_MANAGER_ERROR_INTERNAL;
}

int sound_manager_get_volume(sound_type_e type, int *volume) {
    if (!is_sound_type(type) || volume == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const auto level = manager().backend()->volume(type);
    if (!level) {
        return SOUND_MANAGER_ERROR_INTERNAL;
    }
    *volume = *level;
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_set_safety_volume(int volume) {
    if (!is_level(SOUND_TYPE_MEDIA, volume)) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    manager().set_safety_volume(volume);
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_unset_safety_volume(void) {
    manager().set_safety_volume(0);
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_get_current_sound_type(sound_type_e *type) {
    if (type == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (!manager().has_stream()) {
        return SOUND_MANAGER_ERROR_NO_DATA;
    }
    *type = SOUND_TYPE_MEDIA;
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_unset_current_sound_type(void) {
    // No operation of this interface forces a type.
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback, void *user_data) {
    if (callback == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    learn_what_is_there();
    manager().volume.set([callback, user_data](sound_type_e type, unsigned level) {
        callback(type, level, user_data);
    });
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_unset_volume_changed_cb(void) {
    manager().volume.clear();
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_add_device_connection_changed_cb(int device_mask,
                                                   sound_device_connection_changed_cb callback,
                                                   void *user_data, int *id) {
    if (!is_mask(device_mask, kDeviceBits) || callback == nullptr || id == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    learn_what_is_there();
    const auto listener = manager().add_device_listener(device_mask);
    listener->changed.set([callback, user_data](sound_device_s &device, bool connected) {
        callback(&device, connected, user_data);
    });
    *id = listener->id;
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_remove_device_connection_changed_cb(int id) {
    const auto listener = manager().remove_device_listener(id);
    if (!listener) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    listener->changed.clear();
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list) {
    if (!is_mask(device_mask, kDeviceBits) || device_list == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    auto devices = manager().backend()->devices();
    if (!devices) {
        return SOUND_MANAGER_ERROR_INTERNAL;
    }
    auto list = std::make_unique<sound_device_list_s>();
    for (auto &device : *devices) {
        if ((device.mask() & device_mask) != 0) {
            list->devices.push_back({std::move(device)});
        }
    }
    if (list->devices.empty()) {
        return SOUND_MANAGER_ERROR_NO_DATA;
    }
    *device_list = manager().add_list(std::move(list));
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_free_device_list(sound_device_list_h device_list) {
    return manager().remove_list(device_list) ? SOUND_MANAGER_ERROR_NONE
                                              : SOUND_MANAGER_ERROR_INVALID_PARAMETER;
}

int sound_manager_get_next_device(sound_device_list_h device_list, sound_device_h *device) {
    if (device == nullptr || !manager().has_list(device_list)) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (device_list->next == device_list->devices.size()) {
        return SOUND_MANAGER_ERROR_NO_DATA;
    }
    *device = &device_list->devices[device_list->next++];
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type) {
    if (device == nullptr || type == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    *type = device->device.type;
    return SOUND_MANAGER_ERROR_NONE;
}

int sound_manager_get_a2dp_status(bool *connected, char **bt_name) {
    if (connected == nullptr || bt_name == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const auto devices = manager().backend()->devices();
    if (!devices) {
        return SOUND_MANAGER_ERROR_INTERNAL;
    }
    const auto set = std::find_if(devices->begin(), devices->end(), [](const Device &device) {
        return device.type == SOUND_DEVICE_BLUETOOTH;
    });
    char *copy = nullptr;
    if (set != devices->end()) {
        copy = strdup(set->name.c_str());
        if (copy == nullptr) {
            return SOUND_MANAGER_ERROR_OUT_OF_MEMORY;
        }
    }
    *connected = copy != nullptr;
    *bt_name = copy;
    return SOUND_MANAGER_ERROR_NONE;
}
