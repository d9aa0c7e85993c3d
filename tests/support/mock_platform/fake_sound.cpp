#include "fake_sound.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "slot.h"

struct sound_stream_info_s {
    sound_stream_focus_state_changed_cb callback;
    void *user_data;
    bool focused = false;
    bool reacquisition = true;
};

struct sound_device_s {
    sound_device_type_e type;
};

struct sound_device_list_s {
    std::vector<sound_device_s> devices;
    std::size_t next = 0;
};

namespace {

constexpr int default_volume = 7;

bool is_internal(int type) {
    return type <= SOUND_DEVICE_BUILTIN_MIC;
}

bool is_type(sound_type_e type) {
    return type <= SOUND_TYPE_VOICE;
}

}  // namespace

namespace mock {

FakeSound &fake_sound() {
    static Slot<FakeSound> slot;
    return slot.get();
}

}  // namespace mock

FakeSound::FakeSound() = default;
FakeSound::~FakeSound() = default;

sound_stream_info_s *FakeSound::find(sound_stream_info_h stream) {
    for (const auto &item : m_streams) {
        if (item.get() == stream) {
            return item.get();
        }
    }
    return nullptr;
}

// ---- controls

void FakeSound::post_focus(sound_stream_focus_state_e state, int behaviour) {
    sound_stream_info_h stream = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        if (m_streams.empty()) {
            return;
        }
        stream = m_streams.back().get();
    }
    m_focus_thread.post([this, stream, state, behaviour] {
        const std::lock_guard delivery(m_focus_delivery);
        sound_stream_focus_state_changed_cb callback = nullptr;
        void *user_data = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            auto *item = find(stream);
            if (item == nullptr) {
                return;
            }
            item->focused = state == SOUND_STREAM_FOCUS_STATE_ACQUIRED;
            callback = item->callback;
            user_data = item->user_data;
        }
        callback(stream, SOUND_STREAM_FOCUS_FOR_PLAYBACK, state,
                 SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA, behaviour, nullptr, user_data);
    });
}

void FakeSound::start_losing_focus(int behaviour) {
    post_focus(SOUND_STREAM_FOCUS_STATE_RELEASED, behaviour);
}

void FakeSound::start_regaining_focus(int behaviour) {
    post_focus(SOUND_STREAM_FOCUS_STATE_ACQUIRED, behaviour);
}

void FakeSound::lose_focus(int behaviour) {
    start_losing_focus(behaviour);
    m_focus_thread.drain();
}

void FakeSound::regain_focus(int behaviour) {
    start_regaining_focus(behaviour);
    m_focus_thread.drain();
}

void FakeSound::forbid_focus(bool forbidden) {
    const std::lock_guard lock(m_mutex);
    m_focus_forbidden = forbidden;
}

void FakeSound::set_devices(std::vector<int> types) {
    const std::lock_guard lock(m_mutex);
    m_devices = std::move(types);
}

void FakeSound::connect_device(int type) {
    {
        const std::lock_guard lock(m_mutex);
        m_devices.push_back(type);
    }
    report_devices({type}, true);
}

void FakeSound::disconnect_device(int type) {
    disconnect_devices({type});
}

void FakeSound::disconnect_devices(const std::vector<int> &types) {
    {
        const std::lock_guard lock(m_mutex);
        for (const int type : types) {
            std::erase(m_devices, type);
        }
    }
    report_devices({types.front()}, false);
}

void FakeSound::report_unchanged_devices() {
    report_devices({SOUND_DEVICE_USB_AUDIO}, true);
}

void FakeSound::report_devices(const std::vector<int> &types, bool connected) {
    m_report_thread.run([&] {
        const std::lock_guard delivery(m_report_delivery);
        std::map<int, DeviceCallback> callbacks;
        {
            const std::lock_guard lock(m_mutex);
            callbacks = m_device_callbacks;
        }
        for (const int type : types) {
            sound_device_s device{static_cast<sound_device_type_e>(type)};
            const int mask = is_internal(type) ? SOUND_DEVICE_TYPE_INTERNAL_MASK
                                               : SOUND_DEVICE_TYPE_EXTERNAL_MASK;
            for (const auto &[id, callback] : callbacks) {
                if ((callback.mask & mask) != 0) {
                    callback.function(&device, connected, callback.user_data);
                }
            }
        }
    });
}

