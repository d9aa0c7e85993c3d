#include "app-assist/WTimer.h"

#include <utility>

#include "app-assist/WLog.h"

namespace app_assist {

namespace {

enum TimerType { IDLER = 0, ANIMATOR = 1, TIMER = 2, JOB = 3 };

}  // namespace

struct WTimerImpl {
    void *_handle;
    int _type;
    void *_data;
    std::shared_ptr<WTimer> *_weakAnchor;
    Evas_Object *_ownerObj;
    std::function<bool(void *)> _handler;
    std::function<void(void *)> _jobHandler;
};

WTimer::WTimer(int type, void *data) : _pv(new WTimerImpl()) {
    // Its count doesn't own the timer; it tells the world whether the timer still exists.
    _pv->_weakAnchor = new std::shared_ptr<WTimer>(this, [](WTimer *) {});
    _pv->_type = type;
    _pv->_data = data;
}

WTimer::~WTimer() {
    if (_pv->_ownerObj != nullptr) {
        evas_object_event_callback_del_full(_pv->_ownerObj, EVAS_CALLBACK_DEL, _ownerDeletedCb,
                                            this);
    }
    _cancel();
    delete _pv->_weakAnchor;
    delete _pv;
}

WTimerWeakPtr WTimer::addTimer(double interval, std::function<bool(void *)> handler, void *data) {
    auto *timer = new WTimer(TIMER, data);
    timer->_pv->_handler = std::move(handler);
    Ecore_Timer *handle = ecore_timer_add(interval, _taskCb, timer);
    if (handle == nullptr) {
        WERROR("failed to add ecore timer!");
        delete timer;
        return WTimerWeakPtr();
    }
    return _started(timer, handle);
}

WTimerWeakPtr WTimer::addTimer(double interval, std::function<bool(void *)> handler, void *data,
                               Evas_Object *ownerObj) {
    WASSERT_MESSAGE(ownerObj != nullptr, "ownerObj is null.");
    WTimerWeakPtr timer = addTimer(interval, std::move(handler), data);
    _bindToOwner(timer, ownerObj);
    return timer;
}

WTimerWeakPtr WTimer::addAnimator(std::function<bool(void *)> handler, void *data) {
    auto *timer = new WTimer(ANIMATOR, data);
    timer->_pv->_handler = std::move(handler);
    Ecore_Animator *handle = ecore_animator_add(_taskCb, timer);
    if (handle == nullptr) {
        WERROR("failed to add ecore animator!");
        delete timer;
        return WTimerWeakPtr();
    }
    return _started(timer, handle);
}

WTimerWeakPtr WTimer::addAnimator(std::function<bool(void *)> handler, void *data,
                                  Evas_Object *ownerObj) {
    WASSERT_MESSAGE(ownerObj != nullptr, "ownerObj is null.");
    WTimerWeakPtr timer = addAnimator(std::move(handler), data);
    _bindToOwner(timer, ownerObj);
    return timer;
}

WTimerWeakPtr WTimer::addIdler(std::function<bool(void *)> handler, void *data) {
    auto *timer = new WTimer(IDLER, data);
    timer->_pv->_handler = std::move(handler);
    Ecore_Idler *handle = ecore_idler_add(_taskCb, timer);
    if (handle == nullptr) {
        WERROR("failed to add ecore idler!");
        delete timer;
        return WTimerWeakPtr();
    }
    return _started(timer, handle);
}

WTimerWeakPtr WTimer::addIdler(std::function<bool(void *)> handler, void *data,
                               Evas_Object *ownerObj) {
    WASSERT_MESSAGE(ownerObj != nullptr, "ownerObj is null.");
    WTimerWeakPtr timer = addIdler(std::move(handler), data);
    _bindToOwner(timer, ownerObj);
    return timer;
}

WTimerWeakPtr WTimer::addJob(std::function<void(void *)> handler, void *data) {
    auto *timer = new WTimer(JOB, data);
    timer->_pv->_jobHandler = std::move(handler);
    Ecore_Job *handle = ecore_job_add(_jobCb, timer);
    if (handle == nullptr) {
        WERROR("failed to add ecore job!");
        delete timer;
        return WTimerWeakPtr();
    }
    return _started(timer, handle);
}

WTimerWeakPtr WTimer::addJob(std::function<void(void *)> handler, void *data,
                             Evas_Object *ownerObj) {
    WASSERT_MESSAGE(ownerObj != nullptr, "ownerObj is null.");
    WTimerWeakPtr timer = addJob(std::move(handler), data);
    _bindToOwner(timer, ownerObj);
    return timer;
}

void WTimer::destroy(WTimerWeakPtr &timer) {
    // Not locked any longer than the test takes: a strong pointer would delay the expiry.
    delete timer.lock().get();
    timer.reset();
}

Ecore_Idler *WTimer::getIdlerHandle(const WTimerWeakPtr &timer) {
    const std::shared_ptr<WTimer> locked = timer.lock();
    if (!locked) {
        return nullptr;
    }
    if (locked->_pv->_type != IDLER) {
        WERROR("This is not Idler type timer!");
        return nullptr;
    }
    return static_cast<Ecore_Idler *>(locked->_pv->_handle);
}

Ecore_Animator *WTimer::getAnimatorHandle(const WTimerWeakPtr &timer) {
    const std::shared_ptr<WTimer> locked = timer.lock();
    if (!locked) {
        return nullptr;
    }
    if (locked->_pv->_type != ANIMATOR) {
        WERROR("This is not Animator type timer!");
        return nullptr;
    }
    return static_cast<Ecore_Animator *>(locked->_pv->_handle);
}

Ecore_Timer *WTimer::getTimerHandle(const WTimerWeakPtr &timer) {
    const std::shared_ptr<WTimer> locked = timer.lock();
    if (!locked) {
        return nullptr;
    }
    if (locked->_pv->_type != TIMER) {
        WERROR("This is not Timer type timer!");
        return nullptr;
    }
    return static_cast<Ecore_Timer *>(locked->_pv->_handle);
}

Ecore_Job *WTimer::getJobHandle(const WTimerWeakPtr &timer) {
    const std::shared_ptr<WTimer> locked = timer.lock();
    if (!locked) {
        return nullptr;
    }
    if (locked->_pv->_type != JOB) {
        WERROR("This is not Job type timer!");
        return nullptr;
    }
    return static_cast<Ecore_Job *>(locked->_pv->_handle);
}

Eina_Bool WTimer::_taskCb(void *data) {
    auto *timer = static_cast<WTimer *>(data);
    const WTimerWeakPtr alive = *timer->_pv->_weakAnchor;
    if (timer->_pv->_handler(timer->_pv->_data)) {
        return ECORE_CALLBACK_RENEW;
    }
    if (!alive.expired()) {
        // The main loop drops the handle at this return.
        timer->_pv->_handle = nullptr;
        delete timer;
    }
    return ECORE_CALLBACK_CANCEL;
}

void WTimer::_jobCb(void *data) {
    auto *timer = static_cast<WTimer *>(data);
    const WTimerWeakPtr alive = *timer->_pv->_weakAnchor;
    timer->_pv->_jobHandler(timer->_pv->_data);
    if (!alive.expired()) {
        timer->_pv->_handle = nullptr;
        delete timer;
    }
}

void WTimer::_ownerDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *timer = static_cast<WTimer *>(data);
    timer->_pv->_ownerObj = nullptr;
    delete timer;
}

