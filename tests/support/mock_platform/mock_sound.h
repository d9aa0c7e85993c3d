#pragma once

#include <gmock/gmock.h>

#include "fake_sound.h"

/// Forwards to FakeSound unless a test says otherwise.
class MockSound {
public:
    MockSound();
    virtual ~MockSound();

    MOCK_METHOD(int, sound_manager_create_stream_information,
                (sound_stream_type_e, sound_stream_focus_state_changed_cb, void *,
                 sound_stream_info_h *));
    MOCK_METHOD(int, sound_manager_destroy_stream_information, (sound_stream_info_h));
    MOCK_METHOD(int, sound_manager_acquire_focus,
                (sound_stream_info_h, sound_stream_focus_mask_e, int, const char *));
    MOCK_METHOD(int, sound_manager_release_focus,
                (sound_stream_info_h, sound_stream_focus_mask_e, int, const char *));
    MOCK_METHOD(int, sound_manager_set_focus_reacquisition, (sound_stream_info_h, bool));
    MOCK_METHOD(int, sound_manager_get_max_volume, (sound_type_e, int *));
    MOCK_METHOD(int, sound_manager_set_volume, (sound_type_e, int));
    MOCK_METHOD(int, sound_manager_get_volume, (sound_type_e, int *));
    MOCK_METHOD(int, sound_manager_set_safety_volume, (int));
    MOCK_METHOD(int, sound_manager_unset_safety_volume, ());
    MOCK_METHOD(int, sound_manager_get_current_sound_type, (sound_type_e *));
    MOCK_METHOD(int, sound_manager_unset_current_sound_type, ());
    MOCK_METHOD(int, sound_manager_set_volume_changed_cb,
                (sound_manager_volume_changed_cb, void *));
    MOCK_METHOD(int, sound_manager_unset_volume_changed_cb, ());
    MOCK_METHOD(int, sound_manager_add_device_connection_changed_cb,
                (int, sound_device_connection_changed_cb, void *, int *));
    MOCK_METHOD(int, sound_manager_remove_device_connection_changed_cb, (int));
    MOCK_METHOD(int, sound_manager_get_device_list, (int, sound_device_list_h *));
    MOCK_METHOD(int, sound_manager_free_device_list, (sound_device_list_h));
    MOCK_METHOD(int, sound_manager_get_next_device, (sound_device_list_h, sound_device_h *));
    MOCK_METHOD(int, sound_manager_get_device_type, (sound_device_h, sound_device_type_e *));
    MOCK_METHOD(int, sound_manager_get_a2dp_status, (bool *, char **));
};

namespace mock {
MockSound &sound();
}
