// What comes from outside beside media: launch requests, options, control lines, theme tables, key
// files, catalogues. The first byte of an input says which it is.

#include <gio/gio.h>
#include <libintl.h>
#include <unistd.h>
#include <utils_i18n.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "app/command_line.h"
#include "common/gobject.h"
#include "control/condition.h"
#include "control/request.h"
#include "driver.h"
#include "i18n/locale.h"
#include "messaging/app_control_host.h"
#include "player/media_source.h"
#include "settings/preference_value.h"
#include "settings/stored_key_file.h"
#include "theme/table.h"

namespace {

namespace fs = std::filesystem;

constexpr char kLanguage[] = "fr";

fs::path folder;

std::string launch(const std::string &text) {
    const std::string uri =
        host::is_uri(text.c_str()) ? host::decode_local_uri(text.c_str()) : text;
    std::string why;
    const bool named = host::MediaSource::parse(uri.c_str(), why).has_value();
    // The same bytes as another process's message on the bus.
    const host::GVariantPtr message(g_variant_ref_sink(g_variant_new_from_data(
        G_VARIANT_TYPE_VARDICT, text.data(), text.size(), FALSE, nullptr, nullptr)));
    const host::GVariantPtr normal(g_variant_get_normal_form(message.get()));
    const host::AppControlPtr request = host::request_from_variant(normal.get());
    return named && request ? "named" : "refused";
}

std::string options(const std::string &text) {
    std::vector<std::string> words{"tessel"};
    std::istringstream lines(text);
    for (std::string word; std::getline(lines, word);) {
        words.push_back(word.c_str());
    }
    std::vector<const char *> pointers;
    pointers.reserve(words.size());
    for (const std::string &word : words) {
        pointers.push_back(word.c_str());
    }
    const auto parsed =
        host::parse_command_line(static_cast<int>(pointers.size()), pointers.data());
    const auto *end = std::get_if<host::CommandLineEnd>(&parsed);
    return end == nullptr ? "started" : "status " + std::to_string(end->status);
}

std::string control(const std::string &text) {
    try {
        const host::control::Words words = host::control::parse_request(text);
        if (words.front() == "wait" && words.size() > 1) {
            const host::control::Condition condition(words[1]);
        }
        return "understood";
    } catch (const host::control::RequestError &) {
        return "refused";
    }
}

std::string table(const std::string &text) {
    const fs::path file = folder / "table.xml";
    std::ofstream(file, std::ios::binary) << text;
    return host::read_color_table(file) || host::read_font_table(file) ? "read" : "refused";
}

std::string key_file(const std::string &text) {
    const fs::path file = folder / "values.ini";
    std::ofstream(file, std::ios::binary) << text;
    host::StoredKeyFile stored(folder, "values.ini");
    const host::KeyFilePtr content = stored.read();
    const bool sound = fs::exists(file);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto equals = line.find('=');
        (void)host::decode_preference(equals == std::string::npos ? line : line.substr(equals + 1));
    }
    fs::remove_all(folder);
    fs::create_directories(folder);
    return content && sound ? "read" : "set aside";
}

// As the program binds and asks; a catalogue is read once per process and name.
std::string catalogue(const std::string &text) {
    static int catalogues = 0;
    constexpr std::array kMessages = {"WDS_MUSIC_OPT_PAUSE",  "WDS_MUSIC_OPT_PLAY", "IDS_PLAIN",
                                      "IDS_MUSIC_OPT_VOLUME", "IDS_NOT_THERE",      "a"};
    const fs::path locales = folder / ("locale" + std::to_string(++catalogues));
    const fs::path messages = locales / kLanguage / "LC_MESSAGES";
    fs::create_directories(messages);
    std::ofstream(messages / "tessel.mo", std::ios::binary) << text;
    bindtextdomain("tessel", locales.c_str());
    std::size_t translated = 0;
    for (const char *message : kMessages) {
        const std::string found = i18n_get_text(message);
        translated += found != message ? 1 : 0;
    }
    fs::remove_all(locales);
    return translated == 0 ? "nothing translated" : "read";
}

std::uint32_t number_at(const std::string &text, std::size_t place) {
    std::uint32_t value = 0;
    for (std::size_t index = 4; index-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(text[place + index]);
    }
    return value;
}

/// Its header, and where it says that its tables are.
std::vector<fuzz::Region> regions_of_catalogue(const std::string &input) {
    constexpr std::size_t kHead = 28;
    constexpr std::size_t kEntry = 8;
    using fuzz::Part;
    if (input.size() <= 1 + kHead) {
        return {};
    }
    std::vector<fuzz::Region> regions{{1, 1 + kHead, Part::table, {}}};
    const std::size_t entries = number_at(input, 1 + 8);
    for (const std::size_t place : {1 + 12, 1 + 16, 1 + 24}) {
        const std::size_t begin = 1 + number_at(input, place);
        const std::size_t end = std::min(input.size(), begin + entries * kEntry);
        if (begin < end) {
            regions.push_back({begin, end, Part::table, {}});
        }
    }
    return regions;
}

}  // namespace

namespace fuzz {

void begin(const std::string &) {
    folder = fs::temp_directory_path() / ("inputs-fuzz-" + std::to_string(getpid()));
    fs::create_directories(folder);
    setenv("LANGUAGE", kLanguage, 1);
    host::start_locale();
}

std::vector<Region> regions_of(const std::string &input) {
    if (input.size() < 2) {
        return {};
    }
    if (input.front() == 'G') {
        return regions_of_catalogue(input);
    }
    // Text from the second byte on.
    return {{1, input.size(), Part::text, {}}};
}

std::string take(const std::string &input) {
    if (input.empty()) {
        return "empty";
    }
    const std::string text = input.substr(1);
    switch (input.front()) {
    case 'L':
        return "launch request: " + launch(text);
    case 'O':
        return "options: " + options(text);
    case 'C':
        return "control line: " + control(text);
    case 'T':
        return "theme table: " + table(text);
    case 'K':
        return "key file: " + key_file(text);
    case 'G':
        return "catalogue: " + catalogue(text);
    default:
        return "no kind";
    }
}

void mend(std::string &) {}

void loaded() {}

std::string end() {
    fs::remove_all(folder);
    return "";
}

}  // namespace fuzz
