#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <obsidra/hc.h>

namespace hc {
struct Geometry;
}

// A census of the geometry at and below a key: how many items of each kind, and the faces,
// triangles and vertices of shells, meshes and polygons. Included segments count each time they
// are included (an include cycle is walked once around).
class HModelInfo {
public:
    HModelInfo();
    virtual ~HModelInfo();

    // Counts what the key holds: a segment's subtree, or one geometry item. options is unused
    // and kept for callers that pass 0.
    virtual void ComputeModelInfo(HC_KEY key, int options);

    // Faces of shells (holes are not faces), meshes (two triangles per quad) and polygons.
    uint32_t GetTotalFaces() const { return m_faces; }
    // Of those faces, the ones with three vertices.
    uint32_t GetTotalTriangles() const { return m_triangles; }
    uint32_t GetTotalVertices() const { return m_vertices; }

    uint32_t GetTotalShell() const { return Count(Kind::Shell); }
    uint32_t GetTotalMesh() const { return Count(Kind::Mesh); }
    uint32_t GetTotalPolyline() const { return Count(Kind::Polyline); }
    uint32_t GetTotalLine() const { return Count(Kind::Line); }
    uint32_t GetTotalPolygon() const { return Count(Kind::Polygon); }
    uint32_t GetTotalCircle() const { return Count(Kind::Circle); }
    uint32_t GetTotalCircularArc() const { return Count(Kind::CircularArc); }
    uint32_t GetTotalCircularChord() const { return Count(Kind::CircularChord); }
    uint32_t GetTotalCircularWedge() const { return Count(Kind::CircularWedge); }
    uint32_t GetTotalEllipse() const { return Count(Kind::Ellipse); }
    uint32_t GetTotalEllipticalArc() const { return Count(Kind::EllipticalArc); }
    uint32_t GetTotalImage() const { return Count(Kind::Image); }
    uint32_t GetTotalMarker() const { return Count(Kind::Marker); }
    uint32_t GetTotalLocalLight() const { return Count(Kind::LocalLight); }
    uint32_t GetTotalDistantLight() const { return Count(Kind::DistantLight); }
    uint32_t GetTotalSpotLight() const { return Count(Kind::SpotLight); }
    uint32_t GetTotalCuttingPlane() const { return Count(Kind::CuttingPlane); }
    uint32_t GetTotalPolyCylinders() const { return Count(Kind::PolyCylinder); }
    uint32_t GetTotalCylinders() const { return Count(Kind::Cylinder); }
    uint32_t GetTotalSpheres() const { return Count(Kind::Sphere); }
    uint32_t GetTotalNURBSCurves() const { return Count(Kind::NurbsCurve); }
    uint32_t GetTotalNURBSSurfaces() const { return Count(Kind::NurbsSurface); }
    uint32_t GetTotalText() const { return Count(Kind::Text); }
    uint32_t GetTotalInfiniteLines() const { return Count(Kind::InfiniteLine); }
    uint32_t GetTotalInfiniteRays() const { return Count(Kind::InfiniteRay); }
    uint32_t GetTotalGrids() const { return Count(Kind::Grid); }

private:
    enum class Kind {
        Shell,
        Mesh,
        Polyline,
        Line,
        Polygon,
        Circle,
        CircularArc,
        CircularChord,
        CircularWedge,
        Ellipse,
        EllipticalArc,
        Image,
        Marker,
        LocalLight,
        DistantLight,
        SpotLight,
        CuttingPlane,
        PolyCylinder,
        Cylinder,
        Sphere,
        NurbsCurve,
        NurbsSurface,
        Text,
        InfiniteLine,
        InfiniteRay,
        Grid,
        Count
    };
    uint32_t Count(Kind kind) const { return m_counts[static_cast<std::size_t>(kind)]; }
    void AddItem(const hc::Geometry& geometry);

    std::array<uint32_t, static_cast<std::size_t>(Kind::Count)> m_counts{};
    uint32_t m_faces = 0;
    uint32_t m_triangles = 0;
    uint32_t m_vertices = 0;
};
