#pragma once

#include <Elementary.h>

#include <atomic>
#include <functional>
#include <list>
#include <map>
#include <utility>

#include "app-assist/WLog.h"

namespace app_assist {

/// The process-wide source of listener ids: 1, 2, 3 ... in order of registration, never reused.
inline unsigned int wsignal_next_listener_id() {
    static unsigned int s_nLastId = 0;
    return ++s_nLastId;
}

template <typename Signature>
class WSignal;

/// A synchronous signal: emit() calls every listener, in order of registration, and has run to its
/// end when it returns.
///
/// A listener added during an emission is first called by the next one; a listener removed during
/// an emission isn't called any more. Emission, addition and removal belong on one thread, the main
/// loop; there is no lock.
template <typename... Args>
class WSignal<void(Args...)> {
public:
    using Callback = std::function<void(Args...)>;

    WSignal() = default;
    virtual ~WSignal();
    WSignal(const WSignal &) = delete;
    WSignal &operator=(const WSignal &) = delete;

    /// Adds a listener, which stays until removeListener().
    /// @param callback  not empty: an emission on an empty one throws std::bad_function_call
    /// @return its id, never 0
    unsigned int addListener(Callback callback);
    /// Adds a listener that goes when `evasObject` is deleted.
    /// @param evasObject  bound object, not owned; null binds to nothing
    unsigned int addListener(Callback callback, Evas_Object *evasObject);

    /// Removes a listener; 0 is ignored, an id that isn't there any more is logged as an error.
    /// @param[in,out] id  always 0 afterwards
    void removeListener(unsigned int &id);

    /// Calls the listeners. May be called from within a listener.
    void emit(Args... args);

protected:
    /// Calls each live listener in ascending order of id.
    virtual void notifyListeners(Args... args);

private:
    struct WSignalListener {
        Callback callback;
        Evas_Object *evasObject;
        bool removed;
        unsigned int id;
        WSignal *owner;
    };
    using ListenerMap = std::map<unsigned int, WSignalListener *>;

    static void _evasObjectDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    void _store(WSignalListener *listener);
    void _eraseRemovedListeners();
    void _storePendingListeners();

    // Atomic because an emission from a foreign thread is tolerated; no order is implied.
    std::atomic<bool> m_bEmitting{false};
    std::list<WSignalListener *> m_pendingListeners;
    ListenerMap m_listeners;
};

template <typename... Args>
WSignal<void(Args...)>::~WSignal() {
    const bool emitting = m_bEmitting.load(std::memory_order_relaxed);
    for (auto &entry : m_listeners) {
        WSignalListener *listener = entry.second;
        if (listener->evasObject != nullptr) {
            evas_object_event_callback_del_full(listener->evasObject, EVAS_CALLBACK_DEL,
                                                _evasObjectDeletedCb, listener);
        }
        if (emitting) {
            listener->removed = true;
        }
    }
    for (auto &entry : m_listeners) {
        delete entry.second;
    }
    for (WSignalListener *listener : m_pendingListeners) {
        delete listener;
    }
}

template <typename... Args>
unsigned int WSignal<void(Args...)>::addListener(Callback callback) {
    return addListener(std::move(callback), nullptr);
}

template <typename... Args>
unsigned int WSignal<void(Args...)>::addListener(Callback callback, Evas_Object *evasObject) {
    const unsigned int id = wsignal_next_listener_id();
    auto *listener = new WSignalListener{std::move(callback), evasObject, false, id, this};
    if (m_bEmitting.load(std::memory_order_relaxed)) {
        m_pendingListeners.push_back(listener);
    } else {
        _store(listener);
    }
    return id;
}

template <typename... Args>
void WSignal<void(Args...)>::removeListener(unsigned int &id) {
    if (id == 0) {
        return;
    }
    auto found = m_listeners.find(id);
    if (found == m_listeners.end()) {
        WERROR("Already removed listener! =%d", static_cast<int>(id));
        id = 0;
        return;
    }
    WSignalListener *listener = found->second;
    if (listener->evasObject != nullptr) {
        evas_object_event_callback_del_full(listener->evasObject, EVAS_CALLBACK_DEL,
                                            _evasObjectDeletedCb, listener);
    }
    if (m_bEmitting.load(std::memory_order_relaxed)) {
        listener->removed = true;
    } else {
        m_listeners.erase(found);
        delete listener;
    }
    id = 0;
}

template <typename... Args>
void WSignal<void(Args...)>::emit(Args... args) {
    m_bEmitting.store(true, std::memory_order_relaxed);
    notifyListeners(args...);
    m_bEmitting.store(false, std::memory_order_relaxed);
    _eraseRemovedListeners();
    _storePendingListeners();
}

template <typename... Args>
void WSignal<void(Args...)>::notifyListeners(Args... args) {
    // By id and not by iterator: after a nested emission a listener may erase any record at once,
    // the one being called included.
    auto entry = m_listeners.begin();
    while (entry != m_listeners.end()) {
        const unsigned int id = entry->first;
        WSignalListener *listener = entry->second;
        if (!listener->removed) {
            listener->callback(args...);
        }
        entry = m_listeners.upper_bound(id);
    }
}

template <typename... Args>
void WSignal<void(Args...)>::_evasObjectDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *listener = static_cast<WSignalListener *>(data);
    listener->evasObject = nullptr;
    if (listener->owner->m_bEmitting.load(std::memory_order_relaxed)) {
        listener->removed = true;
        return;
    }
    unsigned int id = listener->id;
    listener->owner->removeListener(id);
}

template <typename... Args>
void WSignal<void(Args...)>::_store(WSignalListener *listener) {
    WSignalListener *&slot = m_listeners[listener->id];
    delete slot;
    slot = listener;
    if (listener->evasObject != nullptr) {
        evas_object_event_callback_add(listener->evasObject, EVAS_CALLBACK_DEL,
                                       _evasObjectDeletedCb, listener);
    }
}

template <typename... Args>
void WSignal<void(Args...)>::_eraseRemovedListeners() {
    for (auto entry = m_listeners.begin(); entry != m_listeners.end();) {
        WSignalListener *listener = entry->second;
        if (listener->removed) {
            entry = m_listeners.erase(entry);
            delete listener;
        } else {
            ++entry;
        }
    }
}

template <typename... Args>
void WSignal<void(Args...)>::_storePendingListeners() {
    // An empty list isn't even cleared: the usual emission writes nothing but the flag.
    if (m_pendingListeners.empty()) {
        return;
    }
    for (WSignalListener *listener : m_pendingListeners) {
        _store(listener);
    }
    m_pendingListeners.clear();
}

}  // namespace app_assist