void FakeSound::post_volume(sound_type_e type, int level) {
    m_report_thread.post([this, type, level] {
        const std::lock_guard delivery(m_report_delivery);
        sound_manager_volume_changed_cb callback = nullptr;
        void *user_data = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            callback = m_volume_callback;
            user_data = m_volume_data;
        }
        if (callback != nullptr) {
            callback(type, static_cast<unsigned>(level), user_data);
        }
    });
}

void FakeSound::change_volume(int type, int level) {
    {
        const std::lock_guard lock(m_mutex);
        m_volumes[type] = level;
    }
    post_volume(static_cast<sound_type_e>(type), level);
    m_report_thread.drain();
}

void FakeSound::set_max_volume(int level) {
    const std::lock_guard lock(m_mutex);
    m_max_volume = level;
}

void FakeSound::set_bluetooth_name(std::string name) {
    const std::lock_guard lock(m_mutex);
    m_bluetooth_name = std::move(name);
}

void FakeSound::drain() {
    m_focus_thread.drain();
    m_report_thread.drain();
}

bool FakeSound::has_focus() {
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_streams.begin(), m_streams.end(),
                       [](const auto &stream) { return stream->focused; });
}

bool FakeSound::reacquisition() {
    const std::lock_guard lock(m_mutex);
    return !m_streams.empty() && m_streams.back()->reacquisition;
}

int FakeSound::streams() {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_streams.size());
}

bool FakeSound::safety_volume_set() {
    const std::lock_guard lock(m_mutex);
    return m_safety_volume_set;
}

bool FakeSound::has_volume_callback() {
    const std::lock_guard lock(m_mutex);
    return m_volume_callback != nullptr;
}

int FakeSound::device_callbacks() {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_device_callbacks.size());
}

std::thread::id FakeSound::focus_thread_id() {
    std::thread::id id;
    m_focus_thread.run([&id] { id = std::this_thread::get_id(); });
    return id;
}

std::thread::id FakeSound::report_thread_id() {
    std::thread::id id;
    m_report_thread.run([&id] { id = std::this_thread::get_id(); });
    return id;
}

// ---- streams and focus

