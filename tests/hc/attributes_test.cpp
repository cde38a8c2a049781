#include "hc_test.h"

namespace {

using Attributes = HcTest;

std::string ShowColor() {
    char text[HC_TEXT_MAX];
    HC_Show_Color(text);
    return text;
}

TEST_F(Attributes, SettingMergesOptionByOptionAndUnsetRemovesTheWhole) {
    HC_Open_Segment("/a");
    HC_Set_Color("faces=red, edges=blue");
    HC_Set_Color("Edges = green, lines=black");
    EXPECT_EQ(ShowColor(), "faces=red,edges=green,lines=black");
    EXPECT_EQ(HC_Show_Existence("color"), 1);
    HC_UnSet_Color();
    EXPECT_EQ(HC_Show_Existence("color"), 0);
    TakeErrors();
    EXPECT_EQ(ShowColor(), "");
    EXPECT_EQ(TakeErrors().size(), 1u);
    HC_Close_Segment();
}

TEST_F(Attributes, AnOpenGeometryItemTakesTheAttributesInsteadOfItsSegment) {
    HC_KEY a = HC_Open_Segment("/a");
    HC_KEY shell = Triangle();
    HC_Open_Geometry(shell);
    HC_Set_Color("faces=yellow");
    EXPECT_EQ(ShowColor(), "faces=yellow");
    HC_Begin_Open_Item_Search();
    HC_KEY key;
    char type[HC_TEXT_MAX], status[HC_TEXT_MAX];
    std::vector<std::pair<std::string, HC_KEY>> open;
    while (HC_Find_Open_Item(&key, type, status))
        open.emplace_back(type, key);
    HC_End_Open_Item_Search();
    HC_Close_Geometry();
    EXPECT_EQ(open,
              (std::vector<std::pair<std::string, HC_KEY>>{{"shell", shell}, {"segment", a}}));
    EXPECT_EQ(HC_Show_Existence("color"), 0);
    HC_Close_Segment();
}

TEST_F(Attributes, TheSixOptionAttributesAreIndependent) {
    HC_Open_Segment("/a");
    HC_Set_Color("faces=red");
    HC_Set_Visibility("no edges");
    HC_Set_Heuristics("backplane cull");
    HC_Set_Rendering_Options("lighting interpolation=phong");
    HC_Set_Selectability("faces=on");
    HC_Set_User_Options("owner=Ann");
    EXPECT_EQ(Types(".", "attributes"),
              (std::vector<std::string>{"color", "visibility", "selectability", "rendering options",
                                        "user options", "heuristics"}));
    char text[HC_TEXT_MAX];
    HC_Show_User_Options(text);
    EXPECT_STREQ(text, "owner=Ann");
    HC_Show_Visibility(text);
    EXPECT_STREQ(text, "no edges");
    HC_UnSet_Heuristics();
    EXPECT_EQ(HC_Show_Existence("attributes"), 5);
    HC_Close_Segment();
}

} // namespace
