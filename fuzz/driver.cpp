// Feeds a fuzzer with changed inputs: FUZZER CORPUS FIRST-SEED COUNT CURRENT-FILE
//
// The input under way is in CURRENT-FILE, so that it is there when the process doesn't survive it.
// One line for each input says what came of it: seed, changes, those in headers, outcome.
// With COUNT 0 the only input is CURRENT-FILE's as it is, to look at a finding again.

#include "driver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "mutation.h"

namespace {

namespace fs = std::filesystem;

std::string read(const fs::path &name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> read_corpus(const fs::path &folder) {
    std::vector<fs::path> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            names.push_back(entry.path());
        }
    }
    std::sort(names.begin(), names.end());
    std::vector<std::string> inputs;
    std::transform(names.begin(), names.end(), std::back_inserter(inputs), read);
    return inputs;
}

void write(const fs::path &name, const std::string &data) {
    std::ofstream(name, std::ios::binary) << data;
}

void take_changed(const std::vector<std::string> &corpus, unsigned first, unsigned count,
                  const fs::path &current) {
    for (unsigned seed = first; seed < first + count; ++seed) {
        std::string input = corpus[seed % corpus.size()];
        fuzz::Mutator mutator(seed);
        const fuzz::Changes changes = mutator.mutate(input, fuzz::regions_of);
        if (mutator.below(2) == 0) {
            fuzz::mend(input);
        }
        write(current, input);
        std::printf("%u\t%d\t%d\t", seed, changes.all, changes.in_headers);
        std::fflush(stdout);
        std::printf("%s\n", fuzz::take(input).c_str());
        std::fflush(stdout);
    }
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
    // A fuzzer goes to a folder of its own.
    const fs::path current = fs::absolute(argv[4]);
    if (count == 0 && !fs::is_regular_file(current)) {
        std::fprintf(stderr, "%s: the input %s can't be read\n", argv[0], argv[4]);
        return 2;
    }
    fuzz::begin(argv[1]);
    // What is loaded on first use stays: each input as it is comes before the changed ones.
    for (const std::string &input : corpus) {
        (void)fuzz::take(input);
    }
    fuzz::loaded();
    if (count == 0) {
        std::printf("%s\n", fuzz::take(read(current)).c_str());
    } else {
        take_changed(corpus, first, count, current);
    }
    const std::string left = fuzz::end();
    if (!left.empty()) {
        std::fprintf(stderr, "left: %s\n", left.c_str());
        return 1;
    }
    return 0;
}
