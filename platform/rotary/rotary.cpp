#include "rotary/rotary.h"

#include <algorithm>
#include <cstring>
#include <list>
#include <map>
#include <memory>
#include <vector>

namespace host {

namespace {

/// The callbacks that objects have for detents, and which object is active. All that it keeps of an
/// object goes with it.
class RotaryObjects {
public:
    void add(Evas_Object *obj, Evas_Callback_Priority priority, Eext_Rotary_Event_Cb func,
             const void *data);
    void *remove(Evas_Object *obj, Eext_Rotary_Event_Cb func);
    void activate(Evas_Object *obj);
    void deactivate(Evas_Object *obj);
    bool send(Eext_Rotary_Event_Info info);

private:
    struct Listener {
        Evas_Callback_Priority priority;
        Eext_Rotary_Event_Cb func;
        void *data;
        bool removed = false;
    };
    using Listeners = std::vector<std::shared_ptr<Listener>>;

    static void object_deleted(void *data, Evas *evas, Evas_Object *obj, void *info);
    void watch(Evas_Object *obj);
    void forget_if_unused(Evas_Object *obj);

    std::map<Evas_Object *, Listeners> objects_;
    /// In the order of their activation; the last one is active.
    std::vector<Evas_Object *> activated_;
};

void RotaryObjects::object_deleted(void *data, Evas * /*evas*/, Evas_Object *obj, void * /*info*/) {
    auto *self = static_cast<RotaryObjects *>(data);
    const auto found = self->objects_.find(obj);
    if (found != self->objects_.end()) {
        // A detent that is being delivered must not reach what is left.
        for (const auto &listener : found->second) {
            listener->removed = true;
        }
        self->objects_.erase(found);
    }
    std::erase(self->activated_, obj);
}

void RotaryObjects::watch(Evas_Object *obj) {
    if (objects_.try_emplace(obj).second) {
        evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
}

void RotaryObjects::forget_if_unused(Evas_Object *obj) {
    const auto found = objects_.find(obj);
    if (found != objects_.end() && found->second.empty() &&
        std::find(activated_.begin(), activated_.end(), obj) == activated_.end()) {
        evas_object_event_callback_del_full(obj, EVAS_CALLBACK_DEL, object_deleted, this);
        objects_.erase(found);
    }
}

void RotaryObjects::add(Evas_Object *obj, Evas_Callback_Priority priority,
                        Eext_Rotary_Event_Cb func, const void *data) {
    watch(obj);
    Listeners &listeners = objects_[obj];
    const auto after = std::find_if(listeners.begin(), listeners.end(),
                                    [priority](const auto &l) { return l->priority > priority; });
    listeners.insert(after, std::make_shared<Listener>(
                                Listener{priority, func, const_cast<void *>(data), false}));
}

void *RotaryObjects::remove(Evas_Object *obj, Eext_Rotary_Event_Cb func) {
    const auto found = objects_.find(obj);
    if (found == objects_.end()) {
        return nullptr;
    }
    Listeners &listeners = found->second;
    const auto listener = std::find_if(listeners.begin(), listeners.end(),
                                       [func](const auto &l) { return l->func == func; });
    if (listener == listeners.end()) {
        return nullptr;
    }
    void *data = (*listener)->data;
    (*listener)->removed = true;
    listeners.erase(listener);
    forget_if_unused(obj);
    return data;
}

void RotaryObjects::activate(Evas_Object *obj) {
    watch(obj);
    std::erase(activated_, obj);
    activated_.push_back(obj);
}

void RotaryObjects::deactivate(Evas_Object *obj) {
    std::erase(activated_, obj);
    forget_if_unused(obj);
}

bool RotaryObjects::send(Eext_Rotary_Event_Info info) {
    if (activated_.empty()) {
        return false;
    }
    Evas_Object *obj = activated_.back();
    // A callback may remove any callback, and the object.
    const Listeners listeners = objects_[obj];
    for (const auto &listener : listeners) {
        if (!listener->removed && listener->func(listener->data, obj, &info) != EINA_FALSE) {
            return true;
        }
    }
    return false;
}

/// The window that a canvas belongs to, null for a canvas without one.
const Evas_Object *window_of(const Evas *canvas) {
    const Evas_Object *object = evas_object_bottom_get(canvas);
    while (object != nullptr && std::strcmp(evas_object_type_get(object), "elm_win") != 0) {
        object = evas_object_above_get(object);
    }
    return object;
}

/// Shown, as are all objects that it stands in and its window.
bool is_seen(const Evas_Object *obj) {
    for (const Evas_Object *part = obj; part != nullptr;
         part = evas_object_smart_parent_get(part)) {
        if (evas_object_visible_get(part) == EINA_FALSE) {
            return false;
        }
    }
    const Evas_Object *window = window_of(evas_object_evas_get(obj));
    return window == nullptr || evas_object_visible_get(window) != EINA_FALSE;
}

/// The callbacks that objects have for the hardware keys, oldest first.
class KeyObjects {
public:
    void add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func, void *data);
    void *remove(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func);
    bool send(Eext_Callback_Type type);

private:
    struct Listener {
        Evas_Object *obj;
        Eext_Callback_Type type;
        Eext_Event_Cb func;
        void *data;
        bool removed = false;
    };

    static void object_deleted(void *data, Evas *evas, Evas_Object *obj, void *info);
    [[nodiscard]] bool knows(const Evas_Object *obj) const;
    void drop(Evas_Object *obj);

    std::list<std::shared_ptr<Listener>> listeners_;
};

bool KeyObjects::knows(const Evas_Object *obj) const {
    return std::any_of(listeners_.begin(), listeners_.end(),
                       [obj](const auto &l) { return l->obj == obj; });
}

void KeyObjects::drop(Evas_Object *obj) {
    listeners_.remove_if([obj](const auto &listener) {
        if (listener->obj != obj) {
            return false;
        }
        listener->removed = true;
        return true;
    });
}

void KeyObjects::object_deleted(void *data, Evas * /*evas*/, Evas_Object *obj, void * /*info*/) {
    static_cast<KeyObjects *>(data)->drop(obj);
}

void KeyObjects::add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func, void *data) {
    if (!knows(obj)) {
        evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
    listeners_.push_back(std::make_shared<Listener>(Listener{obj, type, func, data, false}));
}

void *KeyObjects::remove(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func) {
    const auto listener = std::find_if(listeners_.begin(), listeners_.end(), [=](const auto &l) {
        return l->obj == obj && l->type == type && l->func == func;
    });
    if (listener == listeners_.end()) {
        return nullptr;
    }
    void *data = (*listener)->data;
    (*listener)->removed = true;
    listeners_.erase(listener);
    if (!knows(obj)) {
        evas_object_event_callback_del_full(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
    return data;
}

bool KeyObjects::send(Eext_Callback_Type type) {
    const auto newest = std::find_if(listeners_.rbegin(), listeners_.rend(), [type](const auto &l) {
        return l->type == type && is_seen(l->obj);
    });
    if (newest == listeners_.rend()) {
        return false;
    }
    Evas_Object *obj = (*newest)->obj;
    // A callback may remove any callback, and the object.
    std::vector<std::shared_ptr<Listener>> asked;
    std::copy_if(listeners_.begin(), listeners_.end(), std::back_inserter(asked),
                 [=](const auto &l) { return l->obj == obj && l->type == type; });
    for (const auto &listener : asked) {
        if (!listener->removed) {
            listener->func(listener->data, obj, nullptr);
        }
    }
    return true;
}

RotaryObjects &rotary_objects() {
    static RotaryObjects objects;
    return objects;
}

KeyObjects &key_objects() {
    static KeyObjects objects;
    return objects;
}

}  // namespace

bool send_detent(Eext_Rotary_Event_Direction direction, unsigned int time_stamp_ms) {
    return rotary_objects().send({direction, time_stamp_ms});
}

bool send_key(Eext_Callback_Type type) {
    return key_objects().send(type);
}

}  // namespace host

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object *obj,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb func,
                                                         const void *data) {
    if (obj == nullptr || func == nullptr) {
        return EINA_FALSE;
    }
    host::rotary_objects().add(obj, priority, func, data);
    return EINA_TRUE;
}

Eina_Bool eext_rotary_object_event_callback_add(Evas_Object *obj, Eext_Rotary_Event_Cb func,
                                                const void *data) {
    return eext_rotary_object_event_callback_priority_add(obj, EVAS_CALLBACK_PRIORITY_DEFAULT, func,
                                                          data);
}

void *eext_rotary_object_event_callback_del(Evas_Object *obj, Eext_Rotary_Event_Cb func) {
    return obj == nullptr ? nullptr : host::rotary_objects().remove(obj, func);
}

Eina_Bool eext_rotary_object_event_activated_set(Evas_Object *obj, Eina_Bool activated) {
    if (obj == nullptr) {
        return EINA_FALSE;
    }
    if (activated != EINA_FALSE) {
        host::rotary_objects().activate(obj);
    } else {
        host::rotary_objects().deactivate(obj);
    }
    return EINA_TRUE;
}

void eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func,
                                    void *data) {
    if (obj != nullptr && func != nullptr) {
        host::key_objects().add(obj, type, func, data);
    }
}

void *eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type,
                                     Eext_Event_Cb func) {
    return obj == nullptr ? nullptr : host::key_objects().remove(obj, type, func);
}
