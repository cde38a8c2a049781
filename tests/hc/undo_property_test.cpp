// Random edits of every kind on random scenes, each a step: undoing them one by one gives back
// the scene as it was before each, redoing them the scene as it was after each.
#include <cstdlib>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include <obsidra/hc_check.h>
#include <obsidra/hc_journal.h>

#include "hc_test.h"
#include "undo_support.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int kEdits = 200, kSeeds = 3;
#else
constexpr int kEdits = 1000, kSeeds = 1;
#endif
// Copies and loads stop growing the scene beyond this many objects.
constexpr size_t kMaxObjects = 3000;

int FromEnvironment(const char* name, int fallback) {
    const char* value = std::getenv(name);
    return value && *value ? std::atoi(value) : fallback;
}

class Editor {
public:
    explicit Editor(unsigned seed) : m_random(seed) {}

    void Build() {
        HC_Create_Segment("/lib/part");
        HC_Create_Segment("/scene");
        for (int i = 0; i < 40; ++i)
            Edit(Pick(6));
    }

    // One random edit through the C interface; many fail on purpose (names taken, dead keys).
    void Edit(int kind) {
        hc::Database& db = hc::Current();
        switch (kind) {
        case 0:
            HC_Open_Segment_By_Key(Segment());
            HC_Create_Segment(Pick(3) ? Name().c_str() : "");
            HC_Close_Segment();
            return;
        case 1:
            InItem([&] { SetAttribute(); });
            return;
        case 2:
            InSegment([&] { InsertGeometry(); });
            return;
        case 3:
            EditGeometry();
            return;
        case 4: {
            static void (*const kUnsets[])() = {HC_UnSet_Color, HC_UnSet_Heuristics,
                                                HC_UnSet_Modelling_Matrix, HC_UnSet_User_Value};
            InItem([&] { kUnsets[Pick(4)](); });
            return;
        }
        case 5:
            AddLink();
            return;
        case 6:
            HC_Delete_By_Key(Any());
            return;
        case 7: {
            static const char* const kFilters[] = {"everything", "geometry", "attributes",
                                                   "segments, includes", "color, shells"};
            const std::string path = Path(Segment());
            HC_Flush_Contents(path.c_str(), kFilters[Pick(5)]);
            return;
        }
        case 8: {
            const auto [from, to] = TwoPaths();
            HC_Rename_Segment(from.c_str(), to.c_str());
            return;
        }
        case 9: {
            const HC_KEY key = Any();
            HC_Move_By_Key(key, Path(Segment()).c_str());
            return;
        }
        case 10:
            if (db.LiveObjects() < kMaxObjects) {
                const auto [from, to] = TwoPaths();
                HC_Copy_Segment(from.c_str(), to.c_str());
            }
            return;
        case 11:
            // Named styles take "/" as their source: the metafile writer cannot yet write a
            // definition whose source segment was deleted.
            InSegment([&] {
                const int pick = Pick(4);
                const std::string name = Name();
                if (pick == 0) HC_Define_Line_Style(name.c_str(), "--");
                if (pick == 1) HC_UnDefine_Line_Style(name.c_str());
                if (pick == 2) HC_Define_Named_Style(name.c_str(), "/");
                if (pick == 3) HC_UnDefine_Named_Style(name.c_str());
            });
            return;
        case 12: {
            const HC_KEY key = Any();
            const HC_KEY newKey = Pick(3) == 0 ? key : 100 + Pick(50);
            HC_Renumber_Key(key, newKey, Pick(2) ? "global" : "local");
            return;
        }
        case 13: {
            static const char* const kOptions[] = {"merge shells",
                                                   "remove duplicate shells",
                                                   "collapse matrices",
                                                   "segment names=discard",
                                                   "segment names=sequence",
                                                   "reorganize=attributes",
                                                   "extract geometry attributes, localize matrices",
                                                   "instance shells",
                                                   "discard user data"};
            const std::string path = Path(Segment());
            HC_Optimize_Segment_Tree(path.c_str(), kOptions[Pick(9)]);
            return;
        }
        case 14:
            if (db.LiveObjects() < kMaxObjects) {
                const std::string file =
                    ::testing::TempDir() + "undo_property_" + std::to_string(getpid()) + ".hmf";
                const auto [from, to] = TwoPaths();
                HC_Write_Metafile(from.c_str(), file.c_str(), "");
                HC_Read_Metafile(file.c_str(), to.c_str(), "");
                std::remove(file.c_str());
            }
            return;
        default:
            // Several deletions, nested in steps of their own, as a bulk delete makes them.
            for (int i = 0; i < 3; ++i) {
                HC_Begin_Undo_Step("one");
                HC_Delete_By_Key(Any());
                HC_End_Undo_Step();
            }
            return;
        }
    }
    // A kind of edit, made and filled more often than emptied, so that the scene grows.
    int PickKind() {
        static const double kWeights[] = {5, 4, 5, 2, 1, 2, 0.5, 0.3, 1, 1, 1, 1, 1, 0.5, 1, 0.3};
        return std::discrete_distribution<int>(std::begin(kWeights), std::end(kWeights))(m_random);
    }

    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }

