#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc_fastpath.h>

#include "hc/database.h"
#include "hc/metafile.h"
#include "hc/session.h"
#include "hc/text.h"

namespace hc {
namespace {

const Segment* SegmentOf(const Database& db, HC_KEY key) {
    Slot slot = db.Resolve(key);
    return slot == kNoSlot ? nullptr : db.GetSegment(slot);
}

std::string_view OwnName(const Database& db, const Segment& segment) {
    return segment.slot == db.Root() ? std::string_view("/") : std::string_view(segment.name);
}

unsigned Holds(const Segment& segment) {
    unsigned holds = 0;
    if (segment.segments.count != 0) holds |= HC_HOLDS_SUBSEGMENTS;
    if (segment.links.count != 0) holds |= HC_HOLDS_LINKS;
    if (segment.geometry.count != 0) holds |= HC_HOLDS_GEOMETRY;
    if (segment.definitions) holds |= HC_HOLDS_DEFINITIONS;
    if (segment.staticModel != kNoSlot) holds |= HC_HOLDS_STATIC_MODEL;
    return holds;
}

void AddItem(const Geometry& geometry, HC_CENSUS& census) {
    HC_CENSUS_KIND kind;
    switch (geometry.type) {
    case ContentKind::Shell: {
        kind = HC_CENSUS_SHELL;
        census.vertices += static_cast<uint32_t>(geometry.points.size());
        const std::vector<int>& faces = geometry.ints;
        for (size_t i = 0; i < faces.size();) {
            int n = faces[i];
            if (n > 0) {
                ++census.faces;
                if (n == 3) ++census.triangles;
            }
            i += static_cast<size_t>(n < 0 ? -static_cast<long long>(n) : n) + 1;
        }
        break;
    }
    case ContentKind::Mesh: {
        kind = HC_CENSUS_MESH;
        if (geometry.ints.size() >= 2) {
            uint32_t rows = static_cast<uint32_t>(geometry.ints[0]);
            uint32_t columns = static_cast<uint32_t>(geometry.ints[1]);
            census.vertices += rows * columns;
            uint32_t triangles = rows > 1 && columns > 1 ? 2 * (rows - 1) * (columns - 1) : 0;
            census.faces += triangles;
            census.triangles += triangles;
        }
        break;
    }
    case ContentKind::Polygon:
        kind = HC_CENSUS_POLYGON;
        ++census.faces;
        if (geometry.points.size() == 3) ++census.triangles;
        census.vertices += static_cast<uint32_t>(geometry.points.size());
        break;
    case ContentKind::Polyline:
        kind = HC_CENSUS_POLYLINE;
        break;
    case ContentKind::Line:
        kind = HC_CENSUS_LINE;
        break;
    case ContentKind::Circle:
        kind = HC_CENSUS_CIRCLE;
        break;
    case ContentKind::CircularArc:
        kind = HC_CENSUS_CIRCULAR_ARC;
        break;
    case ContentKind::CircularChord:
        kind = HC_CENSUS_CIRCULAR_CHORD;
        break;
    case ContentKind::CircularWedge:
        kind = HC_CENSUS_CIRCULAR_WEDGE;
        break;
    case ContentKind::Ellipse:
        kind = HC_CENSUS_ELLIPSE;
        break;
    case ContentKind::EllipticalArc:
        kind = HC_CENSUS_ELLIPTICAL_ARC;
        break;
    case ContentKind::Image:
        kind = HC_CENSUS_IMAGE;
        break;
    case ContentKind::Marker:
        kind = HC_CENSUS_MARKER;
        break;
    case ContentKind::LocalLight:
        kind = HC_CENSUS_LOCAL_LIGHT;
        break;
    case ContentKind::DistantLight:
        kind = HC_CENSUS_DISTANT_LIGHT;
        break;
    case ContentKind::SpotLight:
        kind = HC_CENSUS_SPOT_LIGHT;
        break;
    case ContentKind::CuttingPlane:
        kind = HC_CENSUS_CUTTING_PLANE;
        break;
    case ContentKind::PolyCylinder:
        kind = HC_CENSUS_POLYCYLINDER;
        break;
    case ContentKind::Cylinder:
        kind = HC_CENSUS_CYLINDER;
        break;
    case ContentKind::Sphere:
        kind = HC_CENSUS_SPHERE;
        break;
    case ContentKind::NurbsCurve:
        kind = HC_CENSUS_NURBS_CURVE;
        break;
    case ContentKind::NurbsSurface:
        kind = HC_CENSUS_NURBS_SURFACE;
        break;
    case ContentKind::Text:
        kind = HC_CENSUS_TEXT;
        break;
    case ContentKind::InfiniteLine:
        kind = HC_CENSUS_INFINITE_LINE;
        break;
    case ContentKind::InfiniteRay:
        kind = HC_CENSUS_INFINITE_RAY;
        break;
    case ContentKind::Grid:
        kind = HC_CENSUS_GRID;
        break;
    default:
        return;
    }
    ++census.counts[kind];
}

void Census(const Database& db, Slot start, HC_CENSUS& census) {
    const Object* object = db.Get(start);
    if (!object) return;
    if (object->kind == ObjectKind::Geometry) {
        AddItem(static_cast<const Geometry&>(*object), census);
        return;
    }
    if (object->kind != ObjectKind::Segment) return;
    // Depth first without recursion. Only includes can close a cycle, so only the segments that
    // includes lead to (and the start) are remembered while they are being walked; an include of
    // one of them is not followed again. Plain subsegments cost no bookkeeping.
    struct Frame {
        Slot segment;
        bool included;
        bool leaving;
    };
    std::vector<Frame> pending{{start, true, false}};
    std::vector<Slot> chain;
    while (!pending.empty()) {
        Frame frame = pending.back();
        pending.pop_back();
        if (frame.leaving) {
            chain.pop_back();
            continue;
        }
        const Segment* segment = db.GetSegment(frame.segment);
        if (!segment) continue;
        if (frame.included) {
            if (std::find(chain.begin(), chain.end(), frame.segment) != chain.end()) continue;
            chain.push_back(frame.segment);
            pending.push_back({frame.segment, true, true});
        }
        for (Slot c = segment->geometry.first; c != kNoSlot; c = db.Next(c))
            AddItem(static_cast<const Geometry&>(*db.Get(c)), census);
        for (Slot c = segment->links.first; c != kNoSlot; c = db.Next(c)) {
            const auto* link = static_cast<const Link*>(db.Get(c));
            if (link->type == ContentKind::Include) {
                Slot target = db.LinkTarget(*link);
                if (target != kNoSlot) pending.push_back({target, true, false});
            }
        }
        for (Slot c = segment->segments.first; c != kNoSlot; c = db.Next(c))
            pending.push_back({c, false, false});
    }
}

// Not part of the database: a reset empties the scene, and the services outlive it. Never
// destroyed, since a library's destructors may still ask for a service at exit (and what the
// services point at stays reachable from here until the end).
std::map<std::string, void*, std::less<>>& Services() {
    static auto* services = new std::map<std::string, void*, std::less<>>;
    return *services;
}

} // namespace
} // namespace hc

