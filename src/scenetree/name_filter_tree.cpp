// The segment tree filtered by segment name: only the segments that lead to a hit, open.

#include <algorithm>

#include <obsidra/hc_fastpath.h>

#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"

using namespace obsidra::scenetree;

long HoopsSegmentTree::SetNameFilter(std::string_view text, const std::atomic<bool>* cancel) {
    m_nameWalk.reset();
    if (text.empty()) {
        if (!m_nameFilter) return 0;
        m_nameFilter.reset();
        MakeTopNode();
        ReopenTrails(m_openBeforeFilter);
        m_openBeforeFilter.clear();
        return 0;
    }
    if (!m_topNode) return 0;
    SegmentNameMatches matches = FilterSegmentNames(m_startKey, text, cancel);
    if (matches.cancelled) return -1;
    const auto hits = static_cast<long>(matches.hits);
    ShowNameMatches(text, std::move(matches));
    return hits;
}

void HoopsSegmentTree::StartNameFilter(std::string_view text) {
    if (text.empty() || !m_topNode) {
        SetNameFilter(text);
        return;
    }
    m_nameWalk = std::make_unique<SegmentNameWalk>(m_startKey, text);
    m_nameWalkShown = false;
}

HoopsSegmentTree::NameFilterProgress HoopsSegmentTree::ContinueNameFilter(size_t budget) {
    if (!m_nameWalk) return NameFilterProgress::Done;
    if (m_nameWalk->Step(budget)) {
        const std::unique_ptr<SegmentNameWalk> walk = std::move(m_nameWalk);
        ShowNameMatches(walk->Text(), walk->TakeMatches());
        return NameFilterProgress::Done;
    }
    if (m_nameWalkShown || m_nameWalk->Matches().hits == 0) return NameFilterProgress::Walking;
    m_nameWalkShown = true;
    ShowNameMatches(m_nameWalk->Text(), m_nameWalk->Matches());
    return NameFilterProgress::FirstHitsShown;
}

void HoopsSegmentTree::ShowNameMatches(std::string_view text, SegmentNameMatches matches) {
    auto state = std::make_unique<NameFilterState>();
    state->text = std::string(text);
    state->matches = std::move(matches);
    if (!m_nameFilter) m_openBeforeFilter = OpenTrails();
    m_nameFilter = std::move(state);
    MakeTopNode();
    if (m_topNode) OpenFiltered(m_topNode);
}

void HoopsSegmentTree::Remake() {
    // A walk that was running is run again whole over the changed scene.
    const std::string text = m_nameWalk     ? m_nameWalk->Text()
                             : m_nameFilter ? m_nameFilter->text
                                            : std::string();
    m_nameWalk.reset();
    if (!text.empty()) {
        ShowNameMatches(text, FilterSegmentNames(m_startKey, text));
        return;
    }
    const std::vector<NodeTrail> open = OpenTrails();
    MakeTopNode();
    ReopenTrails(open);
}

std::vector<HoopsSegmentTree::NodeTrail> HoopsSegmentTree::OpenTrails() {
    std::vector<NodeTrail> trails;
    if (!m_topNode) return trails;
    NodeTrail trail;
    if (m_topNode->GetExpandedMark()) trails.push_back(trail);
    CollectOpenTrails(m_topNode, trail, trails);
    return trails;
}

void HoopsSegmentTree::ReopenTrails(const std::vector<NodeTrail>& trails) {
    for (const NodeTrail& trail : trails) {
        TreeGraphItem* node = m_topNode;
        if (node) OpenNode(node);
        for (auto step = trail.begin(); node && step != trail.end(); ++step) {
            TreeGraphItem* child = node->GetFirstChild();
            while (child && (child->GetKey() != step->first || child->GetData() != step->second))
                child = child->GetNextSibling();
            if (child) OpenNode(child);
            node = child;
        }
    }
}

bool HoopsSegmentTree::FilteredParent(HC_KEY segment) const {
    return m_nameFilter && m_nameFilter->matches.IsParent(segment);
}

const std::vector<HC_KEY>& HoopsSegmentTree::FilteredSubsegments(HC_KEY segment) {
    static const std::vector<HC_KEY> kNone;
    if (!m_nameFilter) return kNone;
    const auto found = m_nameFilter->matches.children.find(segment);
    if (found == m_nameFilter->matches.children.end()) return kNone;
    SegmentNameMatches::Kept& kept = found->second;
    const int count = HC_Fast_Subsegment_Count(segment);
    if (kept.listed == count) return kept.keys;
    std::vector<HC_KEY> all(static_cast<size_t>(count));
    if (count > 0)
        all.resize(static_cast<size_t>(HC_Fast_Subsegment_Keys(segment, 0, count - 1, all.data())));
    const auto& keep = m_nameFilter->matches.keep;
    kept.listed = count;
    kept.keys.clear();
    std::copy_if(all.begin(), all.end(), std::back_inserter(kept.keys),
                 [&keep](HC_KEY key) { return keep.count(key) != 0; });
    return kept.keys;
}

// Only the kept subsegments, and no grouping nodes: the filter is about segments.
void HoopsSegmentTree::ExpandFilteredSegment(TreeGraphItem* node, HC_KEY segment) {
    DeleteChildren(node);
    const std::uint32_t inherited = node->GetFlags() & kFlagInStaticModel;
    const std::vector<HC_KEY>& kept = FilteredSubsegments(segment);
    if (kept.size() > static_cast<size_t>(kPageSize)) {
        MakePages(node, NodeKind::SegmentPage, static_cast<int>(kept.size()));
        if (TreeGraphItem* first = node->GetFirstChild()) OpenNode(first);
        return;
    }
    for (HC_KEY key : kept)
        OpenFiltered(MakeSegmentNode(node, key, inherited));
}

// A kept segment is opened when a hit lies below it; hits themselves stay closed.
void HoopsSegmentTree::OpenFiltered(TreeGraphItem* node) {
    UpdateSelectionState(node);
    if (FilteredParent(node->GetKey())) OpenNode(node);
}

void HoopsSegmentTree::CollectOpenTrails(TreeGraphItem* node, NodeTrail& trail,
                                         std::vector<NodeTrail>& out) {
    for (TreeGraphItem* child = node->GetFirstChild(); child; child = child->GetNextSibling()) {
        if (!child->GetExpandedMark()) continue;
        trail.emplace_back(child->GetKey(), child->GetData());
        out.push_back(trail);
        CollectOpenTrails(child, trail, out);
        trail.pop_back();
    }
}

std::vector<HC_KEY> HoopsSegmentTree::SegmentChain(const TreeGraphItem* node) const {
    std::vector<HC_KEY> chain;
    for (; node && node != m_graph->GetRoot(); node = node->GetParent())
        if (KindOf(node) == NodeKind::Segment) chain.push_back(node->GetKey());
    std::reverse(chain.begin(), chain.end());
    return chain;
}

TreeGraphItem* HoopsSegmentTree::RevealSegmentChain(const std::vector<HC_KEY>& chain) {
    if (chain.empty() || !m_topNode) return nullptr;
    return Reveal(SearchResult{chain}, m_topNode);
}
