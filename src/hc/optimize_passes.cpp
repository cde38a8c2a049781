// The passes of an optimisation that work on segments, includes, matrices, names and user data.
#include "hc/optimize_passes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>

#include "hc/session.h"
#include "hc/text.h"

namespace hc {

namespace {

using Matrix = std::array<float, 16>;
constexpr Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

const std::vector<float>* MatrixOf(const Database& db, Slot slot) {
    const Attribute* matrix = db.LocalAttribute(slot, ContentKind::ModellingMatrix);
    return matrix && matrix->numbers.size() == 16 ? &matrix->numbers : nullptr;
}

// The matrix of an object applied first, then base.
Matrix Then(const std::vector<float>* own, const Matrix& base) {
    if (!own) return base;
    Matrix result;
    MultiplyMatrices(own->data(), base.data(), result.data());
    return result;
}

// A mirroring matrix turns faces over; points alone cannot say so.
bool Mirrors(const std::vector<float>* m) {
    if (!m) return false;
    const auto& a = *m;
    double det = a[0] * (double(a[5]) * a[10] - double(a[6]) * a[9]) -
                 a[1] * (double(a[4]) * a[10] - double(a[6]) * a[8]) +
                 a[2] * (double(a[4]) * a[9] - double(a[5]) * a[8]);
    return det < 0;
}

bool HasAny(const Database& db, Slot slot, std::initializer_list<ContentKind> kinds) {
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](ContentKind kind) { return db.LocalAttribute(slot, kind) != nullptr; });
}

// Geometry whose drawing is its points, so that a matrix may be multiplied into them.
bool PointsOnly(const Database& db, Slot slot) {
    const auto* item = static_cast<const Geometry*>(db.Get(slot));
    switch (item->type) {
    case ContentKind::Shell: {
        const ShellDetails* details = item->extras ? item->extras->shell.get() : nullptr;
        if (details && !details->vertexNormals.empty()) return false;
        break;
    }
    case ContentKind::Mesh:
    case ContentKind::Polyline:
    case ContentKind::Polygon:
    case ContentKind::Line:
    case ContentKind::Marker:
        break;
    default:
        return false;
    }
    return item->References().empty() && !HasAny(db, slot, {ContentKind::Camera}) &&
           !Mirrors(MatrixOf(db, slot));
}

void AppendNumber(std::string& text, uint64_t bits) {
    text += std::to_string(bits);
    text += ' ';
}

} // namespace

bool IsUserData(ContentKind kind) {
    switch (kind) {
    case ContentKind::UserOptions:
    case ContentKind::UnicodeOptions:
    case ContentKind::UserValue:
    case ContentKind::UserIndex:
    case ContentKind::UserData:
        return true;
    default:
        return false;
    }
}

std::string AttributeSignature(const Object& object, bool withUserData) {
    std::string text;
    if (!object.attributes) return text;
    for (const Attribute& a : object.attributes->Items()) {
        if (!withUserData && IsUserData(a.kind)) continue;
        text += std::to_string(static_cast<int>(a.kind));
        text += '\x1f';
        text += a.options.Format();
        text += '\x1f';
        text += a.text;
        text += '\x1f';
        for (float f : a.numbers) {
            uint32_t bits;
            std::memcpy(&bits, &f, sizeof bits);
            AppendNumber(text, bits);
        }
        AppendNumber(text, static_cast<uint64_t>(a.integer));
        for (const HC_POINT& p : a.points)
            for (float f : {p.x, p.y, p.z}) {
                uint32_t bits;
                std::memcpy(&bits, &f, sizeof bits);
                AppendNumber(text, bits);
            }
        for (const auto& [index, bytes] : a.entries) {
            text += std::to_string(index) + '\x1f' + std::to_string(bytes.size()) + '\x1f';
            text += bytes;
        }
        for (const ConditionalAction& action : a.actions)
            text += action.type + '\x1f' + action.options + '\x1f' + action.condition + '\x1f';
        text += '\x1e';
    }
    return text;
}

// --- Walking -------------------------------------------------------------------------------------

