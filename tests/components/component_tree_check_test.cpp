#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "components/component_tree.h"
#include "components/testing/memory_component_host.h"
#include "sample_building.h"

namespace obsidra::components {
namespace {

using testing::MemoryComponentHost;
using Path = std::vector<std::string_view>;
using Call = MemoryComponentHost::VisibilityCall;

Path Join(Path base, std::initializer_list<std::string_view> more) {
    base.insert(base.end(), more);
    return base;
}

const Path kProject{"工程A"};
const Path kArchitecture = Join(kProject, {"建筑"});
const Path kOuterWalls = Join(kArchitecture, {"墙体", "外墙"});
const Path kAttribute = Join(kOuterWalls, {"F1", "外墙属性1"});
const Path kWallA = Join(kAttribute, {"QT-001"});
const Path kWallB = Join(kAttribute, {"0000abcd-0001-f00d-0123-456789abcdef"});

class CheckBoxes : public ::testing::Test {
protected:
    CheckBoxes() : m_host({sample::MakeProject()}), m_tree(&m_host) {
        m_tree.SetGrouping(Grouping::ByDiscipline);
        m_tree.RebuildFromHost();
        m_host.ClearRecordedCalls();
    }

    NodeIndex Node(const Path& path) const {
        const NodeIndex node = sample::FindNode(m_tree, path);
        EXPECT_NE(node, kNoNode) << "no node at " << Describe(path);
        return node;
    }

    CheckState State(const Path& path) const { return m_tree.GetCheckState(Node(path)); }

    static std::string Describe(const Path& path) {
        std::string text;
        for (const std::string_view label : path) {
            text += '/';
            text += label;
        }
        return text;
    }

    void ExpectStates(const std::vector<std::pair<Path, CheckState>>& expected,
                      const char* context) const {
        for (const auto& [path, state] : expected)
            EXPECT_EQ(State(path), state) << context << ": " << Describe(path);
    }

