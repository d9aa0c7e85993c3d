#pragma once

#include <sound_manager.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform_thread.h"

/// A sound manager without sound, after the contract of sound_manager.h: volumes, focus and devices
/// as values; reports arrive on a thread, those of the focus on another. A removed callback isn't
/// running when its removal returns, and isn't called again.
///
/// The operations have the names of the C functions that forward to them.
class FakeSound {
public:
    FakeSound();
    ~FakeSound();
    FakeSound(const FakeSound &) = delete;
    FakeSound &operator=(const FakeSound &) = delete;

    // Controls of the tests. Each returns when its callbacks have run, except those that say so.
    /// Another stream takes the focus with these behaviour bits, or gives it back.
    void lose_focus(int behaviour);
    void regain_focus(int behaviour);
    /// The same, without waiting for the callback.
    void start_losing_focus(int behaviour);
    void start_regaining_focus(int behaviour);
    /// From here on the focus is refused by policy, or granted again.
    void forbid_focus(bool forbidden);
    /// Devices by type number, without a report.
    void set_devices(std::vector<int> types);
    /// A device comes or goes, and that is reported.
    void connect_device(int type);
    void disconnect_device(int type);
    /// Several go in one report.
    void disconnect_devices(const std::vector<int> &types);
    /// Reports a connection change though nothing has changed.
    void report_unchanged_devices();
    /// Another program changes a volume, and that is reported.
    void change_volume(int type, int level);
    void set_max_volume(int level);
    void set_bluetooth_name(std::string name);
    /// Returns when all that is due has been delivered on both threads.
    void drain();

    // What became of it.
    bool has_focus();
    bool reacquisition();  ///< of the newest stream
    int streams();
    bool safety_volume_set();
    bool has_volume_callback();
    int device_callbacks();
    std::thread::id focus_thread_id();
    std::thread::id report_thread_id();

    int sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                                sound_stream_focus_state_changed_cb callback,
                                                void *user_data, sound_stream_info_h *stream_info);
    int sound_manager_destroy_stream_information(sound_stream_info_h stream_info);
    int sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                    sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                    const char *extra_info);
    int sound_manager_release_focus(sound_stream_info_h stream_info,
                                    sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                    const char *extra_info);
    int sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable);
    int sound_manager_get_max_volume(sound_type_e type, int *max);
    int sound_manager_set_volume(sound_type_e type, int volume);
    int sound_manager_get_volume(sound_type_e type, int *volume);
    int sound_manager_set_safety_volume(int volume);
    int sound_manager_unset_safety_volume();
    int sound_manager_get_current_sound_type(sound_type_e *type);
    int sound_manager_unset_current_sound_type();
    int sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback,
                                            void *user_data);
    int sound_manager_unset_volume_changed_cb();
    int sound_manager_add_device_connection_changed_cb(int device_mask,
                                                       sound_device_connection_changed_cb callback,
                                                       void *user_data, int *id);
    int sound_manager_remove_device_connection_changed_cb(int id);
    int sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list);
    int sound_manager_free_device_list(sound_device_list_h device_list);
    int sound_manager_get_next_device(sound_device_list_h device_list, sound_device_h *device);
    int sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type);
    int sound_manager_get_a2dp_status(bool *connected, char **bt_name);

private:
    struct DeviceCallback {
        int mask;
        sound_device_connection_changed_cb function;
        void *user_data;
    };

    sound_stream_info_s *find(sound_stream_info_h stream);
    void post_focus(sound_stream_focus_state_e state, int behaviour);
    void report_devices(const std::vector<int> &types, bool connected);
    void post_volume(sound_type_e type, int level);

    // Held while a callback of the kind runs. Taken before m_mutex.
    std::recursive_mutex m_focus_delivery;
    std::recursive_mutex m_report_delivery;
    std::recursive_mutex m_mutex;
    std::vector<std::unique_ptr<sound_stream_info_s>> m_streams;
    bool m_focus_forbidden = false;
    std::map<int, int> m_volumes;
    int m_max_volume = 15;
    bool m_safety_volume_set = false;
    sound_manager_volume_changed_cb m_volume_callback = nullptr;
    void *m_volume_data = nullptr;
    std::map<int, DeviceCallback> m_device_callbacks;
    int m_next_id = 1;
    std::vector<int> m_devices;
    std::string m_bluetooth_name = "headset";
    std::vector<std::unique_ptr<sound_device_list_s>> m_lists;
    // Last: the threads are joined before anything that they use goes.
    support::PlatformThread m_focus_thread;
    support::PlatformThread m_report_thread;
};

namespace mock {
FakeSound &fake_sound();
}
