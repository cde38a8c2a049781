// Bounding of the scene: cached per segment, made stale upwards (to owners and to the segments
// that include or reference what changed) and computed again on demand, without recursion.
#include <algorithm>

#include "hc/database.h"
#include "hc/geometry_bounds.h"

namespace hc {

void Database::PushUsers(Slot slot, std::vector<Slot>& segments) const {
    if (Slot owner = OwnerSegment(slot); owner != kNoSlot) segments.push_back(owner);
    auto incoming = m_incoming.find(slot);
    if (incoming == m_incoming.end()) return;
    for (Slot link : incoming->second) {
        const Object* l = Get(link);
        if (l && static_cast<const Link*>(l)->target == slot)
            segments.push_back(OwnerSegment(link));
    }
}

void Database::MarkStale(std::vector<Slot> segments) {
    while (!segments.empty()) {
        Slot s = segments.back();
        segments.pop_back();
        Segment* segment = GetSegment(s);
        // A stale segment's users are stale already: the walk stops there.
        if (!segment || segment->boundsStale) continue;
        segment->boundsStale = true;
        PushUsers(s, segments);
    }
}

void Database::PlacementChanged(Slot slot) {
    std::vector<Slot> users;
    PushUsers(slot, users);
    MarkStale(std::move(users));
}

Box Database::PlacedBounds(Slot slot) {
    const Object* object = Get(slot);
    if (!object) return {};
    if (object->kind == ObjectKind::Link) {
        // An include or reference stands for its target as the target itself is placed.
        Slot target = LinkTarget(static_cast<const Link&>(*object));
        return object->type == ContentKind::Style || object->type == ContentKind::NamedStyle
                   ? Box{}
                   : PlacedBounds(target);
    }
    return ObjectBounds(slot).Transformed(LocalMatrix(*object));
}

Box Database::ObjectBounds(Slot slot) {
    const Object* object = Get(slot);
    if (!object) return {};
    switch (object->kind) {
    case ObjectKind::Segment:
        return SegmentBounds(slot);
    case ObjectKind::Geometry: {
        Box box;
        if (LocalBounds(static_cast<const Geometry&>(*object), box.min, box.max)) box.empty = false;
        return box;
    }
    case ObjectKind::Link:
        return PlacedBounds(slot);
    case ObjectKind::StaticModel:
        return SegmentBounds(object->owner);
    }
    return {};
}

Box Database::SegmentBounds(Slot slot) {
    if (!GetSegment(slot)) return {};
    // Post-order over the stale segments this one depends on; a segment met again while it is
    // being computed (an include cycle) adds nothing.
    struct Frame {
        Slot segment;
        bool expanded;
    };
    std::vector<Frame> pending{{slot, false}};
    // The segments being computed form a chain from slot down (post-order finishes the last
    // one begun first), as short as the tree is deep: a vector, not a hash set, so that an
    // edit's recomputation of a few segments allocates almost nothing.
    std::vector<Slot> computing;
    auto isComputing = [&computing](Slot s) {
        return std::find(computing.rbegin(), computing.rend(), s) != computing.rend();
    };
    auto dependencies = [this](const Segment& segment, auto&& visit) {
        for (Slot c = segment.segments.first; c != kNoSlot; c = Next(c))
            visit(c);
        for (Slot c = segment.links.first; c != kNoSlot; c = Next(c)) {
            const auto& link = static_cast<const Link&>(*m_objects[c]);
            Slot target = LinkTarget(link);
            if (target != kNoSlot && GetSegment(target) &&
                (link.type == ContentKind::Include || link.type == ContentKind::Reference))
                visit(target);
        }
    };
    while (!pending.empty()) {
        Frame& frame = pending.back();
        Segment& segment = *GetSegment(frame.segment);
        if (!segment.boundsStale) {
            pending.pop_back();
            continue;
        }
        if (!frame.expanded) {
            frame.expanded = true;
            computing.push_back(frame.segment);
            std::vector<Frame> next;
            dependencies(segment, [&](Slot d) {
                if (GetSegment(d)->boundsStale && !isComputing(d)) next.push_back({d, false});
            });
            pending.insert(pending.end(), next.begin(), next.end());
            continue;
        }
        Box box;
        for (Slot c = segment.geometry.first; c != kNoSlot; c = Next(c))
            box.Add(PlacedBounds(c));
        dependencies(segment, [&](Slot d) {
            const Segment& dependency = *GetSegment(d);
            if (!dependency.boundsStale)
                box.Add(dependency.bounds.Transformed(LocalMatrix(dependency)));
        });
        // References to geometry items add those items as placed.
        for (Slot c = segment.links.first; c != kNoSlot; c = Next(c)) {
            const auto& link = static_cast<const Link&>(*m_objects[c]);
            const Object* target =
                link.type == ContentKind::Reference ? Get(LinkTarget(link)) : nullptr;
            if (target && target->kind == ObjectKind::Geometry) box.Add(PlacedBounds(target->slot));
        }
        segment.bounds = box;
        segment.boundsStale = false;
        computing.erase(std::find(computing.begin(), computing.end(), frame.segment));
        pending.pop_back();
    }
    return GetSegment(slot)->bounds;
}

} // namespace hc
