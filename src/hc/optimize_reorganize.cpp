// The reorganising passes of an optimisation: siblings with the same attributes become one
// segment; many siblings are grouped by where they lie.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "hc/optimize_passes.h"

namespace hc {

namespace {

// Segments that group spatially hold at most this many subsegments.
constexpr size_t kSpatialGroup = 8;
// How many earlier siblings with the same attributes a segment may fold into.
constexpr size_t kFoldCandidates = 8;

bool HasDefinitions(const Segment& segment) {
    for (size_t k = size_t(kFirstDefinition); k <= size_t(kLastDefinition); ++k)
        if (!segment.DefinitionsOf(ContentKind(k)).empty()) return true;
    return false;
}

// Spreads the low 10 bits of v to every third bit.
uint32_t Spread(uint32_t v) {
    v &= 0x3ff;
    v = (v | (v << 16)) & 0x030000ff;
    v = (v | (v << 8)) & 0x0300f00f;
    v = (v | (v << 4)) & 0x030c30c3;
    v = (v | (v << 2)) & 0x09249249;
    return v;
}

// User data of a and b that can live together: options of the same name agree, and values kept
// whole are equal where both have one.
bool UserDataAgrees(const Object& a, const Object& b) {
    if (!a.attributes || !b.attributes) return true;
    for (const Attribute& theirs : b.attributes->Items()) {
        const Attribute* mine = IsUserData(theirs.kind) ? a.attributes->Find(theirs.kind) : nullptr;
        if (!mine) continue;
        if (IsOptionString(theirs.kind)) {
            for (const Option& option : theirs.options.Options())
                if (const Option* same = mine->options.Find(option.name);
                    same && !(*same == option))
                    return false;
        } else if (mine->integer != theirs.integer || mine->entries != theirs.entries) {
            return false;
        }
    }
    return true;
}

} // namespace

bool Optimizer::CanFold(Slot a, Slot b) {
    const Object& first = *m_db.Get(a);
    const Object& second = *m_db.Get(b);
    // Named subsegments must stay apart from each other.
    std::unordered_set<std::string> names;
    for (Slot child : Children(a))
        if (!m_db.GetSegment(child)->name.empty()) names.insert(m_db.GetSegment(child)->name);
    for (Slot child : Children(b))
        if (names.count(m_db.GetSegment(child)->name)) return false;
    if (AttributeSignature(first, true) == AttributeSignature(second, true)) return true;
    if (m_choices.mergeUserData && UserDataAgrees(first, second)) {
        for (const Attribute& theirs :
             second.attributes ? second.attributes->Items() : std::vector<Attribute>{}) {
            if (!IsUserData(theirs.kind)) continue;
            Attribute& mine = m_db.ObtainAttribute(a, theirs.kind);
            if (IsOptionString(theirs.kind))
                mine.options.Merge(theirs.options);
            else
                mine = theirs;
            m_db.AttributeChanged(a, theirs.kind);
        }
        return true;
    }
    if (m_choices.localizeUserData) {
        LocalizeUserData(a);
        LocalizeUserData(b);
        return true;
    }
    return false;
}

void Optimizer::Fold(Slot into, Slot from) {
    const std::string path = m_db.Pathname(into);
    std::vector<Slot> moving = Children(from);
    for (Slot slot : Links(from))
        moving.push_back(slot);
    for (Slot slot : Items(from))
        moving.push_back(slot);
    for (Slot slot : moving)
        m_db.MoveObject(slot, m_db.Root(), path);
    m_db.DeleteObject(from);
}

void Optimizer::ReorganizeAttributes(const std::vector<Slot>& segments) {
    for (Slot parent : segments) {
        if (!m_db.GetSegment(parent)) continue;
        // Siblings by their attributes but user data, which CanFold settles.
        std::unordered_map<std::string, std::vector<Slot>> kept;
        for (Slot child : Children(parent)) {
            const Segment& segment = *m_db.GetSegment(child);
            bool styled = false;
            for (Slot link : Links(child))
                styled = styled || m_db.Get(link)->type != ContentKind::Include;
            if (Pinned(child) || styled || HasDefinitions(segment)) continue;
            // Only the latest few are tried: siblings whose subsegments share names never fold,
            // and trying them all would take time quadratic in the siblings.
            std::vector<Slot>& same = kept[AttributeSignature(segment, false)];
            auto first = same.size() > kFoldCandidates
                             ? same.end() - std::ptrdiff_t(kFoldCandidates)
                             : same.begin();
            auto into =
                std::find_if(first, same.end(), [&](Slot other) { return CanFold(other, child); });
            if (into == same.end())
                same.push_back(child);
            else
                Fold(*into, child);
        }
    }
}

void Optimizer::ReorganizeSpatial(const std::vector<Slot>& segments) {
    for (Slot parent : segments) {
        std::vector<Slot> children = Children(parent);
        if (children.size() <= kSpatialGroup) continue;
        // Each child by the centre of its bounds as placed, ordered along a Morton curve.
        std::vector<HC_POINT> centres;
        Box all;
        for (Slot child : children) {
            Box box = m_db.SegmentBounds(child);
            const Attribute* matrix = m_db.LocalAttribute(child, ContentKind::ModellingMatrix);
            if (matrix && matrix->numbers.size() == 16)
                box = box.Transformed(matrix->numbers.data());
            HC_POINT centre{(box.min.x + box.max.x) / 2, (box.min.y + box.max.y) / 2,
                            (box.min.z + box.max.z) / 2};
            centres.push_back(centre);
            all.Add(centre);
        }
        auto cell = [](float v, float lo, float hi) {
            double t = hi > lo ? (double(v) - lo) / (double(hi) - lo) : 0;
            return std::isfinite(t) ? static_cast<uint32_t>(std::clamp(t, 0.0, 1.0) * 1023) : 0u;
        };
        std::vector<std::pair<uint32_t, Slot>> order;
        for (size_t i = 0; i < children.size(); ++i) {
            const HC_POINT& c = centres[i];
            order.emplace_back(Spread(cell(c.x, all.min.x, all.max.x)) |
                                   Spread(cell(c.y, all.min.y, all.max.y)) << 1 |
                                   Spread(cell(c.z, all.min.z, all.max.z)) << 2,
                               children[i]);
        }
        std::stable_sort(order.begin(), order.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::vector<Slot> level;
        for (const auto& [code, child] : order)
            level.push_back(child);
        // Neighbours along the curve share a nameless group, level by level, so that no segment
        // holds more than a handful of subsegments.
        while (level.size() > kSpatialGroup) {
            std::vector<Slot> groups;
            for (size_t i = 0; i < level.size(); i += kSpatialGroup) {
                Slot group = m_db.FindOrMakeChild(parent, "");
                const std::string path = m_db.Pathname(group);
                for (size_t j = i; j < std::min(level.size(), i + kSpatialGroup); ++j)
                    m_db.MoveObject(level[j], m_db.Root(), path);
                groups.push_back(group);
            }
            level = std::move(groups);
        }
    }
}

} // namespace hc