using namespace hc;

extern "C" {

int HC_Fast_Subsegment_Count(HC_KEY segment) {
    const Segment* owner = SegmentOf(Current(), segment);
    return owner ? static_cast<int>(owner->segments.count) : 0;
}

int HC_Fast_Subsegment_Keys(HC_KEY segment, int first, int last, HC_KEY* keys) {
    const Database& db = Current();
    const Segment* owner = SegmentOf(db, segment);
    if (!owner || !keys || first < 0 || last < first) return 0;
    int count = static_cast<int>(owner->segments.count);
    if (last >= count) last = count - 1;
    if (first > last) return 0;
    if (first <= count - 1 - last) {
        Slot slot = owner->segments.first;
        for (int index = 0; index < first; ++index)
            slot = db.Next(slot);
        for (int index = first; index <= last; ++index, slot = db.Next(slot))
            keys[index - first] = db.KeyOf(slot);
    } else {
        Slot slot = owner->segments.last;
        for (int index = count - 1; index > last; --index)
            slot = db.Prev(slot);
        for (int index = last; index >= first; --index, slot = db.Prev(slot))
            keys[index - first] = db.KeyOf(slot);
    }
    return last - first + 1;
}

// The place is unknown, so the walk goes from both ends at once and meets the key from the
// nearer one.
int HC_Fast_Subsegment_Position(HC_KEY segment, HC_KEY key) {
    const Database& db = Current();
    const Segment* owner = SegmentOf(db, segment);
    Slot wanted = db.Resolve(key);
    if (!owner || wanted == kNoSlot || db.Get(wanted)->owner != owner->slot) return 0;
    int count = static_cast<int>(owner->segments.count);
    Slot front = owner->segments.first;
    Slot back = owner->segments.last;
    for (int index = 0; index <= count - 1 - index; ++index) {
        if (front == wanted) return index + 1;
        if (back == wanted) return count - index;
        front = db.Next(front);
        back = db.Prev(back);
    }
    return 0;
}

const char* HC_Fast_Segment_Name(HC_KEY segment, size_t* length) {
    const Database& db = Current();
    const Segment* found = SegmentOf(db, segment);
    if (!found) return nullptr;
    std::string_view name = OwnName(db, *found);
    if (length) *length = name.size();
    return name.data();
}

unsigned HC_Fast_Segment_Holds(HC_KEY segment) {
    const Segment* owner = SegmentOf(Current(), segment);
    return owner ? Holds(*owner) : 0;
}

bool HC_Fast_Find_Contents(HC_FAST_CONTENTS_ITEM* item) {
    Found found{};
    if (!item || !CurrentSession().FindContents(found)) return false;
    const Database& db = Current();
    std::string_view type = TypeWord(found.type);
    *item = {};
    item->key = db.KeyOf(found.slot);
    item->type = type.data();
    item->type_length = type.size();
    if (const Segment* segment = db.GetSegment(found.slot)) {
        item->holds = Holds(*segment);
        std::string_view name = OwnName(db, *segment);
        item->name = name.data();
        item->name_length = name.size();
    }
    return true;
}

void HC_Fast_Census(HC_KEY key, HC_CENSUS* census) {
    if (!census) return;
    *census = {};
    const Database& db = Current();
    Census(db, db.Resolve(key), *census);
}

bool HC_Fast_Read_Metafile(const char* file, HC_KEY segment, char* error) {
    Database& db = Current();
    std::string reason;
    Slot slot = db.Resolve(segment);
    if (!db.GetSegment(slot))
        reason = "the segment to load into does not exist";
    else if (LoadMetafileFile(db, file ? file : "", slot, reason))
        return true;
    CopyOut(reason, error);
    return false;
}

void HC_Fast_Define_Service(const char* name, void* service) {
    if (!name) return;
    if (service)
        Services()[name] = service;
    else if (auto found = Services().find(std::string_view(name)); found != Services().end())
        Services().erase(found);
}

void* HC_Fast_Show_Service(const char* name) {
    if (!name) return nullptr;
    auto found = Services().find(std::string_view(name));
    return found == Services().end() ? nullptr : found->second;
}

} // extern "C"
