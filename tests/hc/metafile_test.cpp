#include "hc/database.h"
#include "hc/metafile.h"
#include "hc/session.h"
#include "hc_test.h"

namespace {

using Metafiles = HcTest;

// The scene below a segment as text that names no keys but renumbered ones.
std::string Dump(const char* segment) {
    hc::Database& db = hc::Current();
    return hc::MetafileText(db, hc::CurrentSession().ResolvePath(segment, false));
}

TEST_F(Metafiles, LinksInsideTheSavedSegmentMoveWithIt) {
    HC_Create_Segment("/scene/parts");
    HC_Open_Segment("/scene/instances");
    HC_Include_Segment("/scene/parts");
    HC_Close_Segment();
    std::string error;
    hc::Database& db = hc::Current();
    ASSERT_TRUE(hc::LoadMetafileText(db, Dump("/scene"),
                                     hc::CurrentSession().ResolvePath("/copy", true), error))
        << error;
    char path[HC_TEXT_MAX];
    HC_Show_Include_Segment(List("/copy/instances", "include").at(0).second, path);
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