private:
    // Original keys, which work whatever segment is open.
    std::vector<HC_KEY> Keys(const char* filter) {
        hc::Database& db = hc::Current();
        std::vector<HC_KEY> keys;
        for (const hc::Found& found :
             db.Contents(db.Root(), hc::Filter::ParseOrReport(filter), true, false))
            if (found.type != hc::ContentKind::StaticModel && !hc::IsAttribute(found.type) &&
                !hc::IsDefinition(found.type))
                keys.push_back(hc::OriginalKey(found.slot));
        return keys;
    }
    HC_KEY PickOf(const std::vector<HC_KEY>& keys) {
        return keys.empty() ? hc::OriginalKey(0) : keys[size_t(Pick(int(keys.size())))];
    }
    HC_KEY Segment() { return PickOf(Keys("segments")); }
    HC_KEY Any() { return PickOf(Keys("everything")); }
    HC_KEY Item() { return PickOf(Keys("geometry")); }
    std::string Name() {
        static const char* const kNames[] = {"a", "b", "c", "part", "lib", "scene", "x"};
        return kNames[Pick(7)];
    }
    // A segment's path and a path below another segment, picked in that order (a seed must
    // give the same edits whatever order a compiler evaluates arguments in).
    std::pair<std::string, std::string> TwoPaths() {
        std::string from = Path(Segment());
        std::string to = Path(Segment());
        return {from, to + "/" + Name()};
    }
    static std::string Path(HC_KEY key) {
        char path[HC_TEXT_MAX];
        HC_Show_Segment(key, path);
        return path;
    }

    template <typename Body>
    void InSegment(Body&& body) {
        HC_Open_Segment_By_Key(Segment());
        body();
        HC_Close_Segment();
    }
    // In a segment, or in a geometry item.
    template <typename Body>
    void InItem(Body&& body) {
        HC_KEY item = Item();
        if (Pick(3) == 0 && hc::Current().Get(hc::Current().Resolve(item))) {
            HC_Open_Geometry(item);
            body();
            HC_Close_Geometry();
        } else {
            InSegment(body);
        }
    }

    void SetAttribute() {
        static const char* const kColors[] = {"red", "faces=blue", "edges=green, lines=red"};
        float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        const int pick = Pick(5);
        if (pick == 0) HC_Set_Color(kColors[Pick(3)]);
        if (pick == 1) HC_Set_Heuristics(Pick(2) ? "static model" : "no static model");
        if (pick == 2) {
            matrix[12] = float(Pick(5));
            HC_Set_Modelling_Matrix(matrix);
        }
        if (pick == 3) HC_Set_User_Value(Pick(100));
        if (pick == 4) HC_Set_Visibility(Pick(2) ? "edges=off" : "faces=on, markers=off");
    }

    void InsertGeometry() {
        const HC_POINT points[] = {{float(Pick(4)), 0, 0}, {1, float(Pick(4)), 0}, {0, 1, 1}};
        const int faces[] = {3, 0, 1, 2};
        const int pick = Pick(4);
        if (pick == 0) HC_Insert_Shell(3, points, 4, faces);
        if (pick == 1) HC_Insert_Polyline(3, points);
        if (pick == 2) HC_Insert_Text(0, 0, 0, "words");
        if (pick == 3) HC_Insert_Marker(Pick(9), 0, 0);
    }

    void EditGeometry() {
        HC_KEY item = Item();
        const HC_POINT points[] = {{5, 5, 5}, {6, float(Pick(3)), 6}};
        const int pick = Pick(5);
        if (pick == 0) HC_Edit_Text(item, 0, 0, 1, "W");
        if (pick == 1) HC_Edit_Shell_Points(item, 0, 1, 2, points);
        if (pick == 2) HC_Set_Face_Regions(item, 0, 1, Pick(5));
        if (pick == 3) HC_Set_LOD_Type(item, 1, "quadric");
        if (pick == 4) HC_Edit_Polyline(item, 0, 1, 2, points);
    }

    void AddLink() {
        HC_KEY target = Segment();
        switch (Pick(5)) {
        case 0:
            return InSegment([&] { HC_Include_Segment_By_Key(target); });
        case 1:
            return InSegment([&] { HC_Conditional_Style_By_Key(target, "hover"); });
        case 2:
            return InSegment([&] { HC_Named_Style_Segment(Name().c_str()); });
        case 3:
            return InSegment([&] { HC_Reference_Geometry_By_Key(Any()); });
        default: {
            // A reference attached to an item.
            HC_KEY item = Item();
            if (!hc::Current().Get(hc::Current().Resolve(item))) return;
            HC_Open_Geometry(item);
            HC_Reference_Geometry_By_Key(Any());
            HC_Close_Geometry();
        }
        }
    }

    std::mt19937 m_random;
};