WTimerWeakPtr WTimer::_started(WTimer *timer, void *handle) {
    timer->_pv->_handle = handle;
    return *timer->_pv->_weakAnchor;
}

// An add that failed has no timer to bind: the exception of the strong pointer ends the process.
// NOLINTNEXTLINE(bugprone-exception-escape)
void WTimer::_bindToOwner(const WTimerWeakPtr &weak, Evas_Object *ownerObj) noexcept {
    const std::shared_ptr<WTimer> timer(weak);
    timer->_pv->_ownerObj = ownerObj;
    evas_object_event_callback_add(ownerObj, EVAS_CALLBACK_DEL, _ownerDeletedCb, timer.get());
}

void WTimer::_cancel() {
    void *handle = _pv->_handle;
    if (handle == nullptr) {
        return;
    }
    _pv->_handle = nullptr;
    switch (_pv->_type) {
    case IDLER:
        ecore_idler_del(static_cast<Ecore_Idler *>(handle));
        break;
    case ANIMATOR:
        ecore_animator_del(static_cast<Ecore_Animator *>(handle));
        break;
    case TIMER:
        ecore_timer_del(static_cast<Ecore_Timer *>(handle));
        break;
    default:
        ecore_job_del(static_cast<Ecore_Job *>(handle));
        break;
    }
}

}  // namespace app_assist
