#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "treegraph/tree_graph.h"

namespace {

using Labels = std::vector<std::string>;

std::string LabelOf(const TreeGraphItem* item) {
    return item->GetLabel() ? item->GetLabel() : "<null>";
}

Labels ChildLabels(const TreeGraphItem* parent) {
    Labels labels;
    for (auto* child = parent->GetFirstChild(); child; child = child->GetNextSibling())
        labels.push_back(LabelOf(child));
    return labels;
}

// A headless graph with a plain root.
class TreeGraphItemTest : public ::testing::Test {
protected:
    TreeGraphItemTest() {
        graph.SetRoot(new TreeGraphItem(&graph));
        root = graph.GetRoot();
    }

    TreeGraph graph;
    TreeGraphItem* root = nullptr;
};

TEST_F(TreeGraphItemTest, ChildrenGoToEitherEndAndAfterASibling) {
    TreeGraphItem* c = root->AddChild("c", 0, true);
    TreeGraphItem* e = root->AddChild("e", 0, true);
    TreeGraphItem* a = root->AddChild("a", 0, false);
    EXPECT_EQ(root->GetLastChild(), e) << "prepending must not move the tail";

    a->AddSibling("b", 0, true);
    c->AddSibling("d", 0, false);
    TreeGraphItem* f = e->AddSibling("f", 0, false);
    EXPECT_EQ(ChildLabels(root), (Labels{"a", "b", "c", "d", "e", "f"}));
    EXPECT_EQ(root->GetLastChild(), f) << "a sibling after the last child is the new tail";
    EXPECT_EQ(root->GetChildCount(), 6u);
    EXPECT_EQ(f->GetParent(), root);

    EXPECT_EQ(f->GetNextSibling(), nullptr);
    EXPECT_EQ(f->GetLastChild(), nullptr);
    EXPECT_EQ(root->GetNextSibling(), nullptr);
    EXPECT_EQ(root->AddSibling("none", 0, false), nullptr);
    TreeGraphItem loose(&graph);
    EXPECT_EQ(loose.GetNextSibling(), nullptr);
}

TEST_F(TreeGraphItemTest, OnlyAnItemsOwnChildrenAreDeleted) {
    TreeGraphItem* a = root->AddChild("a", 0, true);
    TreeGraphItem* b = root->AddChild("b", 0, true);
    TreeGraphItem* c = root->AddChild("c", 0, true);
    TreeGraphItem* a1 = a->AddChild("a1", 0, true);

    root->DeleteChild(a1);
    a->DeleteChild(c);
    root->DeleteChild(nullptr);
    EXPECT_EQ(ChildLabels(root), (Labels{"a", "b", "c"}));
    EXPECT_EQ(ChildLabels(a), (Labels{"a1"}));

    root->DeleteChild(b);
    EXPECT_EQ(ChildLabels(root), (Labels{"a", "c"}));
    delete c;
    EXPECT_EQ(root->GetLastChild(), a) << "an item deleted directly leaves its list";
    delete graph.GetRoot();
    EXPECT_EQ(graph.GetRoot(), nullptr);
}

// Adding leaves the cursor alone; every removal puts it back on the front. A view drops
// children by deleting the current one and stepping on, so the second child always survives.
TEST_F(TreeGraphItemTest, CursorReturnsToTheFirstChildAfterAnyRemoval) {
    TreeGraphItem* a = root->AddChild("a", 0, true);
    TreeGraphItem* b = root->AddChild("b", 0, true);
    TreeGraphChildList& children = root->GetChildren();
    EXPECT_EQ(children.Rewind(), a);
    EXPECT_EQ(children.Advance(), b);
    root->AddChild("front", 0, false);
    EXPECT_EQ(children.GetCurrent(), b);

    for (int count = 1; count <= 5; ++count) {
        SCOPED_TRACE(count);
        TreeGraphItem* parent = root->AddChild("parent", 0, true);
        for (int i = 0; i < count; ++i)
            parent->AddChild(std::to_string(i).c_str(), 0, true);
        TreeGraphChildList& list = parent->GetChildren();
        for (auto* child = list.Rewind(); child; child = list.Advance())
            parent->DeleteChild(child);
        EXPECT_EQ(ChildLabels(parent), count == 1 ? Labels{} : Labels{"1"});
        root->DeleteChild(parent);
    }
    EXPECT_EQ(LabelOf(children.GetCurrent()), "front");
}

// Makes children of its own kind and, like a view, empties itself before its own part goes.
class LoggedItem : public TreeGraphItem {
public:
    LoggedItem(TreeGraph* graph, Labels* log) : TreeGraphItem(graph), m_log(log) {}
    ~LoggedItem() override {
        const std::string label = LabelOf(this);
        DeleteContents();
        m_log->push_back(label);
    }

