#include "scenetree/model_texts.h"

#include <cstdint>

#include "mvo/model_info.h"
#include "scenetree/scene_access.h"

namespace obsidra::scenetree {

namespace {

struct KindLine {
    std::uint32_t (HModelInfo::*count)() const;
    const char* format;
};

// The census lines in the order the panel lists them. Grids are counted by the census but have
// no line.
constexpr KindLine kKindLines[] = {
    {&HModelInfo::GetTotalShell, "%d shells"},
    {&HModelInfo::GetTotalMesh, "%d meshes"},
    {&HModelInfo::GetTotalPolyline, "%d polylines"},
    {&HModelInfo::GetTotalLine, "%d lines"},
    {&HModelInfo::GetTotalPolygon, "%d polygons"},
    {&HModelInfo::GetTotalCircle, "%d circles"},
    {&HModelInfo::GetTotalCircularArc, "%d circular arcs"},
    {&HModelInfo::GetTotalCircularChord, "%d circular chords"},
    {&HModelInfo::GetTotalCircularWedge, "%d circular wedges"},
    {&HModelInfo::GetTotalEllipse, "%d ellipses"},
    {&HModelInfo::GetTotalEllipticalArc, "%d elliptical arcs"},
    {&HModelInfo::GetTotalImage, "%d images"},
    {&HModelInfo::GetTotalMarker, "%d markers"},
    {&HModelInfo::GetTotalLocalLight, "%d local lights"},
    {&HModelInfo::GetTotalDistantLight, "%d distant lights"},
    {&HModelInfo::GetTotalSpotLight, "%d spot lights"},
    {&HModelInfo::GetTotalCuttingPlane, "%d cutting planes"},
    {&HModelInfo::GetTotalPolyCylinders, "%d polycylinders"},
    {&HModelInfo::GetTotalCylinders, "%d cylinders"},
    {&HModelInfo::GetTotalSpheres, "%d spheres"},
    {&HModelInfo::GetTotalNURBSCurves, "%d NURBS curves"},
    {&HModelInfo::GetTotalNURBSSurfaces, "%d NURBS surfaces"},
    {&HModelInfo::GetTotalText, "%d text strings"},
    {&HModelInfo::GetTotalInfiniteLines, "%d infinite lines"},
    {&HModelInfo::GetTotalInfiniteRays, "%d infinite rays"},
};

bool HasBoundingLine(const std::string& type) {
    return type == "segment" || type == "reference" || type == "shell" || type == "mesh" ||
           type == "polycylinder";
}

std::string BoundingInfo(HC_KEY key) {
    char info[HC_TEXT_MAX] = "";
    HC_Show_Bounding_Info_By_Key(key, info);
    return info;
}

} // namespace

std::vector<std::string> CensusLines(HC_KEY segment) {
    HModelInfo info;
    info.ComputeModelInfo(segment, 0);
    std::vector<std::string> lines;
    std::string first;
    auto addPart = [&first](std::uint32_t count, const char* format) {
        if (count == 0) return;
        if (!first.empty()) first += ", ";
        first += Format(format, static_cast<int>(count));
    };
    addPart(info.GetTotalFaces(), "%d faces");
    addPart(info.GetTotalTriangles(), "%d triangles");
    addPart(info.GetTotalVertices(), "%d vertices");
    if (!first.empty()) lines.push_back(first);
    for (const KindLine& line : kKindLines)
        if (std::uint32_t count = (info.*line.count)())
            lines.push_back(Format(line.format, static_cast<int>(count)));
    return lines;
}

std::string BoundingText(HC_KEY key) {
    std::string type = KeyType(key);
    if (!HasBoundingLine(type)) return {};
    const char* format = "Bounding %s";
    std::string info = BoundingInfo(key);
    HC_KEY boundsKey = key;
    if (type == "reference") {
        int count = 0;
        HC_Show_Reference_Keys_Count(key, &count);
        if (count == 1) {
            HC_KEY referee = HC_Show_Reference_Geometry(key);
            if (IsObjectKey(referee)) boundsKey = referee;
            if (IsObjectKey(referee) && HasBoundingLine(KeyType(referee))) {
                info = BoundingInfo(referee);
                format = "Referee Bounding %s";
            }
        }
    }
    if (info.empty()) return {};
    std::string line = Format(format, info.c_str());
    if (info.size() > 5 && info[5] == 'c') {
        HC_POINT min{}, max{};
        HC_Show_Bounding_Cuboid_By_Key(boundsKey, &min, &max);
        line +=
            Format(": { (%f, %f, %f), (%f, %f, %f) }", min.x, min.y, min.z, max.x, max.y, max.z);
    } else if (info.size() > 5 && info[5] == 's') {
        HC_POINT center{};
        float radius = 0;
        HC_Show_Bounding_Sphere_By_Key(boundsKey, &center, &radius);
        line += Format(": { (%f, %f, %f), radius=%f }", center.x, center.y, center.z, radius);
    }
    return line.substr(0, HC_TEXT_MAX - 1);
}

} // namespace obsidra::scenetree