std::vector<Slot> Optimizer::Segments(Slot root) const {
    std::vector<Slot> result;
    std::vector<Slot> pending{root};
    while (!pending.empty()) {
        Slot slot = pending.back();
        pending.pop_back();
        result.push_back(slot);
        std::vector<Slot> children = Children(slot);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return result;
}

std::vector<Slot> Optimizer::ListOf(Slot segment, ChildList Segment::*list) const {
    std::vector<Slot> result;
    if (const Segment* s = m_db.GetSegment(segment))
        for (Slot c = (s->*list).first; c != kNoSlot; c = m_db.Next(c))
            result.push_back(c);
    return result;
}

bool Optimizer::IsInside(Slot segment, Slot ancestor) const {
    for (Slot s = segment; s != kNoSlot && m_db.Get(s); s = m_db.Get(s)->owner)
        if (s == ancestor) return true;
    return false;
}

// --- Includes and pins ---------------------------------------------------------------------------

void Optimizer::ExpandIncludes(Slot root) {
    // The targets being expanded, as a tree of chains: an include of a target already on its own
    // chain is a cycle and stays an include.
    struct Node {
        Slot target;
        int parent;
    };
    std::vector<Node> chains;
    std::vector<std::pair<Slot, int>> pending{{root, -1}};
    // Includes of includes multiply; past this the rest stay includes rather than fill memory.
    const size_t limit = m_db.LiveObjects() * 8 + 100000;
    while (!pending.empty()) {
        auto [segment, chain] = pending.back();
        pending.pop_back();
        if (!m_db.GetSegment(segment)) continue;
        for (Slot c : Children(segment))
            pending.emplace_back(c, chain);
        for (Slot slot : Links(segment)) {
            const auto& link = static_cast<const Link&>(*m_db.Get(slot));
            Slot target = m_db.LinkTarget(link);
            if (link.type != ContentKind::Include || !link.condition.empty() ||
                !m_db.GetSegment(target) || IsInside(segment, target) || m_db.LiveObjects() > limit)
                continue;
            bool cycle = false;
            for (int n = chain; n >= 0 && !cycle; n = chains[n].parent)
                cycle = chains[n].target == target;
            if (cycle) continue;
            Slot copy = m_db.FindOrMakeChild(segment, "");
            m_db.CopySegment(m_db.Root(), m_db.Pathname(target), m_db.Pathname(copy));
            m_db.DeleteObject(slot);
            chains.push_back({target, chain});
            pending.emplace_back(copy, static_cast<int>(chains.size()) - 1);
        }
    }
}

void Optimizer::AddIncludedRoots(std::vector<Slot>& roots) const {
    for (size_t r = 0; r < roots.size(); ++r) {
        for (Slot segment : Segments(roots[r])) {
            for (Slot slot : Links(segment)) {
                const auto& link = static_cast<const Link&>(*m_db.Get(slot));
                Slot target = m_db.LinkTarget(link);
                if (link.type != ContentKind::Include || !m_db.GetSegment(target)) continue;
                bool overlaps = std::any_of(roots.begin(), roots.end(), [&](Slot root) {
                    return IsInside(target, root) || IsInside(root, target);
                });
                if (!overlaps) roots.push_back(target);
            }
        }
    }
}

void Optimizer::PinLinkedObjects() {
    m_pinned.clear();
    m_pinned.insert(m_db.Root());
    for (Slot open : CurrentSession().OpenItems())
        for (Slot s = open; s != kNoSlot && m_db.Get(s); s = m_db.Get(s)->owner)
            m_pinned.insert(s);
    auto pinTarget = [&](Slot link) {
        if (const Object* object = m_db.Get(link); object && object->kind == ObjectKind::Link)
            m_pinned.insert(m_db.LinkTarget(static_cast<const Link&>(*object)));
    };
    for (Slot segment : Segments(m_db.Root())) {
        for (Slot link : Links(segment))
            pinTarget(link);
        for (Slot item : Items(segment))
            for (Slot reference : static_cast<const Geometry*>(m_db.Get(item))->References())
                pinTarget(reference);
        for (const Definition& style :
             m_db.GetSegment(segment)->DefinitionsOf(ContentKind::NamedStyleDefinition))
            m_pinned.insert(style.segment);
    }
}

// --- The order of the passes ---------------------------------------------------------------------

void Optimizer::OptimizeTree(Slot root) {
    std::vector<Slot> segments = Segments(root);
    if (m_choices.discardUserData) DiscardUserData(segments);
    if (m_choices.extractAttributes) {
        for (Slot segment : segments)
            ExtractAttributes(segment);
        segments = Segments(root);
    }
    if (m_choices.collapseMatrices) CollapseMatrices(segments);
    if (m_choices.localizeMatrices) LocalizeMatrices(segments);
    if (m_choices.reorganizeAttributes) {
        ReorganizeAttributes(segments);
        segments = Segments(root);
    }
    if (m_choices.removeDuplicateShells)
        for (Slot segment : segments)
            RemoveDuplicateShells(segment);
    if (m_choices.instanceShells) InstanceShells(segments);
    if (m_choices.mergeShells)
        for (Slot segment : segments)
            MergeShells(segment);
    if (m_choices.reorganizeSpatial) {
        ReorganizeSpatial(segments);
        segments = Segments(root);
    }
    if (m_choices.discardNames || m_choices.recordNames || m_choices.sequenceNames)
        ProcessNames(root, segments);
}

// --- Attributes and user data --------------------------------------------------------------------

void Optimizer::DiscardUserData(const std::vector<Slot>& segments) {
    auto discard = [&](Slot slot) {
        for (size_t k = size_t(kFirstAttribute); k <= size_t(kLastAttribute); ++k)
            if (IsUserData(ContentKind(k))) m_db.RemoveAttribute(slot, ContentKind(k));
    };
    for (Slot segment : segments) {
        discard(segment);
        for (Slot item : Items(segment))
            discard(item);
    }
}

void Optimizer::ExtractAttributes(Slot segment) {
    // Items with the same attributes share one nameless subsegment that holds them: nearest to
    // the item as they were, so the net values do not change.
    std::unordered_map<std::string, Slot> holders;
    for (Slot item : Items(segment)) {
        const Object& object = *m_db.Get(item);
        if (!object.attributes) continue;
        auto [at, added] = holders.try_emplace(AttributeSignature(object, true), kNoSlot);
        std::vector<Attribute> attributes = object.attributes->Items();
        if (added) {
            at->second = m_db.FindOrMakeChild(segment, "");
            for (const Attribute& attribute : attributes) {
                m_db.ObtainAttribute(at->second, attribute.kind) = attribute;
                m_db.AttributeChanged(at->second, attribute.kind);
            }
        }
        for (const Attribute& attribute : attributes)
            m_db.RemoveAttribute(item, attribute.kind);
        m_db.MoveObject(item, m_db.Root(), m_db.Pathname(at->second));
    }
}

void Optimizer::LocalizeUserData(Slot segment) {
    std::vector<Slot> holders = Items(segment);
    for (Slot child : Children(segment))
        holders.push_back(child);
    const Object& object = *m_db.Get(segment);
    if (!object.attributes) return;
    std::vector<Attribute> userData;
    for (const Attribute& attribute : object.attributes->Items())
        if (IsUserData(attribute.kind)) userData.push_back(attribute);
    for (const Attribute& data : userData) {
        for (Slot holder : holders) {
            bool had = m_db.LocalAttribute(holder, data.kind) != nullptr;
            Attribute& mine = m_db.ObtainAttribute(holder, data.kind);
            if (IsOptionString(data.kind)) {
                OptionList merged = data.options;
                merged.Merge(mine.options);
                mine.options = std::move(merged);
            } else if (!had) {
                mine = data;
            }
            m_db.AttributeChanged(holder, data.kind);
        }
        m_db.RemoveAttribute(segment, data.kind);
    }
}

// --- Matrices ------------------------------------------------------------------------------------

void Optimizer::CollapseMatrices(const std::vector<Slot>& segments) {
    // A segment can give up its matrix when everything below it is geometry drawn by its points.
    std::unordered_map<Slot, bool> collapsible;
    for (auto it = segments.rbegin(); it != segments.rend(); ++it) {
        Slot segment = *it;
        bool ok = m_db.GetSegment(segment)->links.count == 0 &&
                  !HasAny(m_db, segment,
                          {ContentKind::Camera, ContentKind::Window, ContentKind::ClipRegion}) &&
                  !Mirrors(MatrixOf(m_db, segment));
        for (Slot item : Items(segment))
            ok = ok && PointsOnly(m_db, item);
        for (Slot child : Children(segment))
            ok = ok && collapsible[child];
        collapsible[segment] = ok;
    }
    std::unordered_set<Slot> done;
    for (Slot top : segments) {
        if (done.count(m_db.Get(top)->owner) || !collapsible[top]) {
            if (done.count(m_db.Get(top)->owner)) done.insert(top);
            continue;
        }
        done.insert(top);
        std::vector<std::pair<Slot, Matrix>> pending{{top, kIdentity}};
        while (!pending.empty()) {
            auto [segment, above] = pending.back();
            pending.pop_back();
            Matrix net = Then(MatrixOf(m_db, segment), above);
            for (Slot item : Items(segment)) {
                Matrix placed = Then(MatrixOf(m_db, item), net);
                if (placed == kIdentity) continue;
                auto& geometry = static_cast<Geometry&>(*m_db.Get(item));
                m_db.GeometryChanging(item);
                for (HC_POINT& point : geometry.points)
                    point = TransformPoint(point, placed.data());
                m_db.RemoveAttribute(item, ContentKind::ModellingMatrix);
                m_db.PlacementChanged(item);
            }
            for (Slot child : Children(segment))
                pending.emplace_back(child, net);
            m_db.RemoveAttribute(segment, ContentKind::ModellingMatrix);
        }
    }
}

void Optimizer::LocalizeMatrices(const std::vector<Slot>& segments) {
    // Parents first: a matrix pushed into a child is pushed on when the child's turn comes.
    for (Slot segment : segments) {
        const Segment* s = m_db.GetSegment(segment);
        const std::vector<float>* own = MatrixOf(m_db, segment);
        if (!s || !own || s->geometry.count || s->links.count || !s->segments.count ||
            HasAny(m_db, segment,
                   {ContentKind::Camera, ContentKind::Window, ContentKind::ClipRegion}))
            continue;
        Matrix matrix;
        std::copy(own->begin(), own->end(), matrix.begin());
        for (Slot child : Children(segment)) {
            Matrix placed = Then(MatrixOf(m_db, child), matrix);
            m_db.ObtainAttribute(child, ContentKind::ModellingMatrix)
                .numbers.assign(placed.begin(), placed.end());
            m_db.AttributeChanged(child, ContentKind::ModellingMatrix);
        }
        m_db.RemoveAttribute(segment, ContentKind::ModellingMatrix);
    }
}

// --- Names ---------------------------------------------------------------------------------------

void Optimizer::ProcessNames(Slot root, const std::vector<Slot>& segments) {
    for (Slot segment : segments) {
        const Segment* s = m_db.GetSegment(segment);
        if (segment == root || !s || s->name.empty() || !m_choices.recordNames) continue;
        for (char quote : {'"', '\'', '`'}) {
            if (s->name.find(quote) != std::string::npos) continue;
            m_db.ObtainAttribute(segment, ContentKind::UserOptions)
                .options.Set({"original name", quote + s->name + quote, false});
            m_db.AttributeChanged(segment, ContentKind::UserOptions);
            break;
        }
    }
    if (!m_choices.discardNames && !m_choices.sequenceNames) return;
    for (Slot segment : segments)
        if (segment != root) m_db.DiscardSegmentName(segment);
    if (!m_choices.sequenceNames) return;
    // Renaming moves a segment to the end of its owner's list; taken in order, the order stays.
    int number = 0;
    for (Slot segment : segments)
        if (segment != root && m_db.GetSegment(segment))
            m_db.RenameSegment(m_db.Root(), m_db.Pathname(segment), std::to_string(number++));
}

} // namespace hc
