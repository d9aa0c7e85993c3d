#pragma once

#include <gio/gio.h>

#include <array>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <string>

#include "common/gobject.h"
#include "sound/focus.h"

namespace host::sound {

/// One stream's place among all that want the focus: a member of the session bus of its own, so
/// that streams of one process meet like those of two.
///
/// The holder of a focus is the owner of its bus name. A taker first tells the owner what it states
/// about itself, then replaces it; the bus keeps the loser in the name's queue. Without a bus, or
/// when it has gone, the focus is always granted.
///
/// Thread: any but the service thread, on which it hears of changes.
class FocusSeat : public std::enable_shared_from_this<FocusSeat> {
public:
    FocusSeat(StreamId stream, FocusEvents &events);
    ~FocusSeat();
    FocusSeat(const FocusSeat &) = delete;
    FocusSeat &operator=(const FocusSeat &) = delete;

    /// Begins to join the bus. The first operation waits for the end of that.
    void join();
    /// Gives back what is held and leaves the bus. The last call.
    void leave();

    // As in Focus.
    [[nodiscard]] int acquire(int mask, const FocusStatement &statement);
    [[nodiscard]] int release(int mask, const FocusStatement &statement);
    [[nodiscard]] int held();
    void set_reacquisition(bool enable);

private:
    /// What the stream itself is about to do, which isn't reported.
    enum class Move { none, taking, giving };
    struct Chair {
        const char *name;
        sound_stream_focus_mask_e mask;
        bool held = false;  ///< as the bus has told so far
        Move move = Move::none;
    };
    using Chairs = std::array<Chair, 2>;

    [[nodiscard]] bool on_bus();
    void connect();
    void disconnect();
    void set_move(Chair &chair, Move move);
    /// Ends a move: what the bus told before now is known when this returns.
    void end_move(Chair &chair);
    [[nodiscard]] bool holds(const Chair &chair);
    [[nodiscard]] bool keep_or_give_up(Chair &chair);

    [[nodiscard]] int take(Chair &chair, const FocusStatement &statement);
    [[nodiscard]] int give(Chair &chair, const FocusStatement &statement);
    void tell(const char *whom, const FocusStatement &statement);
    [[nodiscard]] std::string next_in_line(const Chair &chair);
    [[nodiscard]] GVariantPtr call_bus(const char *method, GVariant *parameters);

    // Service thread.
    void owner_changed(const std::string &name, const std::string &before,
                       const std::string &after);
    void stated(const std::string &who, FocusStatement statement);

    const StreamId stream_;
    FocusEvents &events_;

    std::mutex calls_mutex_;  ///< one operation at a time; held while the bus is asked
    std::future<GObjectPtr<GDBusConnection>> joining_;
    GObjectPtr<GDBusConnection> bus_;
    guint object_ = 0;
    guint subscription_ = 0;

    std::mutex mutex_;  ///< guards what follows; never held while waiting
    std::string own_name_;
    Chairs chairs_;
    bool reacquisition_ = true;
    std::deque<std::pair<std::string, FocusStatement>> statements_;  ///< by bus member, newest last
};

}  // namespace host::sound
