#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

#include "host/ifc/ifc_mapping.h"

namespace obsidra::host::ifc {
namespace {

// The table as a whole: every rule names a known major category and a minor one, no class
// has two rules, and a minor category's name belongs to one major category only, since the
// statistics dialog counts components by minor name alone.
TEST(IfcMappingTest, TheTableIsConsistent) {
    std::set<std::string> majors;
    for (const MajorCategory& major : MajorCategories()) {
        EXPECT_TRUE(majors.insert(std::string(major.name)).second) << major.name;
        EXPECT_GT(major.colour.alpha, 0.0f) << major.name;
    }
    std::set<std::string> classes;
    std::map<std::string, std::string> majorOfMinor;
    for (const ClassRule& rule : ClassRules()) {
        SCOPED_TRACE(std::string(rule.ifcClass));
        EXPECT_TRUE(rule.ifcClass.starts_with("Ifc"));
        EXPECT_TRUE(classes.insert(std::string(rule.ifcClass)).second);
        EXPECT_TRUE(majors.contains(std::string(rule.major)));
        EXPECT_EQ(FindClassRule(rule.ifcClass), &rule);
        EXPECT_EQ(rule.externalMinor.empty(), rule.internalMinor.empty());
        std::vector<std::string_view> minors{rule.minor};
        if (!rule.externalMinor.empty())
            minors.insert(minors.end(), {rule.externalMinor, rule.internalMinor});
        for (const PredefinedMinor& entry : rule.byPredefinedType) {
            EXPECT_FALSE(entry.predefinedType.empty());
            minors.push_back(entry.minor);
        }
        for (std::string_view minor : minors) {
            ASSERT_FALSE(minor.empty());
            const auto [it, added] =
                majorOfMinor.try_emplace(std::string(minor), std::string(rule.major));
            EXPECT_EQ(it->second, rule.major) << minor;
            EXPECT_LT(MinorRank(rule.major, minor), 64u) << minor;
        }
    }
}

TEST(IfcMappingTest, ClassifiesElementsByWhatTheFileSays) {
    using D = Discipline;
    const struct {
        const char* name;
        ElementFacts facts;
        D discipline;
        const char* major;
        const char* minor;
    } rows[] = {
        {"wall, nothing known", {"IfcWallStandardCase"}, D::Architecture, "墙", "墙"},
        {"external wall", {"IfcWall", "", "", true}, D::Architecture, "墙", "外墙"},
        {"internal wall", {"IfcWall", "", "", false}, D::Architecture, "墙", "内墙"},
        {"parapet before IsExternal",
         {"IfcWall", "", "PARAPET", true},
         D::Architecture,
         "墙",
         "女儿墙"},
        {"load-bearing wall", {"IfcWall", "", "", true, true}, D::Structure, "墙", "外墙"},
        {"slab that bears no load",
         {"IfcSlab", "", "FLOOR", {}, false},
         D::Architecture,
         "板",
         "楼板"},
        {"load-bearing roof slab", {"IfcSlab", "", "ROOF", {}, true}, D::Structure, "板", "屋面板"},
        {"column", {"IfcColumnStandardCase"}, D::Structure, "柱", "柱"},
        {"decorative column", {"IfcColumn", "", "", {}, false}, D::Architecture, "柱", "柱"},
        {"mullion", {"IfcMember", "", "MULLION"}, D::Structure, "杆件", "竖梃"},
        {"enumeration in lower case", {"IfcDoor", "", "gate"}, D::Architecture, "门", "大门"},
        {"class in upper case", {"IFCWINDOW", "", "SKYLIGHT"}, D::Architecture, "窗", "天窗"},
        {"IFC2x3 pipe", {"IfcFlowSegment", "IfcPipeSegmentType"}, D::Plumbing, "管道", "管道"},
        {"IFC2x3 basin",
         {"IfcFlowTerminal", "IfcSanitaryTerminalType", "WASHHANDBASIN"},
         D::Plumbing,
         "卫生器具",
         "洗手盆"},
        {"IFC2x3 flow segment, no type", {"IfcFlowSegment"}, D::Other, "分布构件", "管线段"},
        {"IFC2x3 furniture",
         {"IfcFurnishingElement", "IfcFurnitureType", "CHAIR"},
         D::Architecture,
         "家具",
         "椅子"},
        {"a type that is no class",
         {"IfcFlowTerminal", "IfcStyle"},
         D::Other,
         "分布构件",
         "末端设备"},
        {"specific class over its type", {"IfcDoor", "IfcWindowType"}, D::Architecture, "门", "门"},
        {"heating pipe", {"IfcPipeSegment", "", "", {}, {}, D::Hvac}, D::Hvac, "管道", "管道"},
        {"IFC2x3 heating pipe",
         {"IfcFlowSegment", "IfcPipeSegmentType", "", {}, {}, D::Hvac},
         D::Hvac,
         "管道",
         "管道"},
        {"duct keeps HVAC",
         {"IfcDuctSegment", "", "", {}, {}, D::Plumbing},
         D::Hvac,
         "风管",
         "风管"},
        {"unknown class", {"IfcSomethingNew"}, D::Other, "其他构件", "其他构件"},
        {"no class", {""}, D::Other, "其他构件", "其他构件"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Classification c = Classify(row.facts);
        EXPECT_EQ(c.discipline, row.discipline);
        EXPECT_EQ(c.major, row.major);
        EXPECT_EQ(c.minor, row.minor);
    }
}

TEST(IfcMappingTest, DistributionSystemsNameDisciplines) {
    EXPECT_EQ(DisciplineOfSystem("HEATING"), Discipline::Hvac);
    EXPECT_EQ(DisciplineOfSystem("chilledwater"), Discipline::Hvac);
    EXPECT_EQ(DisciplineOfSystem("DOMESTICCOLDWATER"), Discipline::Plumbing);
    EXPECT_EQ(DisciplineOfSystem("LIGHTING"), Discipline::Electrical);
    EXPECT_EQ(DisciplineOfSystem("GAS"), std::nullopt);
    EXPECT_EQ(DisciplineOfSystem(""), std::nullopt);
}

} // namespace
} // namespace obsidra::host::ifc
