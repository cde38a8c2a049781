#pragma once

#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "hc/hc_test.h"
#include "mvo/base_model.h"
#include "mvo/base_view.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using Strings = std::vector<std::string>;

// An item that keeps what a view would show: the expander and the highlight.
class RecordingItem : public TreeGraphItem {
public:
    using TreeGraphItem::TreeGraphItem;

    TreeGraphItem* AddChild(const char* label, TreeGraphKey key, bool atEnd) override {
        auto* item = new RecordingItem(GetGraph());
        item->Init(label, key, 0);
        if (AttachChild(item, atEnd)) return item;
        delete item;
        return nullptr;
    }
    TreeGraphItem* AddSibling(const char* label, TreeGraphKey key, bool) override {
        auto* item = new RecordingItem(GetGraph());
        item->Init(label, key, 0);
        if (InsertAfter(item)) return item;
        delete item;
        return nullptr;
    }
    void SetHasChildren(bool hasChildren) override { m_hasChildren = hasChildren; }
    void SetHighlighted(bool highlighted) override { m_highlighted = highlighted; }

    bool HasChildren() const { return m_hasChildren; }
    bool Highlighted() const { return m_highlighted; }

private:
    bool m_hasChildren = false;
    bool m_highlighted = false;
};

class RecordingGraph : public TreeGraph {
public:
    RecordingGraph() { RecordingGraph::Reset(); }
    ~RecordingGraph() override { SetRoot(nullptr); }
    void Reset() override { SetRoot(new RecordingItem(this)); }
    void ClearMessages() override { m_messages.clear(); }
    void AddMessage(const char* line) override { m_messages.emplace_back(line); }
    const std::vector<std::string>& Messages() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
};

// A model and its view over a fresh database; every test ends with no error reported.
class SegmentTreeTest : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_model = std::make_unique<HBaseModel>();
        m_view = std::make_unique<HBaseView>(m_model.get());
    }
    void TearDown() override {
        m_tree.reset();
        m_view.reset();
        m_model.reset();
        EXPECT_EQ(TakeErrors(), std::vector<std::string>{});
        HcTest::TearDown();
    }

    HC_KEY ModelKey() const { return m_view->GetModelKey(); }
    std::string ModelPath() const { return Path(ModelKey()); }

    HoopsSegmentTree& MakeTree(HC_KEY start = -1) {
        m_tree.reset();
        m_tree = std::make_unique<HoopsSegmentTree>(m_view.get(), &m_graph, start, &m_notifier);
        return *m_tree;
    }
    HoopsSegmentTree& Tree() { return m_tree ? *m_tree : MakeTree(); }
    TreeGraphItem* Top() { return Tree().GetTopNode(); }

    TreeGraphItem* Expand(TreeGraphItem* item) {
        m_graph.OnExpandItem(item, true);
        return item;
    }
    // The child of item with that label, expanded; fails the test when there is none.
    TreeGraphItem* Open(TreeGraphItem* item, const std::string& label) {
        for (TreeGraphItem* child = item->GetFirstChild(); child; child = child->GetNextSibling())
            if (child->GetLabel() && label == child->GetLabel()) return Expand(child);
        ADD_FAILURE() << "no child \"" << label << "\"";
        return item;
    }
    static std::vector<std::string> Labels(const TreeGraphItem* item) {
        std::vector<std::string> labels;
        for (TreeGraphItem* child = item->GetFirstChild(); child; child = child->GetNextSibling())
            labels.emplace_back(child->GetLabel() ? child->GetLabel() : "");
        return labels;
    }
    static RecordingItem* Shown(TreeGraphItem* item) { return static_cast<RecordingItem*>(item); }
    static std::string KeyHex(HC_KEY key) { return obsidra::scenetree::KeyText(key); }

    // Opens the model segment (or the path below it) for building a scene.
    static void OpenModelPath(HC_KEY model, const char* path = nullptr) {
        HC_Open_Segment_By_Key(model);
        if (path) HC_Open_Segment(path);
    }
    // A segment of that name in the model, made when it is not there.
    HC_KEY Make(const char* name) {
        OpenModelPath(ModelKey());
        const HC_KEY key = HC_Open_Segment(name);
        Close(2);
        return key;
    }
    // Subsegments s0, s1, ... of the model, enough to fill pages; their keys.
    std::vector<HC_KEY> MakeNumbered(int count) {
        std::vector<HC_KEY> keys;
        OpenModelPath(ModelKey());
        for (int i = 0; i < count; ++i)
            keys.push_back(HC_Create_Segment(("s" + std::to_string(i)).c_str()));
        Close();
        return keys;
    }
    static void Close(int levels = 1) {
        for (int i = 0; i < levels; ++i)
            HC_Close_Segment();
    }

    RecordingGraph m_graph;
    RecordingNotifier m_notifier;
    std::unique_ptr<HBaseModel> m_model;
    std::unique_ptr<HBaseView> m_view;
    std::unique_ptr<HoopsSegmentTree> m_tree;
};
