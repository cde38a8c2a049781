#include <cstdio>
#include <filesystem>

#include "hc/database.h"
#include "hc/metafile.h"
#include "hc/session.h"
#include "hc_test.h"

namespace {

using Metafiles = HcTest;

// Builds a scene with one of everything the database holds.
void BuildScene() {
    HC_Open_Segment("/scene");
    HC_Set_User_Options("title=\"Quoted \\\"name\\\"\",year=2024");
    HC_Define_Named_Style("hot", "./styles/red");
    HC_Open_Segment("styles/red");
    HC_Set_Color("faces=red");
    HC_Close_Segment();
    HC_Open_Segment("parts");
    HC_KEY shell =
        HC_Insert_Shell(3, std::vector<HC_POINT>{{0, 0, 0}, {1.5f, 0, 0}, {0, 1, -2.25f}}.data(), 4,
                        std::vector<int>{3, 0, 1, 2}.data());
    HC_Open_Geometry(shell);
    HC_Set_Visibility("edges=off");
    HC_Close_Geometry();
    HC_Insert_Text(1, 2, 3, "multi\nline");
    HC_Renumber_Key(HC_Insert_Marker(0.1, 0.2, 0.3), 77, "global");
    HC_Create_Segment("");
    HC_Close_Segment();
    HC_Open_Segment("instances");
    HC_Conditional_Include("/scene/parts", "detail");
    HC_Style_Segment("/external/look");
    HC_Named_Style_Segment("hot");
    HC_Filtered_Reference_By_Key(shell, "near", "no lines");
    HC_Set_Heuristics("static model");
    HC_Close_Segment();
    HC_Close_Segment();
}

// The scene below a segment as text that names no keys but renumbered ones.
std::string Dump(const char* segment) {
    hc::Database& db = hc::Current();
    return hc::MetafileText(db, hc::CurrentSession().ResolvePath(segment, false));
}

TEST_F(Metafiles, WriteThenReadRestoresTheScene) {
    BuildScene();
    std::string before = Dump("/scene");
    auto file = std::filesystem::temp_directory_path() / "obsidra_roundtrip.hmf";
    HC_Write_Metafile("/scene", file.c_str(), "");
    HC_Reset_System();
    HC_Create_Segment("/external/look");
    EXPECT_NE(HC_Read_Metafile(file.c_str(), "/scene", ""), 0);
    std::filesystem::remove(file);
    EXPECT_EQ(Dump("/scene"), before);
    EXPECT_TRUE(TakeErrors().empty());
    EXPECT_EQ(Path(77), "/scene/parts") << "renumbered keys come back";
    HC_Open_Segment("/scene/instances");
    EXPECT_EQ(HC_Show_Existence("static model"), 1);
    HC_Close_Segment();
}

TEST_F(Metafiles, ContentsInsideTheSavedSegmentMoveWithIt) {
    BuildScene();
    std::string text = Dump("/scene");
    std::string error;
    hc::Database& db = hc::Current();
    ASSERT_TRUE(
        hc::LoadMetafileText(db, text, hc::CurrentSession().ResolvePath("/copy", true), error))
        << error;
    char path[HC_TEXT_MAX];
    HC_Open_Segment("/copy/instances");
    HC_Begin_Contents_Search(".", "include");
    char type[HC_TEXT_MAX];
    HC_KEY include;
    ASSERT_TRUE(HC_Find_Contents(type, &include));
    HC_End_Contents_Search();
    HC_Close_Segment();
    HC_Show_Include_Segment(include, path);
    EXPECT_STREQ(path, "/copy/parts");
}

TEST_F(Metafiles, BrokenFilesLoadNothingAndSayWhere) {
    struct {
        const char* text;
        const char* error;
    } const rows[] = {
        {"(Segment \"a\"\n(Shell", "line 2, column 1: (Shell is not closed"},
        {"(Segment \"a\"))", "line 1, column 14: \")\" closes nothing"},
        {"(Segment \"a\n", "line 1, column 10: the string is not closed"},
        {"\n\n(Gizmo 1)", "line 3, column 1: unknown element \"Gizmo\""},
        {"(Shell (Points 1 2))", "line 1, column 8: points need three coordinates each"},
        {"(Marker (Points 1 2 x))", "line 1, column 21: \"x\" is not a number"},
        {"( 1 2 3)", "line 1, column 1: a bare ( ... ) belongs only in a (Camera"},
        {"stray", "line 1, column 1: a value outside any element"},
        {"(Segment \"a\"\v\f) x", "line 1, column 17: a value outside any element"},
        {"(Segment \"a/b\")", "line 1, column 1: \"a/b\" cannot be a segment name"},
        {"(Shell (Segment \"x\"))", "line 1, column 8: (Segment does not belong in (Shell"},
        {"(Points 1 2 3)", "line 1, column 1: (Points does not belong at the top"},
        {"(Modelling_Matrix 1 2 3)",
         "line 1, column 1: (Modelling_Matrix takes a number, a number, a number, a number, a "
         "number, a number, a number, a number, a number, a number, a number, a number, a number, "
         "a number, a number, a number"},
        {"(Camera (0 0 1) (0 0 0) (0 1) 2 2 \"orthographic\")",
         "line 1, column 25: a point takes three numbers"},
        {"(Segment \"a\" (Include 5 \"\"))",
         "line 1, column 23: (Include takes a string, a string (the last may be left out)"},
    };
    hc::Database& db = hc::Current();
    for (const auto& row : rows) {
        std::string error;
        EXPECT_FALSE(hc::LoadMetafileText(db, row.text, db.Root(), error)) << row.text;
        EXPECT_EQ(error, row.error) << row.text;
    }
    EXPECT_EQ(db.LiveObjects(), 1u) << "only the root";
    TakeErrors();
    EXPECT_EQ(HC_Read_Metafile("/no/such/file.hmf", "/x", ""), 0);
    EXPECT_EQ(TakeErrors().size(), 1u);
}

TEST_F(Metafiles, DeepNestingNeitherOverflowsTheStackNorFails) {
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "(Segment \"d\" ";
    text += "(Marker (Points 0 0 0))";
    text += std::string(20000, ')');
    std::string error;
    hc::Database& db = hc::Current();
    ASSERT_TRUE(hc::LoadMetafileText(db, text, db.Root(), error)) << error;
    HC_Open_Segment("/");
    EXPECT_EQ(List("...", "markers").size(), 1u);
    HC_Close_Segment();
    EXPECT_EQ(hc::LoadMetafileText(db, Dump("/"), hc::CurrentSession().ResolvePath("/again", true),
                                   error),
              true);
}

} // namespace
