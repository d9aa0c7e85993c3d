#include "fake_efl_extension.h"

#include <algorithm>

#include "slot.h"

namespace mock {

FakeRotary &fake_rotary() {
    static Slot<FakeRotary> slot;
    return slot.get();
}

FakeKeys &fake_keys() {
    static Slot<FakeKeys> slot;
    return slot.get();
}

}  // namespace mock

// ---- bezel

FakeRotary::~FakeRotary() {
    for (auto *obj : m_watched) {
        evas_object_event_callback_del_full(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
}

void FakeRotary::watch(Evas_Object *obj) {
    if (std::find(m_watched.begin(), m_watched.end(), obj) == m_watched.end()) {
        m_watched.push_back(obj);
        evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
}

void FakeRotary::object_deleted(void *data, Evas *, Evas_Object *obj, void *) {
    auto &self = *static_cast<FakeRotary *>(data);
    std::erase_if(self.m_callbacks, [obj](const Callback &item) { return item.obj == obj; });
    std::erase(self.m_watched, obj);
    std::erase(self.m_activated, obj);
}

bool FakeRotary::detent(Eext_Rotary_Event_Direction direction, unsigned time_stamp) {
    std::vector<Callback> due;
    std::copy_if(m_callbacks.begin(), m_callbacks.end(), std::back_inserter(due),
                 [this](const Callback &item) { return item.obj == active(); });
    std::stable_sort(due.begin(), due.end(), [](const Callback &one, const Callback &other) {
        return one.priority < other.priority;
    });
    for (const auto &callback : due) {
        Eext_Rotary_Event_Info info{direction, time_stamp};
        if (callback.function(callback.data, callback.obj, &info) == EINA_TRUE) {
            return true;
        }
    }
    return false;
}

int FakeRotary::callbacks(const Evas_Object *obj) const {
    return static_cast<int>(std::count_if(m_callbacks.begin(), m_callbacks.end(),
                                          [obj](const Callback &item) { return item.obj == obj; }));
}

Eina_Bool FakeRotary::eext_rotary_object_event_callback_add(Evas_Object *obj,
                                                            Eext_Rotary_Event_Cb func,
                                                            const void *data) {
    return eext_rotary_object_event_callback_priority_add(obj, EVAS_CALLBACK_PRIORITY_DEFAULT, func,
                                                          data);
}

Eina_Bool FakeRotary::eext_rotary_object_event_callback_priority_add(
    Evas_Object *obj, Evas_Callback_Priority priority, Eext_Rotary_Event_Cb func,
    const void *data) {
    if (obj == nullptr || func == nullptr) {
        return EINA_FALSE;
    }
    watch(obj);
    m_callbacks.push_back({obj, priority, func, const_cast<void *>(data)});
    return EINA_TRUE;
}

void *FakeRotary::eext_rotary_object_event_callback_del(Evas_Object *obj,
                                                        Eext_Rotary_Event_Cb func) {
    const auto item = std::find_if(
        m_callbacks.begin(), m_callbacks.end(),
        [&](const Callback &callback) { return callback.obj == obj && callback.function == func; });
    if (item == m_callbacks.end()) {
        return nullptr;
    }
    void *data = item->data;
    m_callbacks.erase(item);
    return data;
}

Eina_Bool FakeRotary::eext_rotary_object_event_activated_set(Evas_Object *obj,
                                                             Eina_Bool activated) {
    if (obj == nullptr) {
        return EINA_FALSE;
    }
    std::erase(m_activated, obj);
    if (activated == EINA_TRUE) {
        watch(obj);
        m_activated.push_back(obj);
    }
    return EINA_TRUE;
}

// ---- keys

FakeKeys::~FakeKeys() {
    for (auto *obj : m_watched) {
        evas_object_event_callback_del_full(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
}

void FakeKeys::watch(Evas_Object *obj) {
    if (std::find(m_watched.begin(), m_watched.end(), obj) == m_watched.end()) {
        m_watched.push_back(obj);
        evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    }
}

void FakeKeys::object_deleted(void *data, Evas *, Evas_Object *obj, void *) {
    auto &self = *static_cast<FakeKeys *>(data);
    std::erase_if(self.m_callbacks, [obj](const Callback &item) { return item.obj == obj; });
    std::erase(self.m_watched, obj);
}

bool FakeKeys::press(Eext_Callback_Type type) {
    const auto item =
        std::find_if(m_callbacks.rbegin(), m_callbacks.rend(), [type](const Callback &callback) {
            return callback.type == type && evas_object_visible_get(callback.obj) == EINA_TRUE;
        });
    if (item == m_callbacks.rend()) {
        return false;
    }
    const Callback callback = *item;
    callback.function(callback.data, callback.obj, nullptr);
    return true;
}

int FakeKeys::callbacks(const Evas_Object *obj) const {
    return static_cast<int>(std::count_if(m_callbacks.begin(), m_callbacks.end(),
                                          [obj](const Callback &item) { return item.obj == obj; }));
}

void FakeKeys::eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type,
                                              Eext_Event_Cb func, void *data) {
    if (obj == nullptr || func == nullptr) {
        return;
    }
    watch(obj);
    m_callbacks.push_back({obj, type, func, data});
}

void *FakeKeys::eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type,
                                               Eext_Event_Cb func) {
    const auto item =
        std::find_if(m_callbacks.begin(), m_callbacks.end(), [&](const Callback &callback) {
            return callback.obj == obj && callback.type == type && callback.function == func;
        });
    if (item == m_callbacks.end()) {
        return nullptr;
    }
    void *data = item->data;
    m_callbacks.erase(item);
    return data;
}
