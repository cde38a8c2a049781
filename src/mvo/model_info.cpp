#include "mvo/model_info.h"

#include <algorithm>

#include "hc/database.h"

using hc::ContentKind;

HModelInfo::HModelInfo() = default;
HModelInfo::~HModelInfo() = default;

void HModelInfo::AddItem(const hc::Geometry& geometry) {
    Kind kind = Kind::Count;
    switch (geometry.type) {
    case ContentKind::Shell: {
        kind = Kind::Shell;
        m_vertices += static_cast<uint32_t>(geometry.points.size());
        const std::vector<int>& faces = geometry.ints;
        for (size_t i = 0; i < faces.size();) {
            int n = faces[i];
            if (n > 0) {
                ++m_faces;
                if (n == 3) ++m_triangles;
            }
            i += static_cast<size_t>(n < 0 ? -static_cast<long long>(n) : n) + 1;
        }
        break;
    }
    case ContentKind::Mesh: {
        kind = Kind::Mesh;
        if (geometry.ints.size() >= 2) {
            uint32_t rows = static_cast<uint32_t>(geometry.ints[0]);
            uint32_t columns = static_cast<uint32_t>(geometry.ints[1]);
            m_vertices += rows * columns;
            uint32_t triangles = rows > 1 && columns > 1 ? 2 * (rows - 1) * (columns - 1) : 0;
            m_faces += triangles;
            m_triangles += triangles;
        }
        break;
    }
    case ContentKind::Polygon:
        kind = Kind::Polygon;
        ++m_faces;
        if (geometry.points.size() == 3) ++m_triangles;
        m_vertices += static_cast<uint32_t>(geometry.points.size());
        break;
    case ContentKind::Polyline:
        kind = Kind::Polyline;
        break;
    case ContentKind::Line:
        kind = Kind::Line;
        break;
    case ContentKind::Circle:
        kind = Kind::Circle;
        break;
    case ContentKind::CircularArc:
        kind = Kind::CircularArc;
        break;
    case ContentKind::CircularChord:
        kind = Kind::CircularChord;
        break;
    case ContentKind::CircularWedge:
        kind = Kind::CircularWedge;
        break;
    case ContentKind::Ellipse:
        kind = Kind::Ellipse;
        break;
    case ContentKind::EllipticalArc:
        kind = Kind::EllipticalArc;
        break;
    case ContentKind::Image:
        kind = Kind::Image;
        break;
    case ContentKind::Marker:
        kind = Kind::Marker;
        break;
    case ContentKind::LocalLight:
        kind = Kind::LocalLight;
        break;
    case ContentKind::DistantLight:
        kind = Kind::DistantLight;
        break;
    case ContentKind::SpotLight:
        kind = Kind::SpotLight;
        break;
    case ContentKind::CuttingPlane:
        kind = Kind::CuttingPlane;
        break;
    case ContentKind::PolyCylinder:
        kind = Kind::PolyCylinder;
        break;
    case ContentKind::Cylinder:
        kind = Kind::Cylinder;
        break;
    case ContentKind::Sphere:
        kind = Kind::Sphere;
        break;
    case ContentKind::NurbsCurve:
        kind = Kind::NurbsCurve;
        break;
    case ContentKind::NurbsSurface:
        kind = Kind::NurbsSurface;
        break;
    case ContentKind::Text:
        kind = Kind::Text;
        break;
    case ContentKind::InfiniteLine:
        kind = Kind::InfiniteLine;
        break;
    case ContentKind::InfiniteRay:
        kind = Kind::InfiniteRay;
        break;
    case ContentKind::Grid:
        kind = Kind::Grid;
        break;
    default:
        return;
    }
    ++m_counts[static_cast<size_t>(kind)];
}

void HModelInfo::ComputeModelInfo(HC_KEY key, int /*options*/) {
    m_counts = {};
    m_faces = m_triangles = m_vertices = 0;
    hc::Database& db = hc::Current();
    hc::Slot start = db.Resolve(key);
    const hc::Object* object = db.Get(start);
    if (!object) return;
    if (object->kind == hc::ObjectKind::Geometry) {
        AddItem(static_cast<const hc::Geometry&>(*object));
        return;
    }
    if (object->kind != hc::ObjectKind::Segment) return;
    // Depth first without recursion. Only includes can close a cycle, so only the segments that
    // includes lead to (and the start) are remembered while they are being walked; an include of
    // one of them is not followed again. Plain subsegments cost no bookkeeping.
    struct Frame {
        hc::Slot segment;
        bool included;
        bool leaving;
    };
    std::vector<Frame> pending{{start, true, false}};
    std::vector<hc::Slot> chain;
    while (!pending.empty()) {
        Frame frame = pending.back();
        pending.pop_back();
        if (frame.leaving) {
            chain.pop_back();
            continue;
        }
        const hc::Segment* segment = db.GetSegment(frame.segment);
        if (!segment) continue;
        if (frame.included) {
            if (std::find(chain.begin(), chain.end(), frame.segment) != chain.end()) continue;
            chain.push_back(frame.segment);
            pending.push_back({frame.segment, true, true});
        }
        for (hc::Slot c = segment->geometry.first; c != hc::kNoSlot; c = db.Next(c))
            AddItem(static_cast<const hc::Geometry&>(*db.Get(c)));
        for (hc::Slot c = segment->links.first; c != hc::kNoSlot; c = db.Next(c)) {
            const auto* link = static_cast<const hc::Link*>(db.Get(c));
            if (link->type == ContentKind::Include) {
                hc::Slot target = db.LinkTarget(*link);
                if (target != hc::kNoSlot) pending.push_back({target, true, false});
            }
        }
        for (hc::Slot c = segment->segments.first; c != hc::kNoSlot; c = db.Next(c))
            pending.push_back({c, false, false});
    }
}
