#include "mock_sound.h"

#include "slot.h"

namespace mock {

MockSound &sound() {
    static Slot<testing::NiceMock<MockSound>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_sound().function(arguments...);          \
    })

MockSound::MockSound() {
    DELEGATE(sound_manager_create_stream_information);
    DELEGATE(sound_manager_destroy_stream_information);
    DELEGATE(sound_manager_acquire_focus);
    DELEGATE(sound_manager_release_focus);
    DELEGATE(sound_manager_set_focus_reacquisition);
    DELEGATE(sound_manager_get_max_volume);
    DELEGATE(sound_manager_set_volume);
    DELEGATE(sound_manager_get_volume);
    DELEGATE(sound_manager_set_safety_volume);
    DELEGATE(sound_manager_unset_safety_volume);
    DELEGATE(sound_manager_get_current_sound_type);
    DELEGATE(sound_manager_unset_current_sound_type);
    DELEGATE(sound_manager_set_volume_changed_cb);
    DELEGATE(sound_manager_unset_volume_changed_cb);
    DELEGATE(sound_manager_add_device_connection_changed_cb);
    DELEGATE(sound_manager_remove_device_connection_changed_cb);
    DELEGATE(sound_manager_get_device_list);
    DELEGATE(sound_manager_free_device_list);
    DELEGATE(sound_manager_get_next_device);
    DELEGATE(sound_manager_get_device_type);
    DELEGATE(sound_manager_get_a2dp_status);
}

MockSound::~MockSound() = default;

extern "C" {

int sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                            sound_stream_focus_state_changed_cb callback,
                                            void *user_data, sound_stream_info_h *stream_info) {
    return mock::sound().sound_manager_create_stream_information(stream_type, callback, user_data,
                                                                 stream_info);
}

int sound_manager_destroy_stream_information(sound_stream_info_h stream_info) {
    return mock::sound().sound_manager_destroy_stream_information(stream_info);
}

int sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info) {
    return mock::sound().sound_manager_acquire_focus(stream_info, focus_mask, sound_behavior,
                                                     extra_info);
}

int sound_manager_release_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info) {
    return mock::sound().sound_manager_release_focus(stream_info, focus_mask, sound_behavior,
                                                     extra_info);
}

int sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable) {
    return mock::sound().sound_manager_set_focus_reacquisition(stream_info, enable);
}

int sound_manager_get_max_volume(sound_type_e type, int *max) {
    return mock::sound().sound_manager_get_max_volume(type, max);
}

int sound_manager_set_volume(sound_type_e type, int volume) {
    return mock::sound().sound_manager_set_volume(type, volume);
}

int sound_manager_get_volume(sound_type_e type, int *volume) {
    return mock::sound().sound_manager_get_volume(type, volume);
}

int sound_manager_set_safety_volume(int volume) {
    return mock::sound().sound_manager_set_safety_volume(volume);
}

int sound_manager_unset_safety_volume() {
    return mock::sound().sound_manager_unset_safety_volume();
}

int sound_manager_get_current_sound_type(sound_type_e *type) {
    return mock::sound().sound_manager_get_current_sound_type(type);
}

int sound_manager_unset_current_sound_type() {
    return mock::sound().sound_manager_unset_current_sound_type();
}

int sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback, void *user_data) {
    return mock::sound().sound_manager_set_volume_changed_cb(callback, user_data);
}

int sound_manager_unset_volume_changed_cb() {
    return mock::sound().sound_manager_unset_volume_changed_cb();
}

int sound_manager_add_device_connection_changed_cb(int device_mask,
                                                   sound_device_connection_changed_cb callback,
                                                   void *user_data, int *id) {
    return mock::sound().sound_manager_add_device_connection_changed_cb(device_mask, callback,
                                                                        user_data, id);
}

int sound_manager_remove_device_connection_changed_cb(int id) {
    return mock::sound().sound_manager_remove_device_connection_changed_cb(id);
}

int sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list) {
    return mock::sound().sound_manager_get_device_list(device_mask, device_list);
}

int sound_manager_free_device_list(sound_device_list_h device_list) {
    return mock::sound().sound_manager_free_device_list(device_list);
}

int sound_manager_get_next_device(sound_device_list_h device_list, sound_device_h *device) {
    return mock::sound().sound_manager_get_next_device(device_list, device);
}

int sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type) {
    return mock::sound().sound_manager_get_device_type(device, type);
}

int sound_manager_get_a2dp_status(bool *connected, char **bt_name) {
    return mock::sound().sound_manager_get_a2dp_status(connected, bt_name);
}

}  // extern "C"