    MemoryComponentHost m_host;
    ComponentTree m_tree;
};

// A partly checked node ticks its whole subtree by mouse.
TEST_F(CheckBoxes, UntickingOneGeometryMakesEveryAncestorPartlyChecked) {
    m_tree.ToggleByMouse(Node(Join(kWallA, {"几何0"})));
    ExpectStates({{Join(kWallA, {"几何0"}), CheckState::Unchecked},
                  {Join(kWallA, {"几何1"}), CheckState::Checked},
                  {kWallA, CheckState::PartlyChecked},
                  {kAttribute, CheckState::PartlyChecked},
                  {kOuterWalls, CheckState::PartlyChecked},
                  {kArchitecture, CheckState::PartlyChecked},
                  {kProject, CheckState::PartlyChecked},
                  {{}, CheckState::PartlyChecked},
                  {kWallB, CheckState::Checked},
                  {{"工程A", "结构"}, CheckState::Checked}},
                 "one geometry unticked");
    EXPECT_EQ(m_host.VisibilityCalls(), (std::vector<Call>{{11, false}}));
    EXPECT_EQ(m_host.RedrawCount(), 1);

    m_tree.ToggleByMouse(Node(Join(kWallA, {"几何1"})));
    ExpectStates({{kWallA, CheckState::Unchecked}, {kAttribute, CheckState::PartlyChecked}},
                 "both geometries unticked");
    m_host.ClearRecordedCalls();
    m_tree.ToggleByMouse(m_tree.Root());
    for (NodeIndex node = 0; node < static_cast<NodeIndex>(m_tree.NodeCount()); ++node)
        EXPECT_EQ(m_tree.GetCheckState(node), CheckState::Checked) << m_tree.Label(node);
    EXPECT_EQ(m_host.VisibilityCalls().size(), 6u);
    EXPECT_EQ(m_host.IsVisible(11), true);
    EXPECT_EQ(m_host.RedrawCount(), 1);
}

TEST_F(CheckBoxes, SiblingScanDecidesTheParent) {
    const Path f1 = Join(kOuterWalls, {"F1"});
    const Path f2 = Join(kOuterWalls, {"F2"});
    const Path roof = Join(kOuterWalls, {"屋面"});
    const Path basement = Join(kOuterWalls, {"地下室"});
    const Path walls = Join(kArchitecture, {"墙体"});
    const struct {
        const char* name;
        std::vector<std::pair<Path, CheckState>> boxes; // set before, without propagation
        Path toggled;
        std::vector<std::pair<Path, CheckState>> expected;
    } rows[] = {
        {"a box-less last sibling ends the scan before the disagreeing F1 and F2 are seen",
         {{f1, CheckState::Unchecked}, {basement, CheckState::NoBox}},
         roof,
         {{kOuterWalls, CheckState::Unchecked}, {walls, CheckState::PartlyChecked}}},
        {"an agreeing last sibling lets the scan go on to F2, which disagrees",
         {{f1, CheckState::Unchecked}, {basement, CheckState::Unchecked}},
         roof,
         {{kOuterWalls, CheckState::PartlyChecked}, {walls, CheckState::PartlyChecked}}},
        {"all siblings agree",
         {{f1, CheckState::Unchecked},
          {f2, CheckState::Unchecked},
          {basement, CheckState::Unchecked}},
         roof,
         {{kOuterWalls, CheckState::Unchecked}, {walls, CheckState::PartlyChecked}}},
        {"box-less siblings between agreeing ones are passed over",
         {{f1, CheckState::Unchecked}, {f2, CheckState::NoBox}, {roof, CheckState::Unchecked}},
         basement,
         {{kOuterWalls, CheckState::Unchecked}}},
        {"a box-less parent keeps no box and its own siblings are scanned next",
         {{kOuterWalls, CheckState::NoBox},
          {f2, CheckState::Unchecked},
          {roof, CheckState::Unchecked},
          {basement, CheckState::Unchecked}},
         f1,
         {{kOuterWalls, CheckState::NoBox},
          {walls, CheckState::PartlyChecked},
          {kArchitecture, CheckState::PartlyChecked}}},
        {"partly checked ancestors skip box-less ones",
         {{walls, CheckState::NoBox}},
         f1,
         {{kOuterWalls, CheckState::PartlyChecked},
          {walls, CheckState::NoBox},
          {kArchitecture, CheckState::PartlyChecked},
          {{}, CheckState::PartlyChecked}}},
    };
    for (const auto& row : rows) {
        m_tree.RebuildFromHost();
        for (const auto& [path, state] : row.boxes)
            m_tree.SetBox(Node(path), state);
        m_tree.ToggleByMouse(Node(row.toggled));
        ExpectStates(row.expected, row.name);
    }
}

TEST_F(CheckBoxes, SubtreeSettingAlwaysReachesTheFirstChild) {
    m_tree.SetBox(Node(kWallA), CheckState::NoBox);
    m_tree.SetBox(Node(Join(kWallA, {"几何0"})), CheckState::NoBox);
    m_tree.SetBox(Node(Join(kWallA, {"几何1"})), CheckState::NoBox);
    m_tree.SetBox(Node(kWallB), CheckState::NoBox);

    m_tree.SetCheckState(Node(kAttribute), CheckState::Unchecked, true);

    ExpectStates({{kWallA, CheckState::Unchecked},
                  {Join(kWallA, {"几何0"}), CheckState::Unchecked},
                  {Join(kWallA, {"几何1"}), CheckState::NoBox},
                  {kWallB, CheckState::NoBox},
                  {Join(kWallB, {"几何0"}), CheckState::Unchecked}},
                 "subtree of the attribute");
    EXPECT_TRUE(m_host.VisibilityCalls().empty());
}

TEST_F(CheckBoxes, SettingWithoutSubtreeStillAlignsAncestors) {
    m_tree.SetCheckState(Node(kWallB), CheckState::Unchecked, false);
    ExpectStates(
        {{Join(kWallB, {"几何0"}), CheckState::Checked}, {kAttribute, CheckState::PartlyChecked}},
        "component alone");
}

TEST_F(CheckBoxes, MouseShowsAndHidesGeometryInTreeOrderWithOneRedraw) {
    const std::vector<std::int64_t> architecture{11, 12, 13, 15, 14, 16};
    const auto calls = [&](bool visible) {
        std::vector<Call> expected;
        for (const std::int64_t id : architecture)
            expected.push_back({id, visible});
        return expected;
    };

    m_tree.ToggleByMouse(Node(kArchitecture));
    EXPECT_EQ(m_host.VisibilityCalls(), calls(false));
    EXPECT_EQ(m_host.RedrawCount(), 1);
    EXPECT_EQ(State(kArchitecture), CheckState::Unchecked);
    EXPECT_EQ(State(kProject), CheckState::PartlyChecked);

    m_host.ClearRecordedCalls();
    m_tree.ToggleByMouse(Node(kArchitecture));
    EXPECT_EQ(m_host.VisibilityCalls(), calls(true));
    EXPECT_EQ(m_host.RedrawCount(), 1);
    EXPECT_EQ(State(kProject), CheckState::Checked);
}

TEST_F(CheckBoxes, SpaceChangesTheSameBoxesButNeverTheHost) {
    MemoryComponentHost otherHost({sample::MakeProject()});
    ComponentTree byMouse(&otherHost);
    byMouse.RebuildFromHost();
    byMouse.ToggleByMouse(sample::FindNode(byMouse, kArchitecture));

    m_tree.Select(Node(kArchitecture));
    m_tree.ToggleSelectedByKey();

    EXPECT_EQ(sample::DumpTree(m_tree, true), sample::DumpTree(byMouse, true));
    EXPECT_TRUE(m_host.VisibilityCalls().empty());
    EXPECT_EQ(m_host.RedrawCount(), 0);
    EXPECT_EQ(m_host.IsVisible(11), true);

    m_tree.ToggleSelectedByKey();
    EXPECT_EQ(State(kArchitecture), CheckState::Checked);
    EXPECT_EQ(m_host.RedrawCount(), 0);
}

TEST_F(CheckBoxes, NodesWithoutBoxOrSelectionIgnoreToggles) {
    m_tree.SetBox(Node(kAttribute), CheckState::NoBox);
    m_tree.ToggleByMouse(Node(kAttribute));
    m_tree.Select(Node(kAttribute));
    m_tree.ToggleSelectedByKey();
    m_tree.Select(kNoNode);
    m_tree.ToggleSelectedByKey();
    m_tree.ToggleByMouse(kNoNode);
    m_tree.ToggleByMouse(12345);

    EXPECT_EQ(State(kWallA), CheckState::Checked);
    EXPECT_EQ(m_host.RedrawCount(), 0);
    EXPECT_TRUE(m_host.VisibilityCalls().empty());
}

TEST_F(CheckBoxes, GeometryTheHostCannotFindIsSkipped) {
    MemoryComponentHost emptyHost;
    m_tree.SetHost(&emptyHost);

    m_tree.ToggleByMouse(m_tree.Root());

    EXPECT_EQ(emptyHost.GeometryLookupCount(), 6);
    EXPECT_TRUE(emptyHost.VisibilityCalls().empty());
    EXPECT_EQ(emptyHost.RedrawCount(), 1);
    EXPECT_EQ(m_tree.GetCheckState(m_tree.Root()), CheckState::Unchecked);
}

class StateRecorder final : public ComponentTreeObserver {
public:
    void CheckStatesChanged(std::span<const NodeIndex> nodes) override {
        batches.emplace_back(nodes.begin(), nodes.end());
    }
    void TreeReset() override { ++resets; }

