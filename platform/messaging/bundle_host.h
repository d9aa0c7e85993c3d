#pragma once

#include <bundle.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

/// The texts under their keys. An array keeps the pointers that it lends out beside its texts; map
/// nodes never move, so what is lent stays valid until its key goes.
struct _bundle_t {
    struct Array {
        explicit Array(std::vector<std::string> texts_);
        Array(const Array &other) : Array(other.texts) {}
        Array &operator=(const Array &) = delete;
        std::vector<std::string> texts;
        std::vector<const char *> pointers;
    };
    using Value = std::variant<std::string, Array>;

    std::map<std::string, Value, std::less<>> values;
};
