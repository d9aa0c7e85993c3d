#include "theme/table.h"

#include <dlog.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace host {
namespace {

constexpr std::size_t kMaxFileBytes = 256 * 1024;
constexpr int kMinScalePercent = 10;
constexpr int kMaxScalePercent = 1000;

/// A table that can't be used; the text says why.
class BadTable : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct XmlDocFree {
    void operator()(xmlDoc *doc) const { xmlFreeDoc(doc); }
};
using XmlDocPtr = std::unique_ptr<xmlDoc, XmlDocFree>;

struct XmlTextFree {
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using XmlTextPtr = std::unique_ptr<xmlChar, XmlTextFree>;

struct XmlContextFree {
    void operator()(xmlParserCtxt *context) const { xmlFreeParserCtxt(context); }
};
using XmlContextPtr = std::unique_ptr<xmlParserCtxt, XmlContextFree>;

std::string_view text_of(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}

std::string read_file(const std::string &file) {
    // Opening a pipe would wait for whoever writes into it.
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        throw BadTable("there is no such file");
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw BadTable("it can't be opened");
    }
    std::string content(kMaxFileBytes + 1, '\0');
    stream.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (stream.bad()) {
        throw BadTable("it can't be read");
    }
    content.resize(static_cast<std::size_t>(stream.gcount()));
    if (content.size() > kMaxFileBytes) {
        throw BadTable("it is too large");
    }
    // The parser would take a zero for the end, and what follows would go unseen.
    if (content.find('\0') != std::string::npos) {
        throw BadTable("it isn't text");
    }
    return content;
}

XmlDocPtr parse(const std::string &content) {
    xmlInitParser();
    const XmlContextPtr context(xmlNewParserCtxt());
    if (!context) {
        throw BadTable("memory is short");
    }
    XmlDocPtr doc(xmlCtxtReadMemory(context.get(), content.data(), static_cast<int>(content.size()),
                                    nullptr, nullptr,
                                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (!doc) {
        throw BadTable("it isn't well-formed XML");
    }
    // Without a document type there are no entities to expand and nothing to fetch.
    if (doc->intSubset != nullptr || doc->extSubset != nullptr) {
        throw BadTable("it has a document type");
    }
    return doc;
}

/// The attributes of one element, each taken once; what is left over is a fault.
class Attributes {
public:
    explicit Attributes(xmlNode *node) {
        for (const xmlAttr *attribute = node->properties; attribute != nullptr;
             attribute = attribute->next) {
            const XmlTextPtr value(xmlNodeListGetString(node->doc, attribute->children, 1));
            values_.emplace(text_of(attribute->name), value ? text_of(value.get()) : "");
        }
    }

    std::optional<std::string> take(const std::string &name) {
        auto found = values_.extract(name);
        if (found.empty()) {
            return std::nullopt;
        }
        return std::move(found.mapped());
    }

    std::string require(const std::string &name) {
        auto value = take(name);
        if (!value || value->empty()) {
            throw BadTable("an entry has no " + name);
        }
        return *value;
    }

    void expect_none_left() const {
        if (!values_.empty()) {
            throw BadTable("an entry has an unknown attribute " + values_.begin()->first);
        }
    }

private:
    std::unordered_map<std::string, std::string> values_;
};

int hex_byte(std::string_view digits) {
    int value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || value < 0) {
        throw BadTable("a colour isn't #RRGGBB or #RRGGBBAA");
    }
    return value;
}

Rgba parse_rgba(std::string_view text) {
    if ((text.size() != 7 && text.size() != 9) || text[0] != '#') {
        throw BadTable("a colour isn't #RRGGBB or #RRGGBBAA");
    }
    Rgba rgba{0, 0, 0, 255};
    for (std::size_t i = 0; 1 + i * 2 < text.size(); ++i) {
        rgba[i] = hex_byte(text.substr(1 + i * 2, 2));
    }
    return rgba;
}

ThemeColor parse_color(Attributes &attributes) {
    ThemeColor color;
    color.color = parse_rgba(attributes.require("rgba"));
    if (const auto outline = attributes.take("outline")) {
        color.outline = parse_rgba(*outline);
    }
    if (const auto shadow = attributes.take("shadow")) {
        color.shadow = parse_rgba(*shadow);
    }
    return color;
}

int parse_scale(const std::string &text) {
    int scale = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
    if (error != std::errc() || end != text.data() + text.size() || scale < kMinScalePercent ||
        scale > kMaxScalePercent) {
        throw BadTable("a scale isn't a number from 10 to 1000");
    }
    return scale;
}

ThemeFont parse_font(Attributes &attributes) {
    ThemeFont font{attributes.require("family"), 100};
    if (const auto style = attributes.take("style")) {
        font.name += ":style=" + *style;
    }
    if (const auto scale = attributes.take("scale")) {
        font.scale_percent = parse_scale(*scale);
    }
    return font;
}

template <typename Entry>
std::unordered_map<std::string, Entry> parse_entries(const xmlDoc &doc, std::string_view root_name,
                                                     std::string_view entry_name,
                                                     Entry (*parse_entry)(Attributes &)) {
    const xmlNode *root = xmlDocGetRootElement(&doc);
    if (root == nullptr || text_of(root->name) != root_name) {
        throw BadTable("its root isn't " + std::string(root_name));
    }
    std::unordered_map<std::string, Entry> table;
    for (xmlNode *node = root->children; node != nullptr; node = node->next) {
        if (node->type == XML_COMMENT_NODE || xmlIsBlankNode(node) != 0) {
            continue;
        }
        if (node->type != XML_ELEMENT_NODE || text_of(node->name) != entry_name ||
            node->children != nullptr) {
            throw BadTable("it holds something other than empty elements " +
                           std::string(entry_name));
        }
        Attributes attributes(node);
        const std::string code = attributes.require("code");
        Entry entry = parse_entry(attributes);
        attributes.expect_none_left();
        if (!table.emplace(code, std::move(entry)).second) {
            throw BadTable("the code " + code + " stands twice");
        }
    }
    return table;
}

template <typename Entry>
std::optional<std::unordered_map<std::string, Entry>> read_table(
    const std::string &file, std::string_view root_name, std::string_view entry_name,
    Entry (*parse_entry)(Attributes &)) {
    try {
        const XmlDocPtr doc = parse(read_file(file));
        return parse_entries(*doc, root_name, entry_name, parse_entry);
    } catch (const BadTable &reason) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The theme table %s is refused: %s",
                     file.c_str(), reason.what());
        return std::nullopt;
    }
}

}  // namespace

std::optional<ColorTable> read_color_table(const std::string &file) {
    return read_table<ThemeColor>(file, "colors", "color", parse_color);
}

std::optional<FontTable> read_font_table(const std::string &file) {
    return read_table<ThemeFont>(file, "fonts", "font", parse_font);
}

}  // namespace host