class UndoPropertyTest : public HcTest {};

TEST_F(UndoPropertyTest, UndoingAllGivesBackTheStartAndRedoingAllTheEnd) {
    const int edits = FromEnvironment("OBSIDRA_UNDO_EDITS", kEdits);
    const int firstSeed = FromEnvironment("OBSIDRA_UNDO_SEED", 1);
    const int seeds = std::getenv("OBSIDRA_UNDO_SEED") ? 1 : kSeeds;
    HC_Set_Undo_Limit(edits);
    for (int seed = firstSeed; seed < firstSeed + seeds; ++seed) {
        SCOPED_TRACE("OBSIDRA_UNDO_SEED=" + std::to_string(seed));
        std::printf("undo property test: seed %d, %d edits\n", seed, edits);
        HC_Reset_System();
        Editor editor{unsigned(seed)};
        editor.Build();
        std::vector<std::string> scenes{SceneText(false)};
        std::vector<int> kinds{-1}; // the kind of edit of each step
        for (int i = 0; i < edits; ++i) {
            const int kind = editor.PickKind();
            const HC_REVISION revision = HC_Show_Revision();
            InStep(std::to_string(kind).c_str(), [&] { editor.Edit(kind); });
            // A step that changed nothing is not kept.
            if (HC_Show_Revision() != revision) {
                scenes.push_back(SceneText(false));
                kinds.push_back(kind);
            }
        }
        std::printf("  %zu steps kept, %zu objects, %zu errors\n", scenes.size() - 1,
                    hc::Current().LiveObjects(), Errors().size());
        TakeErrors();
        int undone = 0;
        for (; HC_Undo(); ++undone)
            ASSERT_EQ(SceneText(false), scenes[scenes.size() - 2 - size_t(undone)])
                << "undoing step " << scenes.size() - 1 - size_t(undone) << ", an edit of kind "
                << kinds[scenes.size() - 1 - size_t(undone)];
        EXPECT_EQ(size_t(undone) + 1, scenes.size());
        for (int redone = 1; HC_Redo(); ++redone)
            ASSERT_EQ(SceneText(false), scenes[size_t(redone)])
                << "redoing step " << redone << ", an edit of kind " << kinds[size_t(redone)];
        char report[256];
        EXPECT_EQ(HC_Check_Database(report, sizeof report), 0) << report;
        EXPECT_EQ(TakeErrors(), std::vector<std::string>());
    }
    HC_Set_Undo_Limit(HC_UNDO_DEFAULT_LIMIT);
}

} // namespace