    std::vector<std::vector<NodeIndex>> batches;
    int resets = 0;
};

TEST_F(CheckBoxes, ObserversHearEachChangeOnceAfterTheOperation) {
    StateRecorder recorder;
    m_tree.AddObserver(&recorder);

    m_tree.ToggleByMouse(Node(Join(kWallA, {"几何0"})));
    ASSERT_EQ(recorder.batches.size(), 1u);
    // The geometry, its component and the seven ancestors above it.
    std::vector<NodeIndex> changed = recorder.batches[0];
    std::sort(changed.begin(), changed.end());
    EXPECT_EQ(std::adjacent_find(changed.begin(), changed.end()), changed.end());
    EXPECT_EQ(changed.size(), 9u);

    m_tree.SetCheckState(Node(kWallB), CheckState::Checked, true);
    EXPECT_EQ(recorder.batches.size(), 1u) << "nothing changed, nothing reported";

    m_tree.RebuildFromHost();
    EXPECT_EQ(recorder.batches.size(), 1u) << "a rebuild is a reset, not a state change";
    EXPECT_EQ(recorder.resets, 1);
    m_tree.RemoveObserver(&recorder);
}

// Geometries 11-13 lie under kAttribute, 14-16 elsewhere.
TEST_F(CheckBoxes, IsolateXRayAndShowAllActOnTheWholeBuildingWithOneRedrawEach) {
    const auto visible = [this] {
        std::vector<std::int64_t> ids;
        for (std::int64_t id = 11; id <= 16; ++id)
            if (m_host.IsVisible(id).value_or(false)) ids.push_back(id);
        return ids;
    };
    m_tree.Isolate(Node(kAttribute));
    EXPECT_EQ(visible(), (std::vector<std::int64_t>{11, 12, 13}));
    ExpectStates({{kWallA, CheckState::Checked},
                  {kAttribute, CheckState::Checked},
                  {kOuterWalls, CheckState::PartlyChecked},
                  {{"工程A", "结构"}, CheckState::Unchecked}},
                 "isolated");
    EXPECT_EQ(m_host.RedrawCount(), 1);

    m_tree.XRay(Node(kWallA));
    for (std::int64_t id = 11; id <= 16; ++id)
        EXPECT_EQ(m_host.IsXRay(id), id > 12) << id;
    EXPECT_EQ(State(kAttribute), CheckState::Checked) << "x-ray leaves the boxes alone";

    m_tree.ShowAll();
    EXPECT_EQ(visible(), (std::vector<std::int64_t>{11, 12, 13, 14, 15, 16}));
    for (std::int64_t id = 11; id <= 16; ++id)
        EXPECT_EQ(m_host.IsXRay(id), false) << id;
    EXPECT_EQ(State({}), CheckState::Checked);
    EXPECT_EQ(m_host.RedrawCount(), 3);
}

} // namespace
} // namespace obsidra::components
