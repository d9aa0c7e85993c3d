#pragma once

#include <efl_extension.h>

#include <vector>

/// The bezel: one active object, which gives the bezel back to the one before; callbacks in order
/// of priority. What an object has goes with it.
class FakeRotary {
public:
    FakeRotary() = default;
    ~FakeRotary();
    FakeRotary(const FakeRotary &) = delete;
    FakeRotary &operator=(const FakeRotary &) = delete;

    /// One detent. @return whether a callback took it
    bool detent(Eext_Rotary_Event_Direction direction, unsigned time_stamp);
    Evas_Object *active() const { return m_activated.empty() ? nullptr : m_activated.back(); }
    int callbacks(const Evas_Object *obj) const;

    Eina_Bool eext_rotary_object_event_callback_add(Evas_Object *obj, Eext_Rotary_Event_Cb func,
                                                    const void *data);
    Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object *obj,
                                                             Evas_Callback_Priority priority,
                                                             Eext_Rotary_Event_Cb func,
                                                             const void *data);
    void *eext_rotary_object_event_callback_del(Evas_Object *obj, Eext_Rotary_Event_Cb func);
    Eina_Bool eext_rotary_object_event_activated_set(Evas_Object *obj, Eina_Bool activated);

private:
    struct Callback {
        Evas_Object *obj;
        Evas_Callback_Priority priority;
        Eext_Rotary_Event_Cb function;
        void *data;
    };

    void watch(Evas_Object *obj);
    static void object_deleted(void *data, Evas *e, Evas_Object *obj, void *event_info);

    std::vector<Callback> m_callbacks;
    std::vector<Evas_Object *> m_watched;
    std::vector<Evas_Object *> m_activated;  ///< in this order; the last one is active
};

/// The hardware keys: a key goes to the newest live and visible object that has asked for it.
class FakeKeys {
public:
    FakeKeys() = default;
    ~FakeKeys();
    FakeKeys(const FakeKeys &) = delete;
    FakeKeys &operator=(const FakeKeys &) = delete;

    /// @return whether an object got the key
    bool press_back() { return press(EEXT_CALLBACK_BACK); }
    bool press_more() { return press(EEXT_CALLBACK_MORE); }
    int callbacks(const Evas_Object *obj) const;

    void eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type,
                                        Eext_Event_Cb func, void *data);
    void *eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type,
                                         Eext_Event_Cb func);

private:
    struct Callback {
        Evas_Object *obj;
        Eext_Callback_Type type;
        Eext_Event_Cb function;
        void *data;
    };

    bool press(Eext_Callback_Type type);
    void watch(Evas_Object *obj);
    static void object_deleted(void *data, Evas *e, Evas_Object *obj, void *event_info);

    std::vector<Callback> m_callbacks;
    std::vector<Evas_Object *> m_watched;
};

namespace mock {
FakeRotary &fake_rotary();
FakeKeys &fake_keys();
}  // namespace mock
