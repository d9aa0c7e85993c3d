#include <map>
#include <memory>
#include <mutex>

#include "sound/focus.h"
#include "sound/session_bus/focus_seat.h"

namespace host::sound {
namespace {

class SessionBusFocus final : public Focus {
public:
    explicit SessionBusFocus(FocusEvents &events) : events_(events) {}

    void add_stream(StreamId stream) override {
        auto seat = std::make_shared<FocusSeat>(stream, events_);
        seat->join();
        const std::lock_guard lock(mutex_);
        seats_.emplace(stream, std::move(seat));
    }

    void remove_stream(StreamId stream) override {
        std::shared_ptr<FocusSeat> seat;
        {
            const std::lock_guard lock(mutex_);
            const auto node = seats_.extract(stream);
            seat = node.empty() ? nullptr : node.mapped();
        }
        if (seat) {
            seat->leave();
        }
    }

    [[nodiscard]] int acquire(StreamId stream, int mask, const FocusStatement &statement) override {
        const auto seat = seat_of(stream);
        return seat ? seat->acquire(mask, statement) : SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }

    [[nodiscard]] int release(StreamId stream, int mask, const FocusStatement &statement) override {
        const auto seat = seat_of(stream);
        return seat ? seat->release(mask, statement) : SOUND_MANAGER_ERROR_INVALID_PARAMETER;
    }

    [[nodiscard]] int held(StreamId stream) override {
        const auto seat = seat_of(stream);
        return seat ? seat->held() : 0;
    }

    void set_reacquisition(StreamId stream, bool enable) override {
        if (const auto seat = seat_of(stream)) {
            seat->set_reacquisition(enable);
        }
    }

private:
    std::shared_ptr<FocusSeat> seat_of(StreamId stream) {
        const std::lock_guard lock(mutex_);
        const auto found = seats_.find(stream);
        return found == seats_.end() ? nullptr : found->second;
    }

    FocusEvents &events_;
    std::mutex mutex_;
    std::map<StreamId, std::shared_ptr<FocusSeat>> seats_;
};

}  // namespace

std::unique_ptr<Focus> create_session_bus_focus(FocusEvents &events) {
    return std::make_unique<SessionBusFocus>(events);
}

}  // namespace host::sound
