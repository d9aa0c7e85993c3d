#pragma once

#include <player.h>

#include <deque>
#include <optional>
#include <vector>

namespace host {

/// One seek, as accepted.
struct SeekRequest {
    int target_ms = 0;
    bool accurate = false;
    player_seek_completed_cb callback = nullptr;  ///< null: nobody is told
    void *user_data = nullptr;
};

/// The accepted seeks that have not completed, oldest first. At most one is under way; of those
/// behind it only the newest is worth doing. Not locked: the owner is.
class SeekQueue {
public:
    void accept(const SeekRequest &request) { requests_.push_back(request); }

    /// Where the position is said to be, while any seek is waiting or under way.
    [[nodiscard]] std::optional<int> target() const {
        if (requests_.empty()) {
            return std::nullopt;
        }
        return requests_.back().target_ms;
    }
    [[nodiscard]] bool empty() const { return requests_.empty(); }
    [[nodiscard]] bool under_way() const { return under_way_; }

    /// Takes out the waiting seeks that a newer one supersedes; they complete in this order.
    /// Nothing while a seek is under way, since that one completes first.
    [[nodiscard]] std::vector<SeekRequest> take_superseded();
    /// The seek to do next, which is under way from now on; none while one is.
    [[nodiscard]] std::optional<SeekRequest> begin();
    /// The one under way has come to nothing and waits again.
    void put_back() { under_way_ = false; }
    /// Takes out the one under way; none if there is none.
    [[nodiscard]] std::optional<SeekRequest> finish();
    /// Takes out all, in order.
    [[nodiscard]] std::vector<SeekRequest> take_all();

private:
    std::deque<SeekRequest> requests_;
    bool under_way_ = false;
};

}  // namespace host
