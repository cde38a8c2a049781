#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include <obsidra/hc.h>

#include "commands.h"

namespace {

const std::string kExample = std::string(OBSIDRA_SOURCE_DIR) + "/examples/house.hmf";

struct Outcome {
    int code;
    std::string out, err;
};

Outcome Tool(obsidra::tools::Command command, std::vector<std::string> args) {
    HC_Reset_System();
    std::ostringstream out, err;
    int code = command(args, out, err);
    return {code, out.str(), err.str()};
}

TEST(SceneTool, TreePrintsEverySegmentWithItsKeyAndCounts) {
    Outcome run = Tool(obsidra::tools::TreeCommand, {kExample});
    ASSERT_EQ(run.code, 0) << run.err;
    std::istringstream lines(run.out);
    std::string first;
    std::getline(lines, first);
    EXPECT_EQ(first, "/  [FFFFFFFFFFFFFFFE]  segment 3");
    EXPECT_NE(run.out.find("\n    roof  ["), std::string::npos);
    EXPECT_NE(run.out.find("]  static model 1, segment 1, shell 1, heuristics 1\n"),
              std::string::npos);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 19);

    Outcome shallow = Tool(obsidra::tools::TreeCommand, {kExample, "--depth", "1"});
    EXPECT_EQ(std::count(shallow.out.begin(), shallow.out.end(), '\n'), 4);
}

TEST(SceneTool, ConvertWritesAMetafileThatReadsBackTheSame) {
    auto file = std::filesystem::temp_directory_path() / "obsidra_convert.hmf";
    ASSERT_EQ(Tool(obsidra::tools::ConvertCommand, {kExample, file.string()}).code, 0);
    Outcome original = Tool(obsidra::tools::TreeCommand, {kExample});
    Outcome converted = Tool(obsidra::tools::TreeCommand, {file.string()});
    std::filesystem::remove(file);
    EXPECT_EQ(converted.out, original.out);
}

TEST(SceneTool, BadFilesAndArgumentsGiveAnErrorNotACrash) {
    auto file = std::filesystem::temp_directory_path() / "obsidra_broken.hmf";
    std::ofstream(file) << "(Segment \"a\"\n  (Shell (Points 1 2)))\n";
    Outcome broken = Tool(obsidra::tools::TreeCommand, {file.string()});
    std::filesystem::remove(file);
    EXPECT_EQ(broken.code, 1);
    EXPECT_NE(broken.err.find(": line 2, column 10: points need three coordinates each"),
              std::string::npos)
        << broken.err;
    EXPECT_EQ(Tool(obsidra::tools::TreeCommand, {"/no/such.hmf"}).code, 1);
    EXPECT_EQ(Tool(obsidra::tools::TreeCommand, {}).code, 2);
    EXPECT_EQ(Tool(obsidra::tools::ConvertCommand, {kExample}).code, 2);
}

TEST(SceneTool, TheBundledShowcaseHoldsEveryKindOfGeometryAndReadsBackAsWritten) {
    const std::string showcase = std::string(OBSIDRA_SOURCE_DIR) + "/examples/showcase.hmf";
    Outcome run = Tool(obsidra::tools::TreeCommand, {showcase});
    ASSERT_EQ(run.code, 0) << run.err;
    std::set<std::string> kinds;
    HC_Begin_Contents_Search("/showcase/...", "geometry");
    char type[HC_TEXT_MAX];
    HC_KEY key;
    while (HC_Find_Contents(type, &key))
        kinds.insert(type);
    HC_End_Contents_Search();
    EXPECT_EQ(kinds.size(), 26u);

    auto file = std::filesystem::temp_directory_path() / "obsidra_showcase.hmf";
    ASSERT_EQ(Tool(obsidra::tools::ShowcaseCommand, {file.string()}).code, 0);
    std::ifstream written(file), bundled(showcase);
    std::stringstream a, b;
    a << written.rdbuf();
    b << bundled.rdbuf();
    std::filesystem::remove(file);
    EXPECT_EQ(a.str(), b.str()) << "examples/showcase.hmf is what the showcase command writes";
}

TEST(SceneTreeCommands, BrowsePrintsTheTreeAsTheBrowserLabelsIt) {
    Outcome one = Tool(obsidra::tools::BrowseCommand, {kExample, "--depth", "1"});
    ASSERT_EQ(one.code, 0) << one.err;
    EXPECT_EQ(one.out, "@FFFFFFFFFFFFFFFC\n  library\n  house\n  annotations\n");
    Outcome deep = Tool(obsidra::tools::BrowseCommand, {kExample, "--depth", "3"});
    EXPECT_NE(deep.out.find("\n    roof\n      STATIC_TREE\n      GEOMETRY\n      chimney\n"),
              std::string::npos)
        << deep.out;
    EXPECT_EQ(Tool(obsidra::tools::BrowseCommand, {}).code, 2);
}

TEST(SceneTreeCommands, SearchListsTheRevealedNodes) {
    Outcome run = Tool(obsidra::tools::SearchCommand, {kExample, "segment", "window"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "4 hits");
    EXPECT_NE(run.out.find("@FFFFFFFFFFFFFFFC > house > first floor > window\n"),
              std::string::npos);
    EXPECT_EQ(Tool(obsidra::tools::SearchCommand, {kExample, "3", "zzz"}).out, "0 hits\n");
    EXPECT_EQ(Tool(obsidra::tools::SearchCommand, {kExample, "colour", "x"}).code, 2);
}

TEST(SceneTreeCommands, InfoWritesTheInformationLinesOfASegment) {
    Outcome run = Tool(obsidra::tools::InfoCommand, {kExample, "house/roof"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "/include library/@FFFFFFFFFFFFFFFC/house/roof\n"
                       "Key: FFFFFFFFFFFFFFED\n"
                       "HEURISTICS: static model\n"
                       "7 faces, 2 triangles, 10 vertices\n"
                       "2 shells\n"
                       "Bounding type=cuboid: { (0.000000, 0.000000, 6.000000), (8.000000, "
                       "6.000000, 8.000000) }\n");
    EXPECT_EQ(Tool(obsidra::tools::InfoCommand, {kExample, "no/such"}).code, 1);
}

} // namespace
