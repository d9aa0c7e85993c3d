#pragma once

#include <errno.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>
#include <mutex>

/// Process-wide instance of T, made on first use and never deleted.
///
/// T derives from TSingleton<T>. getInstance() may be called from any thread; what else T offers is
/// T's own affair.
template <typename T>
class TSingleton {
public:
    virtual ~TSingleton() = default;

    /// The instance, made by the first call. Takes no lock once it exists.
    static T *getInstance();

protected:
    TSingleton() = default;

private:
    TSingleton(const TSingleton &) = delete;
    TSingleton &operator=(const TSingleton &) = delete;

    static void _initMutex();

    static std::atomic<T *> s_pInstance;
    static pthread_mutex_t s_mutex;
    static std::once_flag s_mutexReady;
};

template <typename T>
std::atomic<T *> TSingleton<T>::s_pInstance{nullptr};

template <typename T>
pthread_mutex_t TSingleton<T>::s_mutex = PTHREAD_MUTEX_INITIALIZER;

template <typename T>
std::once_flag TSingleton<T>::s_mutexReady;

template <typename T>
T *TSingleton<T>::getInstance() {
    T *pInstance = s_pInstance.load(std::memory_order_acquire);
    if (pInstance != nullptr) {
        return pInstance;
    }

    // A mutex that another thread already holds must not be initialised again: both threads would
    // own it and make an instance each.
    std::call_once(s_mutexReady, _initMutex);
    if (pthread_mutex_lock(&s_mutex) == EDEADLK) {
        printf("ERROR ERROR: DEADLOCK on lock %p\n", static_cast<void *>(&s_mutex));
    }
    pInstance = s_pInstance.load(std::memory_order_relaxed);
    if (pInstance == nullptr) {
        pInstance = new T;
        s_pInstance.store(pInstance, std::memory_order_release);
    }
    pthread_mutex_unlock(&s_mutex);
    return pInstance;
}

template <typename T>
void TSingleton<T>::_initMutex() {
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) == 0) {
        if (pthread_mutex_init(&s_mutex, &attributes) == 0) {
            pthread_mutexattr_destroy(&attributes);
        }
    }
}
