#pragma once

#include <cstdint>

#include <obsidra/hc_fastpath.h>

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
    uint32_t GetTotalFaces() const { return m_census.faces; }
    // Of those faces, the ones with three vertices.
    uint32_t GetTotalTriangles() const { return m_census.triangles; }
    uint32_t GetTotalVertices() const { return m_census.vertices; }

    uint32_t GetTotalShell() const { return Count(HC_CENSUS_SHELL); }
    uint32_t GetTotalMesh() const { return Count(HC_CENSUS_MESH); }
    uint32_t GetTotalPolyline() const { return Count(HC_CENSUS_POLYLINE); }
    uint32_t GetTotalLine() const { return Count(HC_CENSUS_LINE); }
    uint32_t GetTotalPolygon() const { return Count(HC_CENSUS_POLYGON); }
    uint32_t GetTotalCircle() const { return Count(HC_CENSUS_CIRCLE); }
    uint32_t GetTotalCircularArc() const { return Count(HC_CENSUS_CIRCULAR_ARC); }
    uint32_t GetTotalCircularChord() const { return Count(HC_CENSUS_CIRCULAR_CHORD); }
    uint32_t GetTotalCircularWedge() const { return Count(HC_CENSUS_CIRCULAR_WEDGE); }
    uint32_t GetTotalEllipse() const { return Count(HC_CENSUS_ELLIPSE); }
    uint32_t GetTotalEllipticalArc() const { return Count(HC_CENSUS_ELLIPTICAL_ARC); }
    uint32_t GetTotalImage() const { return Count(HC_CENSUS_IMAGE); }
    uint32_t GetTotalMarker() const { return Count(HC_CENSUS_MARKER); }
    uint32_t GetTotalLocalLight() const { return Count(HC_CENSUS_LOCAL_LIGHT); }
    uint32_t GetTotalDistantLight() const { return Count(HC_CENSUS_DISTANT_LIGHT); }
    uint32_t GetTotalSpotLight() const { return Count(HC_CENSUS_SPOT_LIGHT); }
    uint32_t GetTotalCuttingPlane() const { return Count(HC_CENSUS_CUTTING_PLANE); }
    uint32_t GetTotalPolyCylinders() const { return Count(HC_CENSUS_POLYCYLINDER); }
    uint32_t GetTotalCylinders() const { return Count(HC_CENSUS_CYLINDER); }
    uint32_t GetTotalSpheres() const { return Count(HC_CENSUS_SPHERE); }
    uint32_t GetTotalNURBSCurves() const { return Count(HC_CENSUS_NURBS_CURVE); }
    uint32_t GetTotalNURBSSurfaces() const { return Count(HC_CENSUS_NURBS_SURFACE); }
    uint32_t GetTotalText() const { return Count(HC_CENSUS_TEXT); }
    uint32_t GetTotalInfiniteLines() const { return Count(HC_CENSUS_INFINITE_LINE); }
    uint32_t GetTotalInfiniteRays() const { return Count(HC_CENSUS_INFINITE_RAY); }
    uint32_t GetTotalGrids() const { return Count(HC_CENSUS_GRID); }

private:
    uint32_t Count(HC_CENSUS_KIND kind) const { return m_census.counts[kind]; }

    HC_CENSUS m_census{};
};
