#include "../hc/hc_test.h"
#include "mvo/base_view.h"
#include "mvo/model_info.h"
#include "mvo/utility.h"

namespace {

using ViewServices = HcTest;

// Listeners hear each notice once however often they were added, until removed.
TEST_F(ViewServices, SelectionListenersHearTheViewsNotice) {
    HBaseModel model;
    HBaseView view(&model);
    int heard = 0;
    const auto count = [](HBaseView*, void* user) { ++*static_cast<int*>(user); };
    view.AddSelectionListener(count, &heard);
    view.AddSelectionListener(count, &heard);
    view.NotifySelectionChanged();
    EXPECT_EQ(heard, 1);
    view.RemoveSelectionListener(count, &heard);
    view.NotifySelectionChanged();
    EXPECT_EQ(heard, 1);
}

TEST_F(ViewServices, AViewIncludesItsModelInItsScene) {
    HBaseModel model;
    HBaseView view(&model);
    EXPECT_EQ(view.GetModelKey(), model.GetModelKey());
    EXPECT_EQ(view.GetModel(), &model);
    char path[HC_TEXT_MAX];
    HC_Show_Owner_By_Key(view.GetSceneKey(), path);
    EXPECT_EQ(Path(view.GetViewKey()), path);
    EXPECT_EQ(HC_Show_Include_Segment(view.GetIncludeLinkKey(), nullptr), model.GetModelKey());
    HC_Open_Segment_By_Key(view.GetSceneKey());
    EXPECT_EQ(List(".", "includes").size(), 1u);
    HC_Close_Segment();
    // A second model and view share nothing with the first.
    HBaseModel other;
    HBaseView second(&other);
    EXPECT_NE(other.GetModelKey(), model.GetModelKey());
    EXPECT_NE(second.GetViewKey(), view.GetViewKey());
    view.Update();
    view.FitItemByPath(model.GetModelKey(), 0, nullptr);
    EXPECT_EQ(view.GetUpdateCount(), 1);
    EXPECT_EQ(view.GetFittedKey(), model.GetModelKey());
}

TEST_F(ViewServices, SelectionTellsKeysReachedThroughDifferentIncludes) {
    HSelectionSet selection;
    const HC_KEY viaFirst[] = {-10, -20, -30};
    const HC_KEY viaSecond[] = {-10, -21, -30};
    selection.Select(-10, 3, viaFirst);
    selection.Select(-11);
    selection.Select(-11);
    selection.Select(0);
    EXPECT_EQ(selection.GetSize(), 2) << "no duplicates, no null keys";
    EXPECT_TRUE(selection.IsSelected(-10));
    EXPECT_TRUE(selection.IsSelected(-10, 3, viaFirst));
    EXPECT_FALSE(selection.IsSelected(-10, 3, viaSecond));
    EXPECT_TRUE(selection.IsSelected(-11, 0, nullptr));
    EXPECT_EQ(selection.GetSelectionItemAt(1), -11);
    EXPECT_EQ(selection.GetSelectionItemAt(2), -1);
    selection.DeSelect(-10, 3, viaFirst);
    EXPECT_FALSE(selection.IsSelected(-10));
    selection.DeSelectAll();
    EXPECT_EQ(selection.GetSize(), 0);
}

TEST_F(ViewServices, UtilitiesAnswerWithoutSideEffects) {
    EXPECT_EQ(HUtility::BuildIncludePath(-5, {-7, -8}, -2), (std::vector<HC_KEY>{-5, -8, -7, -2}));
    EXPECT_EQ(HUtility::BuildIncludePath(-5, {}, -5), std::vector<HC_KEY>{-5});
    HC_KEY walls = HC_Create_Segment("/house/walls");
    EXPECT_TRUE(HUtility::SegmentExists("/house/walls"));
    EXPECT_FALSE(HUtility::SegmentExists("/house/roof"));
    EXPECT_FALSE(HUtility::SegmentExists("/house/roof")) << "asking created nothing";
    EXPECT_TRUE(TakeErrors().empty());
    EXPECT_TRUE(HUtility::IsSegmentKey(walls));
    EXPECT_FALSE(HUtility::IsSegmentKey(0));
    EXPECT_TRUE(HUtility::RenameSegment(walls, "Walls 2"));
    EXPECT_EQ(Path(walls), "/house/Walls 2");
    EXPECT_FALSE(HUtility::RenameSegment(walls, "a/b"));
    struct {
        const char* file;
        const char* extension;
    } const rows[] = {{"scene.hsf", "hsf"},     {"/a.b/scene", ""}, {"C:\\x.y\\z.HMF", "HMF"},
                      {"archive.tar.gz", "gz"}, {"noext", ""},      {"", ""}};
    for (const auto& row : rows)
        EXPECT_EQ(HUtility::FindFileNameExtension(row.file), row.extension) << row.file;
}

TEST_F(ViewServices, CensusCountsKindsFacesTrianglesAndVertices) {
    HC_KEY top = HC_Open_Segment("/census");
    // Two quads sharing an edge: 2 faces, no triangles, 6 vertices.
    HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}};
    int faces[] = {4, 0, 1, 4, 3, 4, 1, 2, 5, 4};
    HC_Insert_Shell(6, points, 10, faces);
    HC_Open_Segment("child");
    Triangle();
    HC_Insert_Marker(0, 0, 0);
    HC_Include_Segment("/library");
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Open_Segment("/library");
    HC_POINT mesh[6] = {};
    HC_Insert_Mesh(2, 3, mesh);
    HC_Include_Segment("/census"); // a cycle
    HC_Close_Segment();

    HModelInfo info;
    info.ComputeModelInfo(top, 0);
    EXPECT_EQ(info.GetTotalShell(), 2u);
    EXPECT_EQ(info.GetTotalMarker(), 1u);
    EXPECT_EQ(info.GetTotalMesh(), 1u) << "through the include, once around the cycle";
    EXPECT_EQ(info.GetTotalFaces(), 2u + 1u + 4u);
    EXPECT_EQ(info.GetTotalTriangles(), 1u + 4u);
    EXPECT_EQ(info.GetTotalVertices(), 6u + 3u + 6u);

    HModelInfo empty;
    empty.ComputeModelInfo(HC_Create_Segment("/nothing"), 0);
    EXPECT_EQ(empty.GetTotalFaces() + empty.GetTotalShell(), 0u);
    empty.ComputeModelInfo(-123456, 0);
    EXPECT_EQ(empty.GetTotalVertices(), 0u) << "a dead key counts nothing";
}

} // namespace
