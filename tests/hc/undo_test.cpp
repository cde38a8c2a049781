// Undo and redo of every kind of scene edit: the scene comes back as it was, keys included.
#include <cstdio>
#include <functional>
#include <unistd.h>

#include <obsidra/hc_check.h>
#include <obsidra/hc_journal.h>

#include "hc_test.h"
#include "undo_support.h"

namespace {

class UndoTest : public HcTest {
protected:
    void TearDown() override {
        HC_Set_Undo_Limit(HC_UNDO_DEFAULT_LIMIT);
        HcTest::TearDown();
    }

    // A scene with something of every sort, and references into /lib from elsewhere.
    void BuildScene() {
        HC_Open_Segment("/lib");
        HC_Define_Line_Style("dots", "..");
        HC_Open_Segment("part");
        HC_Set_Color("faces=red");
        m_shell = Triangle();
        HC_Set_Face_Regions(m_shell, 0, 1, 4);
        HC_Renumber_Key(m_shell, 77, "local");
        HC_Open_Segment("");
        HC_Insert_Marker(1, 2, 3);
        HC_Close_Segment();
        HC_Close_Segment();
        HC_Open_Segment("style");
        HC_Set_Visibility("edges=off");
        HC_Close_Segment();
        HC_Define_Named_Style("look", "/lib/style");
        HC_Close_Segment();
        m_part = HC_Renumber_Key(HC_Create_Segment("/lib/part"), 500, "global");
        HC_Open_Segment("/scene");
        const float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1};
        HC_Set_Modelling_Matrix(matrix);
        HC_Include_Segment("/lib/part");
        HC_Style_Segment("/lib/style");
        HC_Named_Style_Segment("look");
        HC_Reference_Geometry_By_Key(HC_Show_Original_Key(m_shell));
        m_text = HC_Insert_Text(0, 0, 0, "label");
        HC_Open_Geometry(m_text);
        HC_Set_User_Value(9);
        HC_Close_Geometry();
        HC_Close_Segment();
        HC_Open_Segment("/lib/part/inner");
        HC_Include_Segment("/lib/style");
        HC_Close_Segment();
    }

public:
    HC_KEY m_shell = 0, m_part = 0, m_text = 0;
};

TEST_F(UndoTest, EveryKindOfEditIsUndoneAndRedone) {
    const HC_POINT points[] = {{2, 2, 2}, {3, 3, 3}};
    const struct {
        const char* name;
        std::function<void(UndoTest&)> edit;
    } kEdits[] = {
        {"set attributes",
         [](UndoTest&) {
             HC_Open_Segment("/lib/part");
             HC_Set_Color("edges=blue");
             HC_Set_Heuristics("static model");
             HC_Set_User_Value(3);
             HC_Close_Segment();
         }},
        {"unset attributes",
         [](UndoTest&) {
             HC_Open_Segment("/scene");
             HC_UnSet_Modelling_Matrix();
             HC_Close_Segment();
             HC_Open_Segment("/lib/part");
             HC_UnSet_Color();
             HC_Close_Segment();
         }},
        {"delete a subtree referred to from elsewhere",
         [](UndoTest&) { HC_Delete_Segment("/lib"); }},
        {"delete a geometry item",
         [](UndoTest& t) { HC_Delete_By_Key(HC_Show_Original_Key(t.m_shell)); }},
        {"flush", [](UndoTest&) { HC_Flush_Contents("/lib/...", "everything"); }},
        {"create a child", [](UndoTest&) { HC_Create_Segment("/scene/new/deeper"); }},
        {"rename", [](UndoTest&) { HC_Rename_Segment("/lib/part", "/scene/moved"); }},
        {"move an item",
         [](UndoTest& t) { HC_Move_By_Key(HC_Show_Original_Key(t.m_shell), "/scene"); }},
        {"copy", [](UndoTest&) { HC_Copy_Segment("/lib", "/scene/pasted"); }},
        {"add include and style",
         [](UndoTest&) {
             HC_Open_Segment("/lib/style");
             HC_Include_Segment("/lib/part");
             HC_Conditional_Style("/scene", "hover");
             HC_Close_Segment();
         }},
        {"define and undefine",
         [](UndoTest&) {
             HC_Open_Segment("/lib");
             HC_UnDefine_Named_Style("look");
             HC_Define_Line_Style("dots", "--");
             HC_Close_Segment();
         }},
        {"renumber", [](UndoTest& t) { HC_Renumber_Key(t.m_part, 600, "local"); }},
        {"edit geometry",
         [&points](UndoTest& t) {
             HC_Edit_Text(t.m_text, 0, 0, 2, "re");
             HC_Edit_Shell_Points(HC_Show_Original_Key(t.m_shell), 1, 1, 2, points);
             HC_Set_Face_Regions(HC_Show_Original_Key(t.m_shell), 0, 1, 8);
         }},
        {"insert geometry",
         [&points](UndoTest&) {
             HC_Open_Segment("/lib/part");
             HC_Insert_Polyline(2, points);
             HC_Close_Segment();
         }},
        {"load into segment",
         [](UndoTest&) {
             const std::string file =
                 ::testing::TempDir() + "undo_load_" + std::to_string(getpid()) + ".hmf";
             HC_Write_Metafile("/lib/style", file.c_str(), "");
             HC_Read_Metafile(file.c_str(), "/scene", "");
             std::remove(file.c_str());
         }},
        {"optimise",
         [](UndoTest&) {
             HC_Copy_Segment("/lib/part", "/lib/twin");
             HC_Optimize_Segment_Tree("/lib", "merge shells, segment names=discard");
         }},
        {"bulk delete in nested steps",
         [](UndoTest& t) {
             for (const char* path : {"/lib/part/inner", "/scene"}) {
                 HC_Begin_Undo_Step("inner");
                 HC_Delete_Segment(path);
                 HC_End_Undo_Step();
             }
             HC_Delete_By_Key(t.m_part);
         }},
    };
    for (const auto& edit : kEdits) {
        SCOPED_TRACE(edit.name);
        HC_Reset_System();
        BuildScene();
        const std::string before = SceneText();
        InStep(edit.name, [&] { edit.edit(*this); });
        const std::string after = SceneText();
        ASSERT_NE(before, after);
        char name[HC_TEXT_MAX];
        ASSERT_TRUE(HC_Show_Undo_Step(name));
        EXPECT_STREQ(name, edit.name);
        // The text shows every key; the check sees that names, keys and links resolve again.
        char report[256];
        for (const std::string& expected : {before, after, before}) {
            ASSERT_TRUE(expected == before ? HC_Undo() : HC_Redo());
            EXPECT_EQ(SceneText(), expected);
            EXPECT_EQ(HC_Check_Database(report, sizeof report), 0) << report;
        }
        EXPECT_EQ(TakeErrors(), std::vector<std::string>());
    }
}

