#pragma once

#include <Elementary.h>

#include <functional>
#include <memory>

namespace app_assist {

class WTimer;
struct WTimerImpl;

/// The only handle on a deferred call; it expires when the call is over or cancelled.
using WTimerWeakPtr = std::weak_ptr<WTimer>;

/// A deferred call of the main loop that deletes itself when it is over. Main loop only.
///
/// A timer, animator or idler runs until its handler returns false, WTimer::destroy() or the
/// deletion of its owner object; a job runs once. The forms without owner keep nothing alive: a
/// handler that captures an object must be destroyed before that object.
///
/// Each add returns an empty pointer, with a log line, when the main loop refuses the call; the
/// forms with an owner end the process then, and also when `ownerObj` is null. An empty handler
/// throws std::bad_function_call when its time comes.
class WTimer {
public:
    /// @param interval  seconds between two calls
    /// @param data      handed to the handler
    /// @param ownerObj  live object, not owned; its deletion cancels the call
    static WTimerWeakPtr addTimer(double interval, std::function<bool(void *)> handler, void *data);
    static WTimerWeakPtr addTimer(double interval, std::function<bool(void *)> handler, void *data,
                                  Evas_Object *ownerObj);

    static WTimerWeakPtr addAnimator(std::function<bool(void *)> handler, void *data);
    static WTimerWeakPtr addAnimator(std::function<bool(void *)> handler, void *data,
                                     Evas_Object *ownerObj);

    static WTimerWeakPtr addIdler(std::function<bool(void *)> handler, void *data);
    static WTimerWeakPtr addIdler(std::function<bool(void *)> handler, void *data,
                                  Evas_Object *ownerObj);

    static WTimerWeakPtr addJob(std::function<void(void *)> handler, void *data);
    static WTimerWeakPtr addJob(std::function<void(void *)> handler, void *data,
                                Evas_Object *ownerObj);

    /// Cancels the call. Safe on an empty or expired pointer and inside the handler, which must not
    /// use its captures any more afterwards.
    /// @param[in,out] timer  empty afterwards
    static void destroy(WTimerWeakPtr &timer);

    /// @return the main loop's handle; null when the call is over, null with a log line when it is
    ///         of another kind
    static Ecore_Idler *getIdlerHandle(const WTimerWeakPtr &timer);
    static Ecore_Animator *getAnimatorHandle(const WTimerWeakPtr &timer);
    static Ecore_Timer *getTimerHandle(const WTimerWeakPtr &timer);
    static Ecore_Job *getJobHandle(const WTimerWeakPtr &timer);

    WTimer(const WTimer &) = delete;
    WTimer &operator=(const WTimer &) = delete;

private:
    WTimer(int type, void *data);
    ~WTimer();

    static Eina_Bool _taskCb(void *data);
    static void _jobCb(void *data);
    static void _ownerDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    static WTimerWeakPtr _started(WTimer *timer, void *handle);
    static void _bindToOwner(const WTimerWeakPtr &weak, Evas_Object *ownerObj) noexcept;
    void _cancel();

    WTimerImpl *_pv;
};

}  // namespace app_assist
