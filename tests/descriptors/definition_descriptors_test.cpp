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

TEST_F(DefinitionDescriptorTest, EachKindListsItsDefinitionsAsLines) {
    HC_Define_Local_Texture("wood", "source=grain, tiling=repeat");
    HC_Define_Local_Texture("stone", "source=rock");
    HC_Define_Line_Style("dashes", "4 on, 2 off");
    HC_Define_Named_Style("night", "/styles/night");
    HC_Define_Shader("phong", "multiline", "void main() {}");
    const char glyph[] = {3, 0, 0, -128, 1, 2};
    HC_Define_Glyph("arrow", 6, glyph);

    HoopsGeometryLocalTextures textures;
    EXPECT_EQ(textures.Count(), 2);
    EXPECT_EQ(Lines(textures), std::vector<std::string>(
                                   {"wood - source=grain, tiling=repeat", "stone - source=rock"}));
    HoopsGeometryLinePattern lineStyles;
    EXPECT_EQ(Lines(lineStyles), std::vector<std::string>({"dashes - 4 on, 2 off"}));
    HoopsNamedStyleDefinition namedStyles;
    EXPECT_EQ(Lines(namedStyles), std::vector<std::string>({"night - /styles/night"}));
    HoopsShaderDefinition shaders;
    EXPECT_EQ(Lines(shaders),
              std::vector<std::string>({"phong - multiline\n{\nvoid main() {}\n}"}));
    HoopsGeometryGlyph glyphs;
    EXPECT_EQ(Lines(glyphs), std::vector<std::string>({"arrow - 3 0 0 -128 1 2"}));
    for (HoopsDefineGeometry* kind :
         std::initializer_list<HoopsDefineGeometry*>{&lineStyles, &namedStyles, &shaders, &glyphs})
        EXPECT_EQ(kind->Count(), 1) << kind->GetName();
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

// What FindNext shows, SplitText and Define take back.
TEST_F(DefinitionDescriptorTest, EditedLinesRedefine) {
    HC_Define_Local_Texture("wood", "source=grain");
    HC_Define_Shader("phong", "multiline", "void main() {}");
    HC_Define_Glyph("dot", 2, "\x01\x02");
    HC_Define_Line_Style("dashes", "4 on");
    HC_Define_Named_Style("night", "/styles/night");
    const struct {
        std::unique_ptr<HoopsDefineGeometry> kind;
        std::string edited;
    } cases[] = {
        {MakeDefinition(DefinitionKind::LocalTexture), "wood - source=oak"},
        {MakeDefinition(DefinitionKind::Glyph), "dot - 1 -2 3"},
        {MakeDefinition(DefinitionKind::LinePattern), "dashes - 1 on, 1 off"},
        {MakeDefinition(DefinitionKind::NamedStyle), "night - /styles/dark"},
        {MakeDefinition(DefinitionKind::Shader), "phong - single\n{\nvoid main() { discard; }\n}"},
    };
    for (const auto& [kind, edited] : cases) {
        SCOPED_TRACE(kind->GetName());
        std::optional<DefinitionText> split = kind->SplitText(edited);
        ASSERT_TRUE(split);
        kind->Define(split->name, split->definition);
        EXPECT_EQ(Lines(*kind), std::vector<std::string>({edited}));
    }
    HC_Define_Glyph("dot", 2, "\x01\x02");
    HoopsGeometryGlyph glyphs;
    glyphs.Define("dot", "1 300");
    glyphs.Define("dot", "1 two");
    EXPECT_EQ(glyphs.Describe("dot"), "dot - 1 2");
    EXPECT_EQ(TakeErrors(), std::vector<std::string>());
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
