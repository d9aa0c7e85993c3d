#pragma once

#include <array>
#include <optional>
#include <string>
#include <unordered_map>

namespace host {

/// Red, green, blue, alpha; 0 to 255 each, not premultiplied.
using Rgba = std::array<int, 4>;

struct ThemeColor {
    Rgba color{};
    Rgba outline{};
    Rgba shadow{};
};
struct ThemeFont {
    std::string name;   ///< as fontconfig wants it: "Sans:style=Bold"
    int scale_percent;  ///< of the size that a theme file gives
};

using ColorTable = std::unordered_map<std::string, ThemeColor>;
using FontTable = std::unordered_map<std::string, ThemeFont>;

/// Read a table from its XML file. Nothing is fetched and no entity is expanded: a file with a
/// document type is refused, as is one of more than 256 KiB, one that isn't well formed and one
/// with anything in it that a table doesn't have. A refusal is logged with its reason.
[[nodiscard]] std::optional<ColorTable> read_color_table(const std::string &file);
[[nodiscard]] std::optional<FontTable> read_font_table(const std::string &file);

}  // namespace host
