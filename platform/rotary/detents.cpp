#include "rotary/detents.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace host {

Detents::Detents(std::function<void(bool, unsigned int)> deliver) : deliver_(std::move(deliver)) {}

Detents::~Detents() {
    if (timer_ != nullptr) {
        ecore_timer_del(timer_);
    }
}

void Detents::turn(int count, int interval_ms) {
    const Detent detent{count > 0, std::max(interval_ms, kLeastInterval)};
    waiting_.insert(waiting_.end(), static_cast<std::size_t>(std::abs(count)), detent);
    deliver_due();
}

void Detents::turn_by_hand(int count) {
    const bool clockwise = count > 0;
    if (!waiting_.empty() && waiting_.back().clockwise != clockwise) {
        waiting_.clear();
    }
    const auto room = static_cast<int>(std::max<std::size_t>(waiting_.size(), kPerTurn)) -
                      static_cast<int>(waiting_.size());
    const int taken = std::min(std::abs(count), room);
    turn(clockwise ? taken : -taken, kLeastInterval);
}

void Detents::deliver_due() {
    if (delivering_) {
        return;
    }
    delivering_ = true;
    while (!waiting_.empty() && timer_ == nullptr) {
        const double now = ecore_time_get();
        const double due = last_ + waiting_.front().interval_ms / 1000.0;
        if (last_ >= 0.0 && now < due) {
            timer_ = ecore_timer_add(due - now, timer_expired, this);
            break;
        }
        const bool clockwise = waiting_.front().clockwise;
        waiting_.pop_front();
        auto stamp = static_cast<unsigned int>(static_cast<long long>(now * 1000.0));
        if (last_ >= 0.0 && stamp < last_stamp_ + kLeastInterval) {
            stamp = last_stamp_ + kLeastInterval;  // rounding has cut a millisecond
        }
        last_ = now;
        last_stamp_ = stamp;
        deliver_(clockwise, stamp);
    }
    delivering_ = false;
}

Eina_Bool Detents::timer_expired(void *data) {
    auto *self = static_cast<Detents *>(data);
    self->timer_ = nullptr;
    self->deliver_due();
    return ECORE_CALLBACK_CANCEL;
}

}  // namespace host
