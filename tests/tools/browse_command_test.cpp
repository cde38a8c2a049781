#include <gtest/gtest.h>
#include <sstream>

#include <obsidra/hc.h>

#include "commands.h"

namespace {

const std::string kHouse = std::string(OBSIDRA_SOURCE_DIR) + "/examples/house.hmf";

struct ToolRun {
    int code;
    std::string out, err;
};

ToolRun Tool(obsidra::tools::Command command, std::vector<std::string> args) {
    HC_Reset_System();
    std::ostringstream out, err;
    int code = command(args, out, err);
    return {code, out.str(), err.str()};
}

TEST(SceneTreeCommands, BrowsePrintsTheTreeAsTheBrowserLabelsIt) {
    ToolRun one = Tool(obsidra::tools::BrowseCommand, {kHouse, "--depth", "1"});
    ASSERT_EQ(one.code, 0) << one.err;
    EXPECT_EQ(one.out, "@FFFFFFFFFFFFFFFC\n  library\n  house\n  annotations\n");
    ToolRun deep = Tool(obsidra::tools::BrowseCommand, {kHouse, "--depth", "3"});
    EXPECT_NE(deep.out.find("\n    roof\n      STATIC_TREE\n      GEOMETRY\n      chimney\n"),
              std::string::npos)
        << deep.out;
    EXPECT_EQ(Tool(obsidra::tools::BrowseCommand, {}).code, 2);
}

TEST(SceneTreeCommands, SearchListsTheRevealedNodes) {
    ToolRun run = Tool(obsidra::tools::SearchCommand, {kHouse, "segment", "window"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "4 hits");
    EXPECT_NE(run.out.find("@FFFFFFFFFFFFFFFC > house > first floor > window\n"),
              std::string::npos);
    EXPECT_EQ(Tool(obsidra::tools::SearchCommand, {kHouse, "3", "zzz"}).out, "0 hits\n");
    EXPECT_EQ(Tool(obsidra::tools::SearchCommand, {kHouse, "colour", "x"}).code, 2);
}

TEST(SceneTreeCommands, InfoWritesTheInformationLinesOfASegment) {
    ToolRun run = Tool(obsidra::tools::InfoCommand, {kHouse, "house/roof"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "/include library/@FFFFFFFFFFFFFFFC/house/roof\n"
                       "Key: FFFFFFFFFFFFFFED\n"
                       "HEURISTICS: static model\n"
                       "7 faces, 2 triangles, 10 vertices\n"
                       "2 shells\n"
                       "Bounding type=cuboid: { (0.000000, 0.000000, 6.000000), (8.000000, "
                       "6.000000, 8.000000) }\n");
    EXPECT_EQ(Tool(obsidra::tools::InfoCommand, {kHouse, "no/such"}).code, 1);
}

} // namespace