int FakeSound::sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                                       sound_stream_focus_state_changed_cb callback,
                                                       void *user_data,
                                                       sound_stream_info_h *stream_info) {
    if (stream_type != SOUND_STREAM_TYPE_MEDIA || callback == nullptr || stream_info == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    m_streams.push_back(
        std::make_unique<sound_stream_info_s>(sound_stream_info_s{callback, user_data}));
    *stream_info = m_streams.back().get();
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_destroy_stream_information(sound_stream_info_h stream_info) {
    const std::lock_guard delivery(m_focus_delivery);
    const std::lock_guard lock(m_mutex);
    const auto *item = find(stream_info);
    if (item == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    std::erase_if(m_streams, [item](const auto &other) { return other.get() == item; });
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                           sound_stream_focus_mask_e focus_mask, int,
                                           const char *) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(stream_info);
    if (item == nullptr || focus_mask != SOUND_STREAM_FOCUS_FOR_PLAYBACK) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (m_focus_forbidden) {
        return SOUND_MANAGER_ERROR_POLICY;
    }
    item->focused = true;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_release_focus(sound_stream_info_h stream_info,
                                           sound_stream_focus_mask_e focus_mask, int,
                                           const char *) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(stream_info);
    if (item == nullptr || focus_mask != SOUND_STREAM_FOCUS_FOR_PLAYBACK) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (!item->focused) {
        return SOUND_MANAGER_ERROR_INVALID_STATE;
    }
    item->focused = false;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(stream_info);
    if (item == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    item->reacquisition = enable;
    return SOUND_MANAGER_ERROR_NONE;
}

// ---- volume

int FakeSound::sound_manager_get_max_volume(sound_type_e type, int *max) {
    if (!is_type(type) || max == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    *max = m_max_volume;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_set_volume(sound_type_e type, int volume) {
    const std::lock_guard lock(m_mutex);
    if (!is_type(type) || volume < 0 || volume > m_max_volume) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const auto [item, inserted] = m_volumes.try_emplace(type, default_volume);
    if (item->second != volume) {
        item->second = volume;
        post_volume(type, volume);
    }
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_volume(sound_type_e type, int *volume) {
    if (!is_type(type) || volume == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    *volume = m_volumes.try_emplace(type, default_volume).first->second;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_set_safety_volume(int volume) {
    const std::lock_guard lock(m_mutex);
    if (volume < 0 || volume > m_max_volume) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    m_safety_volume_set = true;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_unset_safety_volume() {
    const std::lock_guard lock(m_mutex);
    m_safety_volume_set = false;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_current_sound_type(sound_type_e *type) {
    if (type == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    *type = SOUND_TYPE_MEDIA;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_unset_current_sound_type() {
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback,
                                                   void *user_data) {
    if (callback == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    m_volume_callback = callback;
    m_volume_data = user_data;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_unset_volume_changed_cb() {
    const std::lock_guard delivery(m_report_delivery);
    const std::lock_guard lock(m_mutex);
    m_volume_callback = nullptr;
    m_volume_data = nullptr;
    return SOUND_MANAGER_ERROR_NONE;
}

// ---- devices

int FakeSound::sound_manager_add_device_connection_changed_cb(
    int device_mask, sound_device_connection_changed_cb callback, void *user_data, int *id) {
    if (callback == nullptr || id == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    *id = m_next_id++;
    m_device_callbacks[*id] = {device_mask, callback, user_data};
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_remove_device_connection_changed_cb(int id) {
    const std::lock_guard delivery(m_report_delivery);
    const std::lock_guard lock(m_mutex);
    return m_device_callbacks.erase(id) == 0 ? SOUND_MANAGER_ERROR_INVALID_PARAMETER
                                             : SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list) {
    constexpr int known = SOUND_DEVICE_TYPE_INTERNAL_MASK | SOUND_DEVICE_TYPE_EXTERNAL_MASK;
    if (device_mask == 0 || (device_mask & ~known) != 0 || device_list == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    auto list = std::make_unique<sound_device_list_s>();
    for (const int type : m_devices) {
        const int mask =
            is_internal(type) ? SOUND_DEVICE_TYPE_INTERNAL_MASK : SOUND_DEVICE_TYPE_EXTERNAL_MASK;
        if ((device_mask & mask) != 0) {
            list->devices.push_back({static_cast<sound_device_type_e>(type)});
        }
    }
    if (list->devices.empty()) {
        return SOUND_MANAGER_ERROR_NO_DATA;
    }
    *device_list = list.get();
    m_lists.push_back(std::move(list));
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_free_device_list(sound_device_list_h device_list) {
    const std::lock_guard lock(m_mutex);
    const auto erased = std::erase_if(
        m_lists, [device_list](const auto &item) { return item.get() == device_list; });
    return erased == 0 ? SOUND_MANAGER_ERROR_INVALID_PARAMETER : SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_next_device(sound_device_list_h device_list,
                                             sound_device_h *device) {
    if (device_list == nullptr || device == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (device_list->next >= device_list->devices.size()) {
        return SOUND_MANAGER_ERROR_NO_DATA;
    }
    *device = &device_list->devices[device_list->next++];
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type) {
    if (device == nullptr || type == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    *type = device->type;
    return SOUND_MANAGER_ERROR_NONE;
}

int FakeSound::sound_manager_get_a2dp_status(bool *connected, char **bt_name) {
    if (connected == nullptr || bt_name == nullptr) {
        return SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    *connected = std::count(m_devices.begin(), m_devices.end(), SOUND_DEVICE_BLUETOOTH) > 0;
    *bt_name = *connected ? strdup(m_bluetooth_name.c_str()) : nullptr;
    return SOUND_MANAGER_ERROR_NONE;
}
