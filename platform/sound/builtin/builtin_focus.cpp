#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <vector>

#include "sound/focus.h"

namespace host::sound {
namespace {

/// The line for one focus: its holder, then those who lost it, the latest first.
struct Line {
    sound_stream_focus_mask_e mask;
    std::vector<StreamId> streams;

    [[nodiscard]] bool held_by(StreamId stream) const {
        return !streams.empty() && streams.front() == stream;
    }
};

class BuiltinFocus final : public Focus {
public:
    explicit BuiltinFocus(FocusEvents &events) : events_(events) {}

    void add_stream(StreamId stream) override {
        const std::lock_guard lock(mutex_);
        reacquisition_[stream] = true;
    }

    void remove_stream(StreamId stream) override {
        const std::lock_guard lock(mutex_);
        reacquisition_.erase(stream);
        for (Line &line : lines_) {
            leave(line, stream, {});
        }
    }

    [[nodiscard]] int acquire(StreamId stream, int mask, const FocusStatement &statement) override {
        const std::lock_guard lock(mutex_);
        for (Line &line : lines_) {
            if ((line.mask & mask) != 0 && !line.held_by(stream)) {
                take(line, stream, statement);
            }
        }
        return SOUND_MANAGER_ERROR_NONE;
    }

    [[nodiscard]] int release(StreamId stream, int mask, const FocusStatement &statement) override {
        const std::lock_guard lock(mutex_);
        for (const Line &line : lines_) {
            if ((line.mask & mask) != 0 && !line.held_by(stream)) {
                return SOUND_MANAGER_ERROR_INVALID_STATE;
            }
        }
        for (Line &line : lines_) {
            if ((line.mask & mask) != 0) {
                leave(line, stream, statement);
            }
        }
        return SOUND_MANAGER_ERROR_NONE;
    }

    [[nodiscard]] int held(StreamId stream) override {
        const std::lock_guard lock(mutex_);
        int mask = 0;
        for (const Line &line : lines_) {
            mask |= line.held_by(stream) ? line.mask : 0;
        }
        return mask;
    }

    void set_reacquisition(StreamId stream, bool enable) override {
        const std::lock_guard lock(mutex_);
        reacquisition_[stream] = enable;
        for (Line &line : lines_) {
            if (!enable && !line.held_by(stream)) {
                std::erase(line.streams, stream);
            }
        }
    }

private:
    void take(Line &line, StreamId stream, const FocusStatement &statement) {
        std::erase(line.streams, stream);
        if (!line.streams.empty()) {
            const StreamId loser = line.streams.front();
            if (!reacquisition_[loser]) {
                std::erase(line.streams, loser);
            }
            report(line, loser, SOUND_STREAM_FOCUS_STATE_RELEASED, statement);
        }
        line.streams.insert(line.streams.begin(), stream);
    }

    void leave(Line &line, StreamId stream, const FocusStatement &statement) {
        const bool held = line.held_by(stream);
        std::erase(line.streams, stream);
        if (held && !line.streams.empty()) {
            report(line, line.streams.front(), SOUND_STREAM_FOCUS_STATE_ACQUIRED, statement);
        }
    }

    void report(const Line &line, StreamId stream, sound_stream_focus_state_e state,
                const FocusStatement &statement) {
        events_.focus_changed(stream, {line.mask, state, SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA,
                                       statement.behavior, statement.extra_info});
    }

    FocusEvents &events_;
    std::mutex mutex_;
    std::array<Line, 2> lines_{
        {{SOUND_STREAM_FOCUS_FOR_PLAYBACK, {}}, {SOUND_STREAM_FOCUS_FOR_RECORDING, {}}}};
    std::map<StreamId, bool> reacquisition_;
};

}  // namespace

std::unique_ptr<Focus> create_builtin_focus(FocusEvents &events) {
    return std::make_unique<BuiltinFocus>(events);
}

}  // namespace host::sound
