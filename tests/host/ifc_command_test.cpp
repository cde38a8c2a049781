#include <sstream>

#include "commands.h"
#include "ifc_test.h"

namespace obsidra::host::ifc::testing {
namespace {

class IfcCommandTest : public IfcTest {
protected:
    int Run(const std::vector<std::string>& args) {
        m_out.str("");
        m_err.str("");
        return tools::IfcCommand(args, m_out, m_err);
    }

    std::ostringstream m_out;
    std::ostringstream m_err;
};

TEST_F(IfcCommandTest, PrintsFloorsAndCategoriesAndTheSceneTree) {
    ASSERT_EQ(Run({HousePath(), "--tree"}), 0) << m_err.str();
    const std::string out = m_out.str();
    for (const char* line : {
             "project: IfcOpenHouse (IFC4), 41 components, 35 shells, under /ifc\n",
             "floors, from the lowest up:\n  楼层1  elevation 0.000 m  height ",
             "\n  无楼层  1 components\n",
             "\n  建筑  39\n",
             "\n    杆件  20\n      竖梃  20\n",
             "\nwarnings: 0\n",
             "\nifc  [",
             "\n    3g46_woBL6sugXeY5_WP6n  [",
             "]  ifc class=IfcWallStandardCase,name=South wall  shells 1\n",
         })
        EXPECT_NE(out.find(line), std::string::npos) << line << "\nin\n" << out;
    EXPECT_EQ(m_err.str(), "");
}

TEST_F(IfcCommandTest, ReportsBadFilesAndBadArguments) {
    EXPECT_EQ(Run({OBSIDRA_TEST_DATA "/missing.ifc"}), 1);
    EXPECT_NE(m_err.str().find("obsidra-scene: cannot open"), std::string::npos) << m_err.str();
    EXPECT_EQ(Run({HousePath(), "--segment", "relative"}), 1);
    EXPECT_NE(m_err.str().find("absolute"), std::string::npos) << m_err.str();
    EXPECT_EQ(Run({}), 2);
    EXPECT_EQ(Run({HousePath(), "--bogus"}), 2);
    EXPECT_EQ(Run({HousePath(), HousePath()}), 2);
    EXPECT_NE(m_err.str().find("usage: obsidra-scene ifc FILE.ifc"), std::string::npos);
    EXPECT_EQ(m_out.str(), "");
}

} // namespace
} // namespace obsidra::host::ifc::testing
