// Feeds a fuzzer with changed inputs: FUZZER CORPUS FIRST-SEED COUNT CURRENT-FILE
//
// The input under way is in CURRENT-FILE, so that it is there when the process doesn't survive it.
// One line of JSON at the end says what came of the inputs.

#include "driver.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> read_corpus(const fs::path &folder) {
    std::vector<fs::path> names(fs::directory_iterator(folder), fs::directory_iterator{});
    std::sort(names.begin(), names.end());
    std::vector<std::string> inputs;
    for (const fs::path &name : names) {
        std::ifstream file(name, std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

void write(const fs::path &name, const std::string &data) {
    std::ofstream(name, std::ios::binary) << data;
}

void report(const std::map<std::string, int> &outcomes, int in_headers) {
    std::printf("{\"in_headers\": %d, \"outcomes\": {", in_headers);
    const char *comma = "";
    for (const auto &[name, count] : outcomes) {
        std::printf("%s\"%s\": %d", comma, name.c_str(), count);
        comma = ", ";
    }
    std::printf("}}\n");
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s CORPUS FIRST-SEED COUNT CURRENT-FILE\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> corpus = read_corpus(argv[1]);
    const auto first = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
    const auto count = static_cast<unsigned>(std::strtoul(argv[3], nullptr, 10));
    if (corpus.empty()) {
        std::fprintf(stderr, "%s: the corpus %s is empty\n", argv[0], argv[1]);
        return 2;
    }
    std::map<std::string, int> outcomes;
    int in_headers = 0;
    fuzz::begin();
    for (unsigned seed = first; seed < first + count; ++seed) {
        std::string input = corpus[seed % corpus.size()];
        fuzz::Mutator mutator(seed);
        in_headers += mutator.mutate(input, fuzz::regions_of(input)) ? 1 : 0;
        write(argv[4], input);
        ++outcomes[fuzz::take(input)];
    }
    fuzz::end();
    report(outcomes, in_headers);
    return 0;
}
