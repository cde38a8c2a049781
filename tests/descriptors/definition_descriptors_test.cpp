#include <string>
#include <vector>

#include "descriptor_test.h"

using namespace obsidra::descriptors;

namespace {

std::vector<std::string> Lines(HoopsDefineGeometry& definitions) {
    std::vector<std::string> lines;
    std::string line;
    definitions.BeginSearch();
    while (definitions.FindNext(line))
        lines.push_back(line);
    definitions.EndSearch();
    return lines;
}

class DefinitionDescriptorTest : public DescriptorTest {
protected:
    void SetUp() override {
        DescriptorTest::SetUp();
        HC_Open_Segment("/library");
    }
    void TearDown() override {
        HC_Close_Segment();
        DescriptorTest::TearDown();
    }
};

// Each kind lists its definitions as lines, and SplitText and Define take an edited line back.
TEST_F(DefinitionDescriptorTest, EachKindListsItsDefinitionsAndRedefinesFromAnEditedLine) {
    HC_Define_Local_Texture("wood", "source=grain, tiling=repeat");
    HC_Define_Local_Texture("stone", "source=rock");
    HC_Define_Line_Style("dashes", "4 on, 2 off");
    HC_Define_Named_Style("night", "/styles/night");
    HC_Define_Shader("phong", "multiline", "void main() {}");
    const char glyph[] = {3, 0, 0, -128, 1, 2};
    HC_Define_Glyph("arrow", 6, glyph);
    const struct {
        DefinitionKind kind;
        std::vector<std::string> lines;
        std::string edited; // replaces the last line
    } rows[] = {
        {DefinitionKind::LocalTexture,
         {"wood - source=grain, tiling=repeat", "stone - source=rock"},
         "stone - source=oak"},
        {DefinitionKind::Glyph, {"arrow - 3 0 0 -128 1 2"}, "arrow - 1 -2 3"},
        {DefinitionKind::LinePattern, {"dashes - 4 on, 2 off"}, "dashes - 1 on, 1 off"},
        {DefinitionKind::NamedStyle, {"night - /styles/night"}, "night - /styles/dark"},
        {DefinitionKind::Shader,
         {"phong - multiline\n{\nvoid main() {}\n}"},
         "phong - single\n{\nvoid main() { discard; }\n}"},
    };
    for (const auto& row : rows) {
        const std::unique_ptr<HoopsDefineGeometry> kind = MakeDefinition(row.kind);
        SCOPED_TRACE(kind->GetName());
        EXPECT_EQ(kind->Count(), static_cast<int>(row.lines.size()));
        std::vector<std::string> lines = Lines(*kind);
        EXPECT_EQ(lines, row.lines);
        std::optional<DefinitionText> split = kind->SplitText(row.edited);
        ASSERT_TRUE(split);
        kind->Define(split->name, split->definition);
        lines.back() = row.edited;
        EXPECT_EQ(Lines(*kind), lines);
    }
    // Glyph bytes that do not read leave the glyph as it was.
    HoopsGeometryGlyph glyphs;
    glyphs.Define("arrow", "1 300");
    glyphs.Define("arrow", "1 two");
    EXPECT_EQ(glyphs.Describe("arrow"), "arrow - 1 -2 3");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(DefinitionDescriptorTest, AnEmptySearchLeavesTheTextAlone) {
    for (const std::unique_ptr<HoopsDefineGeometry>& kind : MakeDefinitionList()) {
        if (kind->GetName() == "Font") continue;
        std::string text = "untouched";
        kind->BeginSearch();
        EXPECT_FALSE(kind->FindNext(text)) << kind->GetName();
        kind->EndSearch();
        EXPECT_EQ(text, "untouched");
        EXPECT_EQ(kind->Count(), 0);
    }
}

TEST_F(DefinitionDescriptorTest, SplitTextFollowsEachKindsRule) {
    HoopsGeometryLocalTextures textures;
    std::optional<DefinitionText> split = textures.SplitText("wood - source=a - b");
    ASSERT_TRUE(split);
    EXPECT_EQ(split->name, "wood");
    EXPECT_EQ(split->definition, "source=a - b");
    EXPECT_FALSE(textures.SplitText("wood-source=a"));
    EXPECT_FALSE(textures.SplitText(""));

    HoopsShaderDefinition shaders;
    split = shaders.SplitText("phong - some options");
    ASSERT_TRUE(split);
    EXPECT_EQ(split->name, "phong");
    EXPECT_EQ(split->definition, "some options");
    split = shaders.SplitText("  bare -");
    ASSERT_TRUE(split);
    EXPECT_EQ(split->name, "bare");
    EXPECT_EQ(split->definition, "");
    EXPECT_FALSE(shaders.SplitText("no separator"));
    EXPECT_FALSE(shaders.SplitText("   "));

    split = HoopsGeometryFont().SplitText("sans serif - x");
    ASSERT_TRUE(split);
    EXPECT_EQ(split->name, "sans serif - x");
    EXPECT_EQ(split->definition, "");
}

// Fonts are counted only where driver options are set, and never at the root.
TEST_F(DefinitionDescriptorTest, FontsStandAloneAndCountOnceBelowTheRoot) {
    HoopsGeometryFont fonts;
    EXPECT_EQ(fonts.Count(), 0);
    HC_Set_Driver_Options("debug=1");
    EXPECT_EQ(fonts.Count(), 1);
    HC_Open_Segment("/");
    HC_Set_Driver_Options("debug=1");
    EXPECT_EQ(fonts.Count(), 0);
    HC_Close_Segment();

    HC_Define_Font("drawing", "size=2");
    std::vector<std::string> lines = Lines(fonts);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "drawing");
    EXPECT_EQ(fonts.Describe("drawing"), "");
    fonts.Define("drawing", "size=3");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
}

TEST_F(DefinitionDescriptorTest, ReferenceCountsItsKeys) {
    HC_KEY target = HC_Create_Segment("/target");
    HC_KEY shell = InsertTriangle();
    HC_Open_Geometry(shell);
    HC_Reference_Geometry_By_Key(target);
    HC_Reference_Geometry("/target");
    HC_Conditional_Reference("/target", "night");
    HC_Close_Geometry();
    HoopsReference references;
    EXPECT_EQ(references.GetName(), "REFERENCE");
    EXPECT_EQ(references.Describe(shell), "3 keys");
    HC_KEY reference = HC_Reference_Geometry_By_Key(target);
    EXPECT_EQ(references.Describe(reference), "1 keys");
    EXPECT_EQ(references.Count(), 1);
    EXPECT_FALSE(references.Edit(reference, "2 keys"));
}

} // namespace
