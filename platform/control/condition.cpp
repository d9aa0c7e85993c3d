#include "control/condition.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host::control {
namespace {

std::string_view trim(std::string_view text) {
    const auto begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

Json parse_value(std::string_view text) {
    const Json value = Json::parse(text, nullptr, false);
    // What isn't JSON is a text without quotes.
    return value.is_discarded() || value.is_structured() ? Json(text) : value;
}

std::vector<std::string> parse_path(std::string_view text) {
    constexpr std::string_view kRoot = "state.";
    if (text.starts_with(kRoot)) {
        text.remove_prefix(kRoot.size());
    }
    std::vector<std::string> path;
    for (;;) {
        const auto dot = std::min(text.find('.'), text.size());
        if (dot == 0) {
            throw UsageError("a condition is KEY OP VALUE, such as position>=5000");
        }
        path.emplace_back(text.substr(0, dot));
        if (dot == text.size()) {
            return path;
        }
        text.remove_prefix(dot + 1);
    }
}

}  // namespace

Condition::Condition(std::string_view text) {
    constexpr std::string_view kAnd = "&&";
    for (;;) {
        const auto end = std::min(text.find(kAnd), text.size());
        comparisons_.push_back(parse(trim(text.substr(0, end))));
        if (end == text.size()) {
            return;
        }
        text.remove_prefix(end + kAnd.size());
    }
}

Condition::Comparison Condition::parse(std::string_view text) {
    // Those of two characters first: "<" is the beginning of "<=".
    static constexpr std::array<std::pair<std::string_view, Operator>, 6> kOperators{{
        {"==", Operator::equal},
        {"!=", Operator::unequal},
        {">=", Operator::at_least},
        {"<=", Operator::at_most},
        {">", Operator::above},
        {"<", Operator::below},
    }};
    const auto place = text.find_first_of("=!<>");
    if (place != std::string_view::npos) {
        for (const auto &[sign, op] : kOperators) {
            if (text.substr(place).starts_with(sign)) {
                const auto value = trim(text.substr(place + sign.size()));
                if (value.empty()) {
                    break;
                }
                Comparison comparison{parse_path(trim(text.substr(0, place))), op,
                                      parse_value(value)};
                if (op != Operator::equal && op != Operator::unequal &&
                    !comparison.value.is_number()) {
                    throw UsageError("only numbers have an order");
                }
                return comparison;
            }
        }
    }
    throw UsageError("a condition is KEY OP VALUE, such as position>=5000");
}

void Condition::check_names(const Json &state) const {
    for (const Comparison &comparison : comparisons_) {
        if (!state.contains(comparison.path.front())) {
            throw UsageError("the state has no '" + comparison.path.front() + "'");
        }
    }
}

bool Condition::holds(const Json &state) const {
    return std::all_of(comparisons_.begin(), comparisons_.end(),
                       [&state](const auto &comparison) { return holds(comparison, state); });
}

bool Condition::holds(const Comparison &comparison, const Json &state) {
    Json actual = state;
    for (const std::string &name : comparison.path) {
        // Below an absent part there is nothing, which is a state like any other.
        actual = actual.is_object() && actual.contains(name) ? Json(actual[name]) : Json();
    }
    if (comparison.value.is_boolean() && !actual.is_boolean()) {
        actual = !actual.is_null();
    }
    switch (comparison.op) {
    case Operator::equal:
        return actual == comparison.value;
    case Operator::unequal:
        return actual != comparison.value;
    default:
        break;
    }
    if (!actual.is_number()) {
        return false;
    }
    switch (comparison.op) {
    case Operator::at_least:
        return actual >= comparison.value;
    case Operator::at_most:
        return actual <= comparison.value;
    case Operator::above:
        return actual > comparison.value;
    default:
        return actual < comparison.value;
    }
}

}  // namespace host::control
