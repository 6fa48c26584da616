// Feeds the fuzz targets their seeds and every input that ever found something.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "tests/fuzz/targets.h"

namespace demovex::fuzz {
namespace {

using Target = void (*)(const std::uint8_t*, std::size_t);
using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> Corpus(const char* target) {
    std::vector<Bytes> inputs;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(DEMOVEX_FUZZ_CORPUS) / target)) {
        std::ifstream file(entry.path(), std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

// A target ends the program when it finds something, so arriving at the end is the proof; the
// counts make sure that there was something to feed. Every input is also cut and mixed a little.
void Replay(const char* name, Target target, std::size_t at_least) {
    const std::vector<Bytes> inputs = Corpus(name);
    ASSERT_GE(inputs.size(), at_least) << "the corpus of " << name << " is missing";
    std::mt19937 random(1);
    for (const Bytes& input : inputs) {
        target(input.data(), input.size());
        for (int i = 0; i < 20 && !input.empty(); ++i) {
            Bytes changed = input;
            const std::size_t at = random() % changed.size();
            switch (random() % 3) {
                case 0:
                    changed.resize(at);
                    break;
                case 1:
                    changed[at] = static_cast<std::uint8_t>(random());
                    break;
                default:
                    std::rotate(changed.begin(), changed.begin() + static_cast<std::ptrdiff_t>(at),
                                changed.end());
            }
            target(changed.data(), changed.size());
        }
    }
}

TEST(FuzzReplay, ParameterText) {
    Replay("parameter_text", ParameterText, 10);
}

TEST(FuzzReplay, ParameterCells) {
    Replay("parameter_cells", ParameterCells, 5);
}

TEST(FuzzReplay, ArticleMaster) {
    Replay("article_master", ArticleMaster, 10);
}

TEST(FuzzReplay, Basket) {
    Replay("basket", Basket, 10);
}

}  // namespace
}  // namespace demovex::fuzz
