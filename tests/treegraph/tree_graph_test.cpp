#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "treegraph/tree_graph.h"

namespace {

using Items = std::vector<TreeGraphItem*>;

class TreeGraphTest : public ::testing::Test {
protected:
    TreeGraphTest() {
        graph.SetRoot(new TreeGraphItem(&graph));
        root = graph.GetRoot();
    }

    TreeGraph graph;
    TreeGraphItem* root = nullptr;
};

TEST_F(TreeGraphTest, ItemsSharingAKeyStayIndexedUntilTheLastOneGoes) {
    TreeGraphItem* first = root->AddChild("first", 5, true);
    TreeGraphItem* second = root->AddChild("second", 5, false);
    TreeGraphItem* other = first->AddChild("other", 7, true);

    EXPECT_EQ(graph.FindItems(5), (Items{first, second})) << "registration order, not list order";
    EXPECT_EQ(graph.FindItem(7), other);
    EXPECT_EQ(graph.GetIndexedKeyCount(), 2u);

    root->DeleteChild(first);
    EXPECT_EQ(graph.FindItems(5), (Items{second}));
    EXPECT_EQ(graph.FindItem(7), nullptr) << "a deleted subtree leaves the index";
    root->DeleteChild(second);
    EXPECT_EQ(graph.FindItems(5), Items{});
    EXPECT_EQ(graph.GetIndexedKeyCount(), 0u);
}

TEST_F(TreeGraphTest, OnlyAttachedItemsWithAKeyAreIndexed) {
    root->Init("model", 11, 0);
    TreeGraphItem* keyless = root->AddChild("keyless", 0, true);
    TreeGraphItem* sibling = keyless->AddSibling("sibling", 9, true);
    auto inserted = std::make_unique<TreeGraphItem>(&graph);
    inserted->Init("inserted", 13, 0);
    ASSERT_TRUE(sibling->InsertAfter(inserted.get()));
    TreeGraphItem* placed = inserted.release();

    EXPECT_EQ(graph.FindItem(0), nullptr);
    EXPECT_EQ(graph.FindItem(11), nullptr) << "the root";
    EXPECT_EQ(graph.FindItem(9), nullptr) << "AddSibling";
    EXPECT_EQ(graph.FindItem(13), nullptr) << "InsertAfter";
    EXPECT_EQ(graph.GetIndexedKeyCount(), 0u);

    keyless->SetKey(3);
    EXPECT_EQ(graph.FindItem(3), keyless) << "an attached item follows a key it gets later";
    sibling->SetKey(4);
    EXPECT_EQ(graph.FindItem(4), nullptr);

    // A client that wants placed items found registers them itself.
    graph.RegisterItem(placed);
    graph.RegisterItem(placed);
    EXPECT_EQ(graph.FindItems(13), (Items{placed}));
    graph.UnregisterItem(placed);
    graph.UnregisterItem(placed);
    EXPECT_EQ(graph.FindItem(13), nullptr);
    root->DeleteChild(placed);
    EXPECT_EQ(graph.GetIndexedKeyCount(), 1u);

    TreeGraph other;
    other.SetRoot(new TreeGraphItem(&other));
    TreeGraphItem* foreign = other.GetRoot()->AddChild("foreign", 8, true);
    graph.RegisterItem(nullptr);
    graph.RegisterItem(foreign);
    graph.UnregisterItem(foreign);
    EXPECT_EQ(graph.FindItem(8), nullptr);
    EXPECT_EQ(other.FindItem(8), foreign);
}

TEST_F(TreeGraphTest, ReKeyingMovesAnItemWithinTheIndex) {
    TreeGraphItem* a = root->AddChild("a", 5, true);
    TreeGraphItem* b = root->AddChild("b", 6, true);

    a->SetKey(6);
    EXPECT_EQ(graph.FindItem(5), nullptr);
    EXPECT_EQ(graph.FindItems(6), (Items{b, a}));
    a->Init("a", 7, 42);
    EXPECT_EQ(graph.FindItems(6), (Items{b}));
    EXPECT_EQ(graph.FindItem(7), a);
    EXPECT_EQ(a->GetData(), 42u);

    a->SetKey(0);
    EXPECT_EQ(graph.FindItem(7), nullptr);
    EXPECT_EQ(graph.GetIndexedKeyCount(), 1u);
    a->SetKey(-1);
    EXPECT_EQ(graph.FindItem(-1), a) << "every non-zero key is indexed";

    root->DeleteChild(a);
    EXPECT_EQ(graph.FindItem(-1), nullptr);
}

TEST(TreeGraphRoot, ReplacingTheRootEmptiesTheIndexAndRefusesItemsItCannotOwn) {
    TreeGraph graph;
    EXPECT_EQ(graph.GetRoot(), nullptr);
    graph.Reset();
    EXPECT_EQ(graph.GetRoot(), nullptr) << "only a view makes roots";
    graph.SetRoot(new TreeGraphItem(&graph));
    TreeGraphItem* root = graph.GetRoot();
    TreeGraphItem* a = root->AddChild("a", 1, true);
    a->AddChild("a1", 2, true)->AddChild("a11", 1, true);
    EXPECT_TRUE(graph.SetRoot(root)) << "the current root again changes nothing";
    EXPECT_FALSE(graph.SetRoot(a));
    TreeGraph other;
    TreeGraphItem foreign(&other);
    EXPECT_FALSE(graph.SetRoot(&foreign));
    EXPECT_EQ(graph.GetRoot(), root);
    EXPECT_EQ(graph.GetIndexedKeyCount(), 2u);

    graph.SetRoot(new TreeGraphItem(&graph));
    EXPECT_EQ(graph.GetIndexedKeyCount(), 0u);
    EXPECT_EQ(graph.GetRoot()->GetChildCount(), 0u);
    TreeGraphItem* kept = graph.GetRoot();
    kept->AddChild("b", 3, true);
    graph.Reset();
    EXPECT_EQ(graph.GetRoot(), kept) << "Reset leaves the tree to the view";
    EXPECT_EQ(graph.GetIndexedKeyCount(), 1u);
    EXPECT_TRUE(graph.SetRoot(nullptr));
    EXPECT_EQ(graph.GetRoot(), nullptr);
}

// Records what its destructor can still find under its own key.
class ProbeItem : public TreeGraphItem {
public:
    ProbeItem(TreeGraph* graph, std::size_t* found) : TreeGraphItem(graph), m_found(found) {}
    ~ProbeItem() override { *m_found = GetGraph()->FindItems(GetKey()).size(); }

private:
    std::size_t* m_found;
};

// Items unregister as they die; when the graph itself goes, the index is gone first and their
// unregistering must do nothing.
TEST(TreeGraphTeardown, ItemsOutliveTheIndexWhenTheGraphGoes) {
    std::size_t foundOnDelete = 99;
    std::size_t foundOnTeardown = 99;
    {
        TreeGraph graph;
        graph.SetRoot(new TreeGraphItem(&graph));
        TreeGraphItem* root = graph.GetRoot();
        auto* deleted = new ProbeItem(&graph, &foundOnDelete);
        deleted->Init("deleted", 42, 0);
        ASSERT_TRUE(root->AttachChild(deleted, true));
        auto* kept = new ProbeItem(&graph, &foundOnTeardown);
        kept->Init("kept", 42, 0);
        ASSERT_TRUE(root->AttachChild(kept, true));
        for (int i = 0; i < 1000; ++i)
            kept->AddChild("shared", i % 7 + 1, i % 2 == 0)->AddChild("leaf", 42, true);

        root->DeleteChild(deleted);
        EXPECT_EQ(foundOnDelete, 1002u) << "itself, kept and the 1000 leaves";
    }
    EXPECT_EQ(foundOnTeardown, 0u);
}

// Records every call as one line, a cancelled edit's text as "<null>".
class RecordingTarget : public TreeGraphMessageTarget {
public:
    void OnSelectItem(TreeGraphItem* item) override { Record("select", item); }
    void OnEndLabelEdit(TreeGraphItem* item, const char* text) override {
        Record("end edit", item, text ? text : "<null>");
    }
    void OnBeginLabelEdit(TreeGraphItem* item, const char* text) override {
        Record("begin edit", item, text);
    }
    void OnExpandItem(TreeGraphItem* item, bool expanding) override {
        Record("expand", item, expanding ? "true" : "false");
    }
    void OnStateIconClick(TreeGraphItem* item) override { Record("icon", item); }

