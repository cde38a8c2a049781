// Random lines through the fuzzer's entry point, so that builds without libFuzzer run it too.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "attribute_set_feed.h"

namespace {

// Lines of the shapes descriptors read, for random edits to start from.
const std::vector<std::string> kShapes = {
    "faces=red,edges=(blue)",
    "Pos: 0 0 5 Target: 0 0 0 Up: 0 1 0 Width: 2 Height: 2 Near Limit: 0 Projection:stretched",
    "(Camera (0 0 5) (0 0 0) (0 1 0) 2 2 \"perspective\")",
    "Loops:1 Total:4 Specs:world",
    "((night) ? (prune segment = segment)), ((day) ? (highlight = color=red))",
    "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1",
    "-1 1 -1 1",
    "9223372036854775807",
    "2.5 pixels",
};

std::string RandomLine(std::mt19937& random) {
    std::uniform_int_distribution<int> byte(0, 255), coin(0, 2);
    std::string line;
    if (coin(random) == 0) {
        std::uniform_int_distribution<size_t> length(0, 300);
        for (size_t n = length(random); n > 0; --n)
            line.push_back(static_cast<char>(byte(random)));
        return line;
    }
    line = kShapes[std::uniform_int_distribution<size_t>(0, kShapes.size() - 1)(random)];
    const std::string punctuation = "()?,=:\"- <>{}\n";
    for (int edits = std::uniform_int_distribution<int>(0, 6)(random); edits > 0; --edits) {
        size_t at = std::uniform_int_distribution<size_t>(0, line.size())(random);
        switch (coin(random)) {
        case 0:
            line.insert(at, 1,
                        punctuation[std::uniform_int_distribution<size_t>(0, punctuation.size() -
                                                                                 1)(random)]);
            break;
        case 1:
            if (at < line.size()) line.erase(at, 1);
            break;
        default:
            line.insert(at,
                        std::string(std::uniform_int_distribution<size_t>(0, 5000)(random), 'x'));
            break;
        }
    }
    return line;
}

TEST(AttributeSetReplayTest, RandomLinesNeitherCrashNorOverrunTheLineBound) {
    HC_Define_Error_Handler([](const char*, const char*) {});
    std::mt19937 random(20240611);
    for (int i = 0; i < 400; ++i) {
        std::string line = RandomLine(random);
        EXPECT_LT(FeedAttributeSetters(line), size_t(HC_TEXT_MAX)) << line.substr(0, 200);
    }
    HC_Define_Error_Handler(nullptr);
    HC_Reset_System();
}

} // namespace