    TreeGraphItem* AddChild(const char* label, TreeGraphKey key, bool atEnd) override {
        auto* child = new LoggedItem(GetGraph(), m_log);
        child->Init(label, key, 0);
        AttachChild(child, atEnd);
        return child;
    }

private:
    Labels* m_log;
};

TEST(TreeGraphItemLifetime, DescendantsAreDeletedBeforeTheirParentFrontFirst) {
    Labels log;
    TreeGraph graph;
    graph.SetRoot(new LoggedItem(&graph, &log));
    TreeGraphItem* root = graph.GetRoot();
    root->Init("root", 0, 0);
    TreeGraphItem* a = root->AddChild("a", 0, true);
    a->AddChild("a1", 0, true);
    a->AddChild("a2", 0, true)->AddChild("a21", 0, true);
    root->AddChild("b", 0, true);

    graph.SetRoot(nullptr);
    EXPECT_EQ(log, (Labels{"a1", "a21", "a2", "a", "b", "root"}));
}

TEST_F(TreeGraphItemTest, VeryDeepAndWideTreesWork) {
    TreeGraphItem* node = root;
    for (int depth = 0; depth < 200000; ++depth)
        node = node->AddChild("deep", 0, true);
    graph.SetRoot(new TreeGraphItem(&graph));
    root = graph.GetRoot();

    std::vector<TreeGraphItem*> items;
    for (int i = 0; i < 100000; ++i)
        items.push_back(root->AddChild(std::to_string(i).c_str(), 0, true));
    for (std::size_t i = 1; i < items.size(); i += 2)
        root->DeleteChild(items[i]);
    ASSERT_EQ(root->GetChildCount(), 50000u);
    int expected = 0;
    for (auto* child = root->GetFirstChild(); child; child = child->GetNextSibling(), expected += 2)
        ASSERT_EQ(LabelOf(child), std::to_string(expected));
    EXPECT_EQ(LabelOf(root->GetLastChild()), "99998");
}

TEST_F(TreeGraphItemTest, AttachAndInsertRefuseWhatWouldBreakTheTree) {
    TreeGraphItem* a = root->AddChild("a", 0, true);
    TreeGraphItem* a1 = a->AddChild("a1", 0, true);
    TreeGraphItem* b = root->AddChild("b", 0, true);
    TreeGraph other;
    TreeGraphItem foreign(&other);

    EXPECT_FALSE(a1->AttachChild(nullptr, true));
    EXPECT_FALSE(a1->AttachChild(a1, true));
    EXPECT_FALSE(a1->AttachChild(a, true)) << "an ancestor";
    EXPECT_FALSE(a1->AttachChild(root, true)) << "the root";
    EXPECT_FALSE(b->AttachChild(a1, true)) << "already in a list";
    EXPECT_FALSE(b->AttachChild(&foreign, true));
    EXPECT_FALSE(a1->InsertAfter(a));
    EXPECT_FALSE(b->InsertAfter(a1));
    EXPECT_FALSE(root->InsertAfter(&foreign));
    EXPECT_EQ(ChildLabels(root), (Labels{"a", "b"}));
    EXPECT_EQ(ChildLabels(a), (Labels{"a1"}));

    // A subtree built apart may be placed, but not below one of its own items.
    auto loose = std::make_unique<TreeGraphItem>(&graph);
    loose->Init("loose", 0, 0);
    TreeGraphItem* inner = loose->AddChild("inner", 0, true);
    EXPECT_FALSE(inner->AttachChild(loose.get(), true));
    ASSERT_TRUE(a1->InsertAfter(loose.get()));
    loose.release();
    EXPECT_EQ(ChildLabels(a), (Labels{"a1", "loose"}));
    EXPECT_EQ(inner->GetParent()->GetParent(), a);
}

TEST_F(TreeGraphItemTest, LabelsAndTagsAreOwnedCopies) {
    char text[] = "first";
    TreeGraphItem* a = root->AddChild(text, 0, true);
    a->SetTag(text);
    text[0] = 'X';
    a->SetLabel(a->GetLabel());
    EXPECT_STREQ(a->GetLabel(), "first");
    EXPECT_STREQ(a->GetTag(), "first");
    a->SetTag(nullptr);
    EXPECT_EQ(a->GetTag(), nullptr);
    EXPECT_EQ(root->AddChild(nullptr, 0, true)->GetLabel(), nullptr);
}

} // namespace
