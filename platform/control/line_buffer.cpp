#include "control/line_buffer.h"

namespace host::control {

void LineBuffer::append(std::string_view bytes) {
    if (!overflowed_) {
        bytes_.append(bytes);
    }
}

std::optional<std::string> LineBuffer::next() {
    if (overflowed_) {
        return std::nullopt;
    }
    const auto end = bytes_.find('\n');
    if (end == std::string::npos ? bytes_.size() > limit_ : end > limit_) {
        overflowed_ = true;
        bytes_.clear();
        return std::nullopt;
    }
    if (end == std::string::npos) {
        return std::nullopt;
    }
    std::string line = bytes_.substr(0, end);
    bytes_.erase(0, end + 1);
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

}  // namespace host::control
