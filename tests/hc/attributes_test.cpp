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
    HC_Set_Color("blue");
    EXPECT_EQ(ShowColor(), "blue") << "a colour named alone colours everything";
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
              (std::vector<std::pair<std::string, HC_KEY>>{{"geometry", shell}, {"segment", a}}));
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
    HC_UnSet_Heuristics();
    EXPECT_EQ(HC_Show_Existence("attributes"), 5);
    HC_Close_Segment();
}

using AttributeKinds = HcTest;

using SetText = void (*)(const char*);
using ShowText = void (*)(char*);
using NetText = void (*)(int, const HC_KEY*, char*);

// Every attribute whose value is a text: each row sets a value on a parent and another on a
// child, and names what the child's net value must be (option strings merge, texts replace).
struct TextRow {
    const char* word;
    SetText set;
    void (*unset)();
    ShowText show;
    NetText net;
    const char* parent;
    const char* child;
    const char* net_at_child;
};

#define HC_ROW(Name, word, parent, child, net)                                                     \
    TextRow {                                                                                      \
        word, HC_Set_##Name, HC_UnSet_##Name, HC_Show_##Name, HC_PShow_Net_##Name, parent, child,  \
            net                                                                                    \
    }

const TextRow kTextRows[] = {
    HC_ROW(Color, "COLOR", "faces=red,edges=blue", "edges=green", "faces=red,edges=green"),
    HC_ROW(Visibility, "VISIBILITY", "faces=off", "lines", "faces=off,lines"),
    HC_ROW(Selectability, "SELECTABILITY", "faces=on", "no edges", "faces=on,no edges"),
    HC_ROW(Callback, "CALLBACK", "draw segment=a", "draw segment=b", "draw segment=b"),
    HC_ROW(Rendering_Options, "RENDERING OPTIONS", "hsr=zbuffer", "lod", "hsr=zbuffer,lod"),
    HC_ROW(User_Options, "USER OPTIONS", "a=1,b=2", "b=3", "a=1,b=3"),
    HC_ROW(Unicode_Options, "UNICODE OPTIONS", "name=Wand", "note=x", "name=Wand,note=x"),
    HC_ROW(Heuristics, "HEURISTICS", "backplane cull", "no polygon handedness",
           "backplane cull,no polygon handedness"),
    HC_ROW(Text_Font, "TEXT FONT", "name=roman,size=12pt", "size=10pt", "name=roman,size=10pt"),
    HC_ROW(Driver_Options, "DRIVER OPTIONS", "debug=1", "title=x", "debug=1,title=x"),
    HC_ROW(Handedness, "HANDEDNESS", "left", "right", "right"),
    HC_ROW(Conditions, "CONDITION", "day,summer", "night", "day,summer,night"),
    HC_ROW(Text_Alignment, "TEXT ALIGNMENT", "<v", "*", "*"),
    HC_ROW(Window_Pattern, "WINDOW PATTERN", "solid", "clear", "clear"),
    HC_ROW(Window_Frame, "WINDOW FRAME", "on", "off", "off"),
    HC_ROW(Line_Pattern, "LINE PATTERN", "---", "-.-", "-.-"),
    HC_ROW(Edge_Pattern, "EDGE PATTERN", "...", "-- --", "-- --"),
    HC_ROW(Face_Pattern, "FACE PATTERN", "##", "||", "||"),
    HC_ROW(Marker_Symbol, "MARKER SYMBOL", "x", "(*)", "(*)"),
    HC_ROW(Color_Map, "COLOR MAP", "red, green", "blue", "blue"),
};

