// What comes from outside beside media: launch requests, options, control lines, theme tables, key
// files. The first byte of an input says which it is.

#include <gio/gio.h>
#include <unistd.h>

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
#include "messaging/app_control_host.h"
#include "player/media_source.h"
#include "settings/preference_value.h"
#include "settings/stored_key_file.h"
#include "theme/table.h"

namespace {

namespace fs = std::filesystem;

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

}  // namespace

namespace fuzz {

void begin(const std::string &) {
    folder = fs::temp_directory_path() / ("inputs-fuzz-" + std::to_string(getpid()));
    fs::create_directories(folder);
}

std::vector<Region> regions_of(const std::string &input) {
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