TEST_F(UndoTest, StepsFoldNestAndForget) {
    char name[HC_TEXT_MAX];
    EXPECT_FALSE(HC_Undo());
    EXPECT_FALSE(HC_Show_Undo_Step(name));
    EXPECT_STREQ(name, "");
    InStep("Nothing", [] {});
    EXPECT_FALSE(HC_Show_Undo_Step(nullptr)) << "an empty step is dropped";
    HC_Begin_Undo_Step("Outer");
    HC_Create_Segment("/a");
    InStep("Inner", [] { HC_Create_Segment("/b"); });
    EXPECT_FALSE(HC_Undo()) << "refused while a step is open";
    HC_End_Undo_Step();
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"HC_Undo: an undo step is open"});
    HC_Show_Undo_Step(name);
    EXPECT_STREQ(name, "Outer");
    EXPECT_TRUE(HC_Undo());
    EXPECT_EQ(HC_QShow_Existence("/", "segments"), 0) << "the inner step went with the outer";
    EXPECT_TRUE(HC_Show_Redo_Step(name));
    EXPECT_STREQ(name, "Outer");
    InStep("Other", [] { HC_Create_Segment("/c"); });
    EXPECT_FALSE(HC_Redo()) << "a new step forgets what could be redone";
    HC_Create_Segment("/outside");
    EXPECT_FALSE(HC_Undo()) << "a change outside a step forgets the history";
    HC_End_Undo_Step();
    EXPECT_EQ(TakeErrors(), std::vector<std::string>{"HC_End_Undo_Step: no undo step is open"});
    InStep("Kept", [] { HC_Create_Segment("/d"); });
    HC_Reset_System();
    EXPECT_FALSE(HC_Show_Undo_Step(nullptr));
}

TEST_F(UndoTest, TheLimitBoundsTheStepsKept) {
    HC_Set_Undo_Limit(2);
    for (const char* path : {"/a", "/b", "/c"})
        InStep(path, [path] { HC_Create_Segment(path); });
    EXPECT_TRUE(HC_Undo());
    EXPECT_TRUE(HC_Undo());
    EXPECT_FALSE(HC_Undo());
    EXPECT_EQ(HC_QShow_Existence("/", "segments"), 1);
    HC_Set_Undo_Limit(0);
    EXPECT_EQ(HC_Show_Undo_Limit(), 0);
    EXPECT_FALSE(HC_Redo()) << "recording off forgets everything";
    InStep("Off", [] { HC_Create_Segment("/e"); });
    EXPECT_FALSE(HC_Undo());
    HC_Set_Undo_Limit(-1);
    EXPECT_EQ(TakeErrors(),
              std::vector<std::string>{"HC_Set_Undo_Limit: the undo limit -1 is negative"});
}

TEST_F(UndoTest, TheJournalHearsUndoAndRedo) {
    HC_KEY segment = HC_Create_Segment("/a");
    InStep("Colour", [] {
        HC_Open_Segment("/a");
        HC_Set_Color("red");
        HC_Close_Segment();
    });
    HC_REVISION revision = HC_Show_Revision();
    HC_Undo();
    HC_CHANGE change;
    ASSERT_EQ(HC_Show_Changes_Since(revision, &change, 1), 1);
    EXPECT_EQ(change.key, segment);
    EXPECT_EQ(change.kind, HC_CHANGE_ATTRIBUTES);
    revision = HC_Show_Revision();
    InStep("Delete", [] { HC_Delete_Segment("/a"); });
    HC_Undo();
    ASSERT_EQ(HC_Show_Changes_Since(HC_Show_Revision() - 1, &change, 1), 1);
    EXPECT_EQ(change.kind, HC_CHANGE_SEGMENT_CREATED);
    EXPECT_EQ(change.key, segment);
}

} // namespace