    std::vector<std::string> calls;

private:
    void Record(const std::string& call, const TreeGraphItem* item,
                const std::string& detail = {}) {
        std::string label = item ? item->GetLabel() : "<null>";
        calls.push_back(call + " " + label + (detail.empty() ? "" : " " + detail));
    }
};

void SendAll(TreeGraphMessageTarget& target, TreeGraphItem* item) {
    target.OnSelectItem(item);
    target.OnEndLabelEdit(item, "edited");
    target.OnEndLabelEdit(item, nullptr);
    target.OnBeginLabelEdit(item, "item");
    target.OnExpandItem(item, true);
    target.OnExpandItem(item, false);
    target.OnStateIconClick(item);
}

TEST_F(TreeGraphTest, EveryCallbackReachesTheTargetUnchangedWhateverTheItem) {
    const std::vector<std::string> all = {"select X",
                                          "end edit X edited",
                                          "end edit X <null>",
                                          "begin edit X item",
                                          "expand X true",
                                          "expand X false",
                                          "icon X"};
    TreeGraph other;
    other.SetRoot(new TreeGraphItem(&other));
    other.GetRoot()->SetLabel("foreign");
    const struct {
        const char* name;
        TreeGraphItem* item;
    } rows[] = {
        {"item", root->AddChild("item", 0, true)},
        {"<null>", nullptr},
        {"foreign", other.GetRoot()},
    };
    for (const auto& row : rows) {
        RecordingTarget target;
        graph.SetMessageTarget(&target);
        SendAll(graph, row.item);
        std::vector<std::string> expected;
        for (std::string call : all)
            expected.push_back(call.replace(call.find('X'), 1, row.name));
        EXPECT_EQ(target.calls, expected) << row.name;
    }
}

TEST_F(TreeGraphTest, CallsWithoutATargetAreDropped) {
    TreeGraphItem* item = root->AddChild("item", 0, true);
    SendAll(graph, item);
    SendAll(graph, nullptr);

    RecordingTarget target;
    graph.SetMessageTarget(&target);
    graph.SetMessageTarget(&graph);
    EXPECT_EQ(graph.GetMessageTarget(), &target) << "a graph never relays to itself";
    graph.SetMessageTarget(nullptr);
    SendAll(graph, item);
    EXPECT_TRUE(target.calls.empty());

    struct Silent : TreeGraphMessageTarget {};
    Silent silent;
    graph.SetMessageTarget(&silent);
    SendAll(graph, item);
}

} // namespace
