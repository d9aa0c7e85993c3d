#include "script_lines.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace tesselctl {
namespace {

constexpr std::string_view kBlanks = " \t\r";

bool is_blank(char c) {
    return kBlanks.find(c) != std::string_view::npos;
}

class WordReader {
public:
    WordReader(int number, std::string_view line) : number_(number), rest_(line) {}

    std::optional<std::string> next() {
        skip_blanks();
        if (rest_.empty()) {
            return std::nullopt;
        }
        std::string word;
        while (!rest_.empty() && !is_blank(rest_.front())) {
            if (rest_.front() == '"') {
                read_quoted(word);
            } else {
                word += take();
            }
        }
        return word;
    }

private:
    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    void skip_blanks() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    }

    void read_quoted(std::string &word) {
        take();
        while (!rest_.empty()) {
            char c = take();
            if (c == '"') {
                return;
            }
            if (c == '\\' && !rest_.empty() && (rest_.front() == '"' || rest_.front() == '\\')) {
                c = take();
            }
            word += c;
        }
        throw ScriptError(number_, "a quote has no end");
    }

    int number_;
    std::string_view rest_;
};

}  // namespace

std::vector<ScriptLine> read_script(std::istream &script) {
    std::vector<ScriptLine> lines;
    std::string line;
    for (int number = 1; std::getline(script, line); ++number) {
        if (line.find('\0') != std::string::npos) {
            throw ScriptError(number, "it holds a NUL character");
        }
        const std::size_t first = line.find_first_not_of(kBlanks);
        if (first == std::string::npos || line[first] == '#') {
            continue;
        }
        ScriptLine read{number, {}};
        WordReader words(number, line);
        while (auto word = words.next()) {
            read.words.push_back(std::move(*word));
        }
        lines.push_back(std::move(read));
    }
    return lines;
}

std::string to_script_line(const std::vector<std::string> &words) {
    std::string line;
    for (const std::string &word : words) {
        line += line.empty() ? "" : " ";
        const bool plain = !word.empty() && word.front() != '#' &&
                           word.find_first_of(" \t\r\"") == std::string::npos;
        if (plain) {
            line += word;
            continue;
        }
        line += '"';
        for (const char c : word) {
            if (c == '"' || c == '\\') {
                line += '\\';
            }
            line += c;
        }
        line += '"';
    }
    return line;
}

}  // namespace tesselctl
