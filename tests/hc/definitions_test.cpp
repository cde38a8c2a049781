#include "hc_test.h"

namespace {

using Definitions = HcTest;

std::vector<std::string> Names(void (*begin)(), bool (*find)(char*), void (*end)()) {
    std::vector<std::string> names;
    char name[HC_TEXT_MAX];
    begin();
    while (find(name))
        names.push_back(name);
    end();
    return names;
}

TEST_F(Definitions, EachKindDefinesShowsListsAndUndefinesAndIsSeenFromBelow) {
    HC_Open_Segment("/a");
    HC_Define_Local_Texture("wood", "source=wood.png, tiling");
    HC_Define_Local_Texture("Stone", "source=stone.png");
    HC_Define_Line_Style("dashed", "4 pixels dash, 2 pixels blank");
    HC_Define_Shader("glow", "multitexture", "void main() {}");
    HC_Define_Glyph("cross", 5, "\x03\x00\x01\xff\x02");
    // The definition descriptors' tests show and list every kind; textures stand for them here.
    char text[HC_TEXT_MAX];
    HC_Show_Local_Texture("WOOD", text);
    EXPECT_STREQ(text, "source=wood.png, tiling");
    EXPECT_EQ(Names(HC_Begin_Texture_Search, HC_Find_Texture, HC_End_Texture_Search),
              (std::vector<std::string>{"wood", "Stone"}));
    EXPECT_EQ(Names(HC_Begin_Local_Texture_Search, HC_Find_Texture, HC_End_Texture_Search).size(),
              2u);

    // Existence counts definitions; a contents search lists each kind once.
    EXPECT_EQ(HC_Show_Existence("LOCAL TEXTURE"), 2);
    EXPECT_EQ(HC_Show_Existence("LINE PATTERN DEFINITION"), 1);
    EXPECT_EQ(HC_Show_Existence("GLYPH DEFINITION"), 1);
    EXPECT_EQ(HC_Show_Existence("SHADER"), 1);
    EXPECT_EQ(Types(".", "texture definition, glyph definition, line style definition, "
                         "named style definition"),
              (std::vector<std::string>{"texture definition", "glyph definition",
                                        "line style definition"}));

    // Seen from below, but searched only where they are.
    HC_Open_Segment("b");
    HC_Show_Line_Style("dashed", text);
    EXPECT_STREQ(text, "4 pixels dash, 2 pixels blank");
    EXPECT_TRUE(
        Names(HC_Begin_Line_Style_Search, HC_Find_Line_Style, HC_End_Line_Style_Search).empty());
    HC_Close_Segment();

    HC_Define_Local_Texture("wood", "source=oak.png");
    HC_Show_Local_Texture("wood", text);
    EXPECT_STREQ(text, "source=oak.png") << "a name is defined once";
    HC_UnDefine_Local_Texture("stone");
    EXPECT_EQ(HC_Show_Existence("local texture"), 1);
    HC_Flush_Contents(".", "definitions");
    EXPECT_EQ(HC_Show_Existence("definitions"), 0);
    TakeErrors();
    HC_UnDefine_Shader("glow");
    HC_Show_Local_Texture("wood", text);
    EXPECT_EQ(TakeErrors().size(), 2u);
    EXPECT_STREQ(text, "");
    HC_Close_Segment();
}

TEST_F(Definitions, SearchesOfDifferentKindsRunSideBySide) {
    HC_Open_Segment("/a");
    HC_Define_Glyph("g1", 1, "x");
    HC_Define_Glyph("g2", 1, "y");
    HC_Define_Shader("s1", "", "");
    char glyph[HC_TEXT_MAX], shader[HC_TEXT_MAX];
    HC_Begin_Glyph_Search();
    HC_Begin_Shader_Search();
    ASSERT_TRUE(HC_Find_Glyph(glyph));
    ASSERT_TRUE(HC_Find_Shader(shader));
    EXPECT_FALSE(HC_Find_Shader(shader));
    ASSERT_TRUE(HC_Find_Glyph(glyph));
    EXPECT_STREQ(glyph, "g2");
    HC_End_Shader_Search();
    HC_End_Glyph_Search();
    EXPECT_FALSE(HC_Find_Glyph(glyph)) << "an ended search finds nothing";
    HC_Close_Segment();
}

} // namespace
