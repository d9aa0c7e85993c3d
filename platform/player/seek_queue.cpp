#include "player/seek_queue.h"

#include <utility>

namespace host {

std::vector<SeekRequest> SeekQueue::take_superseded() {
    std::vector<SeekRequest> superseded;
    if (under_way_) {
        return superseded;
    }
    while (requests_.size() > 1) {
        superseded.push_back(requests_.front());
        requests_.pop_front();
    }
    return superseded;
}

std::optional<SeekRequest> SeekQueue::begin() {
    if (under_way_ || requests_.empty()) {
        return std::nullopt;
    }
    under_way_ = true;
    return requests_.front();
}

std::optional<SeekRequest> SeekQueue::finish() {
    if (!under_way_) {
        return std::nullopt;
    }
    under_way_ = false;
    const SeekRequest done = requests_.front();
    requests_.pop_front();
    return done;
}

std::vector<SeekRequest> SeekQueue::take_all() {
    under_way_ = false;
    std::vector<SeekRequest> all(requests_.begin(), requests_.end());
    requests_.clear();
    return all;
}

}  // namespace host
