#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host::control {

/// Cuts what arrives in pieces into lines. A line that grows beyond the limit spoils the buffer for
/// good, since nobody can tell any more where the next one begins.
class LineBuffer {
public:
    explicit LineBuffer(std::size_t limit) : limit_(limit) {}

    void append(std::string_view bytes);
    /// The next whole line, without its end ("\n" or "\r\n"); none when there is no whole one.
    [[nodiscard]] std::optional<std::string> next();
    /// Bytes that wait to be taken.
    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    /// Whether a line, whole or not, was longer than the limit.
    [[nodiscard]] bool overflowed() const { return overflowed_; }

private:
    std::size_t limit_;
    std::string bytes_;
    bool overflowed_ = false;
};

}  // namespace host::control
