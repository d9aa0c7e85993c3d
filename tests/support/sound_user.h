#pragma once

#include <gtest/gtest.h>
#include <sound_manager.h>

#include <string>
#include <utility>
#include <vector>

#include "reports.h"

/// A program that uses the sound manager as an application does.
namespace sound_user {

inline int media_volume() {
    int volume = -1;
    return sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume) == 0 ? volume : -1;
}

inline std::vector<sound_device_type_e> listed_types(int mask) {
    std::vector<sound_device_type_e> types;
    sound_device_list_h list = nullptr;
    if (sound_manager_get_device_list(mask, &list) != 0) {
        return types;
    }
    sound_device_h device = nullptr;
    while (sound_manager_get_next_device(list, &device) == 0) {
        sound_device_type_e type{};
        EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
        types.push_back(type);
    }
    EXPECT_EQ(sound_manager_free_device_list(list), 0);
    return types;
}

inline bool is_listed(sound_device_type_e type) {
    const auto types =
        listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK | SOUND_DEVICE_TYPE_INTERNAL_MASK);
    return std::find(types.begin(), types.end(), type) != types.end();
}

/// A focus change as a callback is told of it.
struct FocusReport {
    sound_stream_focus_mask_e mask;
    sound_stream_focus_state_e state;
    int behavior;
    std::string extra_info;

    friend bool operator==(const FocusReport &, const FocusReport &) = default;
};

using FocusReports = support::Reports<FocusReport>;

inline void report_focus(sound_stream_info_h, sound_stream_focus_mask_e mask,
                         sound_stream_focus_state_e state, sound_stream_focus_change_reason_e,
                         int behavior, const char *extra_info, void *data) {
    static_cast<FocusReports *>(data)->add(
        {mask, state, behavior, extra_info != nullptr ? extra_info : ""});
}

inline FocusReport lost(int behavior, std::string extra_info = "") {
    return {SOUND_STREAM_FOCUS_FOR_PLAYBACK, SOUND_STREAM_FOCUS_STATE_RELEASED, behavior,
            std::move(extra_info)};
}
inline FocusReport regained(int behavior, std::string extra_info = "") {
    return {SOUND_STREAM_FOCUS_FOR_PLAYBACK, SOUND_STREAM_FOCUS_STATE_ACQUIRED, behavior,
            std::move(extra_info)};
}

inline void PrintTo(const FocusReport &report, std::ostream *stream) {
    *stream << "mask " << report.mask << " state " << report.state << " behaviour "
            << report.behavior << " '" << report.extra_info << "'";
}

/// A stream that goes with the object.
struct Stream {
    explicit Stream(sound_stream_focus_state_changed_cb callback = nullptr, void *data = nullptr) {
        EXPECT_EQ(sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, callback, data,
                                                          &handle),
                  0);
    }
    explicit Stream(FocusReports &reports) : Stream(report_focus, &reports) {}
    ~Stream() {
        if (handle != nullptr) {
            destroy();
        }
    }
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    int destroy() {
        return sound_manager_destroy_stream_information(std::exchange(handle, nullptr));
    }
    [[nodiscard]] int acquire(int behavior = SOUND_BEHAVIOR_NO_RESUME,
                              int mask = SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                              const char *extra_info = nullptr) const {
        return sound_manager_acquire_focus(handle, static_cast<sound_stream_focus_mask_e>(mask),
                                           behavior, extra_info);
    }
    [[nodiscard]] int release(int behavior = SOUND_BEHAVIOR_NO_RESUME,
                              int mask = SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                              const char *extra_info = nullptr) const {
        return sound_manager_release_focus(handle, static_cast<sound_stream_focus_mask_e>(mask),
                                           behavior, extra_info);
    }
    [[nodiscard]] int set_reacquisition(bool enable) const {
        return sound_manager_set_focus_reacquisition(handle, enable);
    }
    sound_stream_info_h handle = nullptr;
};

/// Set for as long as it lives, which is shorter than what it reports to.
struct VolumeCallback {
    VolumeCallback(sound_manager_volume_changed_cb callback, void *data) {
        EXPECT_EQ(sound_manager_set_volume_changed_cb(callback, data), 0);
    }
    ~VolumeCallback() { sound_manager_unset_volume_changed_cb(); }
    VolumeCallback(const VolumeCallback &) = delete;
    VolumeCallback &operator=(const VolumeCallback &) = delete;
};

using Level = std::pair<sound_type_e, unsigned>;
using Levels = support::Reports<Level>;

inline void report_level(sound_type_e type, unsigned level, void *data) {
    static_cast<Levels *>(data)->add({type, level});
}

using Connection = std::pair<sound_device_type_e, bool>;
using Connections = support::Reports<Connection>;

/// Reports the devices of a mask for as long as it lives.
struct DeviceCallback {
    DeviceCallback(int mask, sound_device_connection_changed_cb callback, void *data) {
        EXPECT_EQ(sound_manager_add_device_connection_changed_cb(mask, callback, data, &id), 0);
    }
    DeviceCallback(int mask, Connections &connections)
        : DeviceCallback(
              mask,
              [](sound_device_h device, bool connected, void *data) {
                  sound_device_type_e type{};
                  EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
                  static_cast<Connections *>(data)->add({type, connected});
              },
              &connections) {}
    ~DeviceCallback() { EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(id), 0); }
    DeviceCallback(const DeviceCallback &) = delete;
    DeviceCallback &operator=(const DeviceCallback &) = delete;
    int id = 0;
};

}  // namespace sound_user