TEST_F(AttributeKinds, TextAttributesSetShowInheritAndUnset) {
    for (const TextRow& row : kTextRows) {
        HC_Reset_System();
        HC_KEY parent = HC_Open_Segment("/p");
        row.set(row.parent);
        HC_KEY child = HC_Open_Segment("c");
        char text[HC_TEXT_MAX] = "";
        row.net(0, nullptr, text);
        EXPECT_STREQ(text, row.parent) << row.word << ": inherited as it is";
        EXPECT_EQ(HC_Show_Existence(row.word), 0) << row.word;
        row.set(row.child);
        EXPECT_EQ(HC_Show_Existence(row.word), 1) << row.word;
        row.show(text);
        EXPECT_STREQ(text, row.child) << row.word;
        row.net(0, nullptr, text);
        EXPECT_STREQ(text, row.net_at_child) << row.word;
        row.unset();
        EXPECT_EQ(HC_Show_Existence(row.word), 0) << row.word;
        HC_Close_Segment();
        HC_Close_Segment();
        // A path of keys asks about another segment than the open one.
        HC_KEY path[] = {child};
        row.net(1, path, text);
        EXPECT_STREQ(text, row.parent) << row.word;
        HC_KEY parentOnly[] = {parent};
        row.net(1, parentOnly, text);
        EXPECT_STREQ(text, row.parent) << row.word;
    }
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(AttributeKinds, NetValuesFollowTheIncludePathWhenOneIsGiven) {
    HC_Open_Segment("/library");
    HC_Set_Color("faces=red");
    HC_KEY part = HC_Create_Segment("part");
    HC_Close_Segment();
    HC_Open_Segment("/scene");
    HC_Set_Color("faces=blue,edges=black");
    HC_KEY include = HC_Include_Segment("/library/part");
    HC_Close_Segment();
    char text[HC_TEXT_MAX];
    HC_KEY owners[] = {part};
    HC_PShow_Net_Color(1, owners, text);
    EXPECT_STREQ(text, "faces=red") << "up through its owners";
    HC_KEY throughInclude[] = {part, include};
    HC_PShow_Net_Color(2, throughInclude, text);
    EXPECT_STREQ(text, "faces=blue,edges=black") << "up through the including segment";
}

// The attribute descriptors' tests set, show and inherit every kind, matrices, cameras, clip
// regions and weights among them; what follows is what they do not reach.
TEST_F(AttributeKinds, TheNearestValueWinsAndEmptyWindowsAndNegativeWeightsAreRefused) {
    HC_Open_Segment("/a");
    HC_Set_User_Value(-1234567890123LL);
    HC_Open_Segment("b");
    HC_Set_User_Value(7);
    int64_t value = 0;
    HC_PShow_Net_User_Value(0, nullptr, &value);
    EXPECT_EQ(value, 7);
    HC_Close_Segment();
    HC_Show_User_Value(&value);
    EXPECT_EQ(value, -1234567890123LL);
    TakeErrors();
    HC_Set_Window(1, -1, 0, 1);
    HC_Set_Line_Weight(-3); // a variable weight is set as one
    EXPECT_EQ(TakeErrors().size(), 2u);
    HC_Close_Segment();
}

TEST_F(AttributeKinds, CameraKeepsItsNearLimitAndNamesItsProjection) {
    HC_Open_Segment("/a");
    TakeErrors();
    HC_Set_Camera_Near_Limit(0.5);
    EXPECT_EQ(TakeErrors().size(), 1u) << "no camera yet";
    HC_POINT position{0, 0, 10}, target{0, 0, 0}, up{0, 1, 0};
    HC_Set_Camera(&position, &target, &up, 4, 3, "Orthographic");
    HC_Set_Camera_Near_Limit(0.25);
    HC_Open_Segment("b");
    HC_POINT p, tg, u;
    float w, h, nearLimit;
    char projection[HC_TEXT_MAX];
    HC_PShow_Net_Camera(0, nullptr, &p, &tg, &u, &w, &h, projection);
    HC_PShow_Net_Camera_Near_Limit(0, nullptr, &nearLimit);
    HC_Close_Segment();
    EXPECT_STREQ(projection, "orthographic");
    EXPECT_EQ(nearLimit, 0.25f);
    HC_Set_Camera(&position, &target, &up, 4, 3, "");
    HC_Show_Camera(&p, &tg, &u, &w, &h, projection);
    HC_Show_Camera_Near_Limit(&nearLimit);
    EXPECT_STREQ(projection, "perspective");
    EXPECT_EQ(nearLimit, 0.25f) << "setting the camera keeps its near limit";
    HC_Close_Segment();
}

TEST_F(AttributeKinds, UserIndicesSortAndUserDataKeepsEveryByte) {
    HC_Open_Segment("/a");
    HC_Set_User_Index(7, nullptr);
    HC_Set_User_Index(3, nullptr);
    HC_Set_User_Data(10, "abc\0def", 7);
    int count = 0;
    long indices[4];
    void* values[4];
    HC_Show_User_Indices(&count, indices, values);
    EXPECT_EQ(std::vector<long>(indices, indices + count), (std::vector<long>{3, 7}));
    char data[16];
    long size = 0;
    HC_Show_One_User_Data(10, data, sizeof data, &size);
    EXPECT_EQ(std::string(data, static_cast<size_t>(size)), std::string("abc\0def", 7));
    HC_UnSet_One_User_Index(3);
    HC_UnSet_One_User_Index(7);
    EXPECT_EQ(HC_Show_Existence("user index"), 0) << "the last one takes the attribute with it";
    TakeErrors();
    HC_UnSet_One_User_Data(99);
    EXPECT_EQ(TakeErrors().size(), 1u);
    HC_Close_Segment();
}

TEST_F(AttributeKinds, ConditionalActionsAcceptTheBracketsOfTheirShownForm) {
    HC_Open_Segment("/a");
    HC_Set_Conditional_Action("Priority = 3", "hot");
    // What a shown list looks like, taken apart the way an edited line is.
    HC_Set_Conditional_Action("(show = segment)", "(cold) ");
    HC_Set_Conditional_Action("highlight = (color=red)", "(a | b) & c");
    char types[HC_TEXT_MAX], options[HC_TEXT_MAX], condition[HC_TEXT_MAX];
    HC_Show_Cond_Action_Types(types);
    EXPECT_STREQ(types, "priority,show,highlight");
    HC_Show_One_Conditional_Action("show", options, condition);
    EXPECT_STREQ(options, "segment");
    EXPECT_STREQ(condition, "cold");
    HC_Show_One_Conditional_Action("highlight", options, condition);
    EXPECT_STREQ(options, "(color=red)") << "inner parentheses stay";
    EXPECT_STREQ(condition, "(a | b) & c");
    HC_Set_Conditional_Action("priority = 5", "warm");
    HC_Show_One_Conditional_Action("PRIORITY", options, condition);
    EXPECT_STREQ(options, "5");
    EXPECT_STREQ(condition, "warm");
    TakeErrors();
    HC_Set_Conditional_Action("", "x");
    HC_Set_Conditional_Action("a=1", "()");
    EXPECT_EQ(TakeErrors().size(), 2u);
    HC_UnSet_Conditional_Actions();
    EXPECT_EQ(HC_Show_Existence("conditional action"), 0);
    HC_Close_Segment();
}

TEST_F(AttributeKinds, GeometryOptionsBelongToItemsAndSystemOptionsMerge) {
    HC_Open_Segment("/a");
    TakeErrors();
    HC_Set_Geometry_Options("orientation=1");
    EXPECT_EQ(TakeErrors().size(), 1u) << "not on a segment";
    HC_Open_Geometry(Triangle());
    HC_Set_Geometry_Options("orientation=1");
    HC_Set_Geometry_Options("");
    char options[HC_TEXT_MAX];
    HC_Show_Geometry_Options(options);
    EXPECT_STREQ(options, "") << "an empty text clears them";
    HC_Close_Geometry();
    HC_Close_Segment();

    HC_Define_System_Options("message limit=10");
    HC_Define_System_Options("no sanity checking");
    HC_Show_System_Options(options);
    EXPECT_STREQ(options, "message limit=10,no sanity checking");
    HC_Reset_System();
    HC_Show_System_Options(options);
    EXPECT_STREQ(options, "");
}

} // namespace
