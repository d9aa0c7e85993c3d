#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "control/request.h"

namespace host::control {

/// A condition over the state: comparisons joined with "&&", such as
/// "player==playing && position>=5000". A comparison is KEY OP VALUE; KEY is a path of names
/// ("popup.text", with or without "state." before it), OP one of == != >= <= > <, VALUE a number,
/// true, false, null or a text, which may stand in double quotes. Compared with true or false, an
/// object counts as true and null as false.
class Condition {
public:
    /// @throws UsageError for what can't be a condition, as is an order of what has none
    explicit Condition(std::string_view text);

    /// @throws UsageError when `state` lacks a name that the condition begins a path with
    void check_names(const Json &state) const;
    /// Throws nothing, since it is asked from the main loop, too. What `state` lacks is null.
    [[nodiscard]] bool holds(const Json &state) const;

private:
    enum class Operator { equal, unequal, at_least, at_most, above, below };
    struct Comparison {
        std::vector<std::string> path;
        Operator op = Operator::equal;
        Json value;
    };

    static Comparison parse(std::string_view text);
    static bool holds(const Comparison &comparison, const Json &state);

    std::vector<Comparison> comparisons_;
};

}  // namespace host::control
