#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "messaging/app_control_host.h"

namespace {

using Field = std::optional<std::string> app_control_s::*;

int set_field(app_control_h request, Field field, const char *value) {
    if (request == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    (request->*field).reset();
    if (value != nullptr) {
        request->*field = value;
    }
    return APP_CONTROL_ERROR_NONE;
}

char *heap_copy(const std::string &text) {
    return strdup(text.c_str());
}

int get_field(app_control_h request, Field field, char **value) {
    if (request == nullptr || value == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const std::optional<std::string> &text = request->*field;
    *value = text ? heap_copy(*text) : nullptr;
    return text && *value == nullptr ? APP_CONTROL_ERROR_OUT_OF_MEMORY : APP_CONTROL_ERROR_NONE;
}

bool is_key(const char *key) {
    return key != nullptr && *key != '\0';
}

// Puts what `add` makes in the place of an older value of the key.
template <typename Add>
int replace_extra(app_control_h request, const char *key, Add add) {
    if (host::is_reserved_extra_key(key)) {
        return APP_CONTROL_ERROR_KEY_REJECTED;
    }
    bundle_del(&request->extras, key);
    return add(&request->extras);
}

const bundle::Value *find_extra(app_control_h request, const char *key) {
    const auto found = request->extras.values.find(key);
    return found != request->extras.values.end() ? &found->second : nullptr;
}

}  // namespace

int app_control_create(app_control_h *app_control) {
    if (app_control == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    *app_control = new app_control_s;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_destroy(app_control_h app_control) {
    if (app_control == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    delete app_control;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_clone(app_control_h *clone, app_control_h app_control) {
    if (clone == nullptr || app_control == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    *clone = new app_control_s(*app_control);
    return APP_CONTROL_ERROR_NONE;
}

int app_control_set_operation(app_control_h app_control, const char *operation) {
    return set_field(app_control, &app_control_s::operation, operation);
}

int app_control_get_operation(app_control_h app_control, char **operation) {
    return get_field(app_control, &app_control_s::operation, operation);
}

int app_control_set_uri(app_control_h app_control, const char *uri) {
    return set_field(app_control, &app_control_s::uri, uri);
}

int app_control_get_uri(app_control_h app_control, char **uri) {
    if (app_control != nullptr) {
        *app_control->asked_for_media = true;
    }
    return get_field(app_control, &app_control_s::uri, uri);
}

int app_control_set_mime(app_control_h app_control, const char *mime) {
    return set_field(app_control, &app_control_s::mime, mime);
}

int app_control_get_mime(app_control_h app_control, char **mime) {
    return get_field(app_control, &app_control_s::mime, mime);
}

int app_control_set_category(app_control_h app_control, const char *category) {
    return set_field(app_control, &app_control_s::category, category);
}

int app_control_get_category(app_control_h app_control, char **category) {
    return get_field(app_control, &app_control_s::category, category);
}

int app_control_set_app_id(app_control_h app_control, const char *app_id) {
    return set_field(app_control, &app_control_s::app_id, app_id);
}

int app_control_get_app_id(app_control_h app_control, char **app_id) {
    return get_field(app_control, &app_control_s::app_id, app_id);
}

int app_control_get_caller(app_control_h app_control, char **id) {
    if (app_control != nullptr && !app_control->caller) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    return get_field(app_control, &app_control_s::caller, id);
}

int app_control_set_launch_mode(app_control_h app_control, app_control_launch_mode_e mode) {
    if (app_control == nullptr ||
        (mode != APP_CONTROL_LAUNCH_MODE_SINGLE && mode != APP_CONTROL_LAUNCH_MODE_GROUP)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    app_control->launch_mode = mode;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_get_launch_mode(app_control_h app_control, app_control_launch_mode_e *mode) {
    if (app_control == nullptr || mode == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    *mode = app_control->launch_mode;
    return APP_CONTROL_ERROR_NONE;
}

int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value) {
    if (app_control == nullptr || !is_key(key) || value == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    // The old value may be where the new one is read from.
    const std::string text = value;
    return replace_extra(app_control, key, [key, &text](bundle *extras) {
        return bundle_add_str(extras, key, text.c_str());
    });
}

int app_control_add_extra_data_array(app_control_h app_control, const char *key,
                                     const char *value[], int length) {
    if (app_control == nullptr || !is_key(key) || value == nullptr || length < 1 ||
        std::find(value, value + length, nullptr) != value + length) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    return replace_extra(app_control, key, [key, value, length](bundle *extras) {
        return bundle_add_str_array(extras, key, value, length);
    });
}

int app_control_remove_extra_data(app_control_h app_control, const char *key) {
    if (app_control == nullptr || !is_key(key)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    if (host::is_reserved_extra_key(key)) {
        return APP_CONTROL_ERROR_KEY_REJECTED;
    }
    return bundle_del(&app_control->extras, key) == BUNDLE_ERROR_NONE
               ? APP_CONTROL_ERROR_NONE
               : APP_CONTROL_ERROR_KEY_NOT_FOUND;
}

int app_control_get_extra_data(app_control_h app_control, const char *key, char **value) {
    if (app_control == nullptr || !is_key(key) || value == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const bundle::Value *found = find_extra(app_control, key);
    if (found == nullptr) {
        return APP_CONTROL_ERROR_KEY_NOT_FOUND;
    }
    const auto *text = std::get_if<std::string>(found);
    if (text == nullptr) {
        return APP_CONTROL_ERROR_INVALID_DATA_TYPE;
    }
    *value = heap_copy(*text);
    return *value != nullptr ? APP_CONTROL_ERROR_NONE : APP_CONTROL_ERROR_OUT_OF_MEMORY;
}

int app_control_get_extra_data_array(app_control_h app_control, const char *key, char ***value,
                                     int *length) {
    if (app_control == nullptr || !is_key(key) || value == nullptr || length == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const bundle::Value *found = find_extra(app_control, key);
    if (found == nullptr) {
        return APP_CONTROL_ERROR_KEY_NOT_FOUND;
    }
    const auto *array = std::get_if<bundle::Array>(found);
    if (array == nullptr) {
        return APP_CONTROL_ERROR_INVALID_DATA_TYPE;
    }
    auto **copies = static_cast<char **>(std::calloc(array->texts.size(), sizeof(char *)));
    if (copies == nullptr) {
        return APP_CONTROL_ERROR_OUT_OF_MEMORY;
    }
    std::transform(array->texts.begin(), array->texts.end(), copies, heap_copy);
    *value = copies;
    *length = static_cast<int>(array->texts.size());
    return APP_CONTROL_ERROR_NONE;
}
