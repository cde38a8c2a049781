#include "hc/invariants.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "hc/geometry_bounds.h"
#include "hc/text.h"

namespace hc {

namespace {

// NaN coordinates are legal input; a box holding one is the same box if it holds it in the
// same place.
bool SameCoordinate(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool SameBox(const Box& a, const Box& b) {
    if (a.empty || b.empty) return a.empty == b.empty;
    const float* p = &a.min.x;
    const float* q = &b.min.x;
    for (int i = 0; i < 3; ++i)
        if (!SameCoordinate(p[i], q[i]) || !SameCoordinate((&a.max.x)[i], (&b.max.x)[i]))
            return false;
    return true;
}

std::string BoxText(const Box& box) {
    if (box.empty) return "empty";
    auto point = [](const HC_POINT& p) {
        return "(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ", " + std::to_string(p.z) +
               ")";
    };
    return point(box.min) + " to " + point(box.max);
}

} // namespace

// The checks read the database's private tables directly: the public calls would hide exactly
// the disagreements between them that this looks for.
std::vector<std::string> CheckInvariants(Database& db) {
    std::vector<std::string> faults;
    auto fault = [&faults](std::string text) { faults.push_back(std::move(text)); };
    auto name = [&db](Slot slot) {
        const Object* object = db.Get(slot);
        if (object && object->kind == ObjectKind::Segment) return "segment " + db.Pathname(slot);
        return "object " + KeyText(OriginalKey(slot));
    };
    const size_t slots = db.m_objects.size();
    if (db.m_siblings.size() != slots || db.m_types.size() != slots) {
        fault("the sibling and kind tables have " + std::to_string(db.m_siblings.size()) + " and " +
              std::to_string(db.m_types.size()) + " entries for " + std::to_string(slots) +
              " slots");
        return faults;
    }
    const Segment* root = db.GetSegment(db.Root());
    if (!root || root->owner != kNoSlot) {
        fault("the root segment is missing or has an owner");
        return faults;
    }

    // Each object must be met exactly once from its owner: in a list, as an attached reference
    // or as the static model.
    std::vector<uint8_t> met(slots, 0);
    size_t live = 0, named = 0;
    for (Slot slot = 0; slot < slots; ++slot) {
        const Object* object = db.m_objects[slot].get();
        if (!object) continue;
        ++live;
        if (object->slot != slot)
            fault(name(slot) + " believes it is in slot " + std::to_string(object->slot));
        if (db.m_types[slot] != object->type)
            fault(name(slot) + ": the kind table says " + std::string(TypeWord(db.m_types[slot])) +
                  ", the object is a " + std::string(TypeWord(object->type)));
        const Slot owner = db.OwnerSegment(slot);
        if (slot != db.Root() && (!db.Get(object->owner) || owner == kNoSlot)) {
            fault(name(slot) + " has a dead owner");
            continue;
        }
        if (db.Resolve(OriginalKey(slot)) != slot)
            fault(name(slot) + ": its original key does not resolve to it");
        if (const HC_KEY key = db.KeyOf(slot); db.Resolve(key, owner) != slot)
            fault(name(slot) + ": its key " + KeyText(key) + " does not resolve to it");
        if (object->renumbered != db.m_userKeys.contains(slot))
            fault(name(slot) + ": renumbered flag and key table disagree");

        if (object->kind == ObjectKind::Link) {
            const auto& link = static_cast<const Link&>(*object);
            if (link.type != ContentKind::NamedStyle) {
                if (!db.Get(link.target)) {
                    fault(name(slot) + " (" + std::string(TypeWord(link.type)) +
                          ") aims at a dead object");
                } else {
                    auto incoming = db.m_incoming.find(link.target);
                    if (incoming == db.m_incoming.end() ||
                        std::find(incoming->second.begin(), incoming->second.end(), slot) ==
                            incoming->second.end())
                        fault(name(slot) + " is unknown to its target " + name(link.target) +
                              ", whose deletion would leave it dangling");
                }
            }
        }
        if (object->kind == ObjectKind::Geometry) {
            for (Slot r : static_cast<const Geometry&>(*object).References()) {
                const Object* reference = db.Get(r);
                if (!reference || reference->owner != slot)
                    fault(name(slot) + " lists an attached reference that is not its own");
                else
                    ++met[r];
            }
        }
        if (object->kind != ObjectKind::Segment) continue;
        const auto& segment = static_cast<const Segment&>(*object);
        if (slot != db.Root() && !segment.name.empty()) {
            ++named;
            if (db.m_names.Find(segment.owner, segment.name) != slot)
                fault(name(slot) + " is not found by its name in its owner");
        }
        if (segment.staticModel != kNoSlot) {
            const Object* model = db.Get(segment.staticModel);
            if (!model || model->kind != ObjectKind::StaticModel || model->owner != slot)
                fault(name(slot) + " has a static model that is not its own");
            else
                ++met[segment.staticModel];
        }
        const std::pair<const ChildList*, ObjectKind> lists[] = {
            {&segment.segments, ObjectKind::Segment},
            {&segment.links, ObjectKind::Link},
            {&segment.geometry, ObjectKind::Geometry}};
        for (const auto& [list, kind] : lists) {
            uint32_t count = 0;
            Slot previous = kNoSlot;
            for (Slot c = list->first; c != kNoSlot && count <= slots; c = db.Next(c), ++count) {
                const Object* child = c < slots ? db.Get(c) : nullptr;
                if (!child) {
                    fault(name(slot) + " lists a dead object");
                    break;
                }
                if (child->owner != slot || child->kind != kind)
                    fault(name(slot) + " lists " + name(c) + ", which is not its own or not of " +
                          "that list");
                if (db.Prev(c) != previous)
                    fault(name(c) + ": its previous sibling is wrong in " + name(slot));
                ++met[c];
                previous = c;
            }
            if (count != list->count || list->last != previous)
                fault(name(slot) + ": a list counts " + std::to_string(list->count) +
                      " items but holds " + std::to_string(count) +
                      (list->last != previous ? ", and its last item is wrong" : ""));
        }
    }
    for (Slot slot = 1; slot < slots; ++slot)
        if (db.m_objects[slot] && met[slot] != 1)
            fault(name(slot) + " is met " + std::to_string(met[slot]) +
                  " times from its owner, not once");
    if (live != db.m_live)
        fault("the database counts " + std::to_string(db.m_live) + " live objects, not " +
              std::to_string(live));
    if (named != db.m_names.Size())
        fault("the name index holds " + std::to_string(db.m_names.Size()) + " names for " +
              std::to_string(named) + " named segments");

    // Renumbered keys: the three tables agree, so a key names one object in its scope.
    size_t globals = 0, locals = 0;
    for (const auto& [slot, user] : db.m_userKeys) {
        const Object* object = db.Get(slot);
        if (!object) {
            fault("the key " + KeyText(user.key) + " belongs to a dead object");
            continue;
        }
        auto& count = user.global ? globals : locals;
        ++count;
        const bool found =
            user.global ? db.m_globalKeys.contains(user.key) && db.m_globalKeys.at(user.key) == slot
                        : db.m_localKeys.contains({db.OwnerSegment(slot), user.key}) &&
                              db.m_localKeys.at({db.OwnerSegment(slot), user.key}) == slot;
        if (!found)
            fault(name(slot) + ": its " + (user.global ? "global" : "local") + " key " +
                  KeyText(user.key) + " is not in the key table of its scope");
    }
    if (globals != db.m_globalKeys.size() || locals != db.m_localKeys.size())
        fault("the key tables hold " + std::to_string(db.m_globalKeys.size()) + " global and " +
              std::to_string(db.m_localKeys.size()) + " local keys for " + std::to_string(globals) +
              " and " + std::to_string(locals) + " renumbered objects");
    if (!faults.empty()) return faults; // the bounds walk trusts the lists

    // Fresh bounds, post-order without recursion, in the order the cache adds them. Inside an
    // include cycle a segment's bounds depend on where the computation began, so segments that
    // reach a cycle are left out of the comparison.
    enum : uint8_t { kNew, kOpen, kDone };
    std::vector<uint8_t> state(slots, kNew);
    std::vector<uint8_t> uncertain(slots, 0);
    std::vector<Box> fresh(slots);
    auto dependencies = [&db](const Segment& segment, auto&& visit) {
        for (Slot c = segment.segments.first; c != kNoSlot; c = db.Next(c))
            visit(c);
        for (Slot c = segment.links.first; c != kNoSlot; c = db.Next(c)) {
            const auto& link = static_cast<const Link&>(*db.Get(c));
            const Slot target = db.LinkTarget(link);
            if (db.GetSegment(target) &&
                (link.type == ContentKind::Include || link.type == ContentKind::Reference))
                visit(target);
        }
    };
    // A segment with cached bounds depends on no stale segment: marking stops at the first
    // stale segment, so cached bounds above a stale one would never be computed again.
    for (Slot slot = 0; slot < slots; ++slot) {
        const Segment* segment = db.GetSegment(slot);
        if (!segment || segment->boundsStale) continue;
        dependencies(*segment, [&](Slot d) {
            if (db.GetSegment(d)->boundsStale)
                fault(name(slot) + " has cached bounds although " + name(d) +
                      ", which it depends on, is stale");
        });
    }
    auto itemBox = [&db](Slot item) {
        const auto& geometry = static_cast<const Geometry&>(*db.Get(item));
        Box box;
        if (LocalBounds(geometry, box.min, box.max)) box.empty = false;
        return box.Transformed(LocalMatrix(geometry));
    };
    for (Slot top = 0; top < slots; ++top) {
        if (!db.GetSegment(top) || state[top] == kDone) continue;
        std::vector<std::pair<Slot, bool>> pending{{top, false}};
        while (!pending.empty()) {
            const Slot s = pending.back().first;
            const bool expanded = pending.back().second;
            const Segment& segment = *db.GetSegment(s);
            if (!expanded) {
                if (state[s] != kNew) {
                    pending.pop_back();
                    continue;
                }
                state[s] = kOpen;
                pending.back().second = true;
                dependencies(segment, [&](Slot d) {
                    if (state[d] == kNew) pending.push_back({d, false});
                });
                continue;
            }
            pending.pop_back();
            Box box;
            for (Slot c = segment.geometry.first; c != kNoSlot; c = db.Next(c))
                box.Add(itemBox(c));
            dependencies(segment, [&](Slot d) {
                if (state[d] != kDone) {
                    uncertain[s] = 1;
                    return;
                }
                uncertain[s] |= uncertain[d];
                box.Add(fresh[d].Transformed(LocalMatrix(*db.Get(d))));
            });
            for (Slot c = segment.links.first; c != kNoSlot; c = db.Next(c)) {
                const auto& link = static_cast<const Link&>(*db.Get(c));
                const Object* target =
                    link.type == ContentKind::Reference ? db.Get(db.LinkTarget(link)) : nullptr;
                if (target && target->kind == ObjectKind::Geometry) box.Add(itemBox(target->slot));
            }
            fresh[s] = box;
            state[s] = kDone;
        }
    }
    for (Slot slot = 0; slot < slots; ++slot) {
        const Segment* segment = db.GetSegment(slot);
        if (!segment || segment->boundsStale || uncertain[slot]) continue;
        if (!SameBox(segment->bounds, fresh[slot]))
            fault(name(slot) + ": cached bounds " + BoxText(segment->bounds) +
                  " differ from fresh bounds " + BoxText(fresh[slot]));
    }
    return faults;
}

} // namespace hc
