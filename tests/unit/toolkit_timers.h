#pragma once

#include <Ecore.h>
#include <dlfcn.h>

#include <algorithm>
#include <map>
#include <vector>

/// The toolkit's timers, told by their seconds: a test sees what will come, and needn't wait for
/// it. For a test of one source: the program's calls come through here.
namespace toolkit {

struct Timers {
    std::vector<double> made;
    std::map<Ecore_Timer *, double> kept;  ///< all that nobody has deleted, expired ones too

    [[nodiscard]] auto count_made(double seconds) const {
        return std::count(made.begin(), made.end(), seconds);
    }
    [[nodiscard]] auto count_kept(double seconds) const {
        return std::count_if(kept.begin(), kept.end(),
                             [seconds](const auto &timer) { return timer.second == seconds; });
    }
};

inline Timers timers;

}  // namespace toolkit

extern "C" {
Ecore_Timer *ecore_timer_add(double interval, Ecore_Task_Cb function, const void *data) {
    static auto *const own =
        reinterpret_cast<decltype(&ecore_timer_add)>(dlsym(RTLD_NEXT, "ecore_timer_add"));
    Ecore_Timer *const timer = own(interval, function, data);
    toolkit::timers.made.push_back(interval);
    toolkit::timers.kept[timer] = interval;
    return timer;
}
void *ecore_timer_del(Ecore_Timer *timer) {
    static auto *const own =
        reinterpret_cast<decltype(&ecore_timer_del)>(dlsym(RTLD_NEXT, "ecore_timer_del"));
    toolkit::timers.kept.erase(timer);
    return own(timer);
}
}
