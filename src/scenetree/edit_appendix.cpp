#include "scenetree/edit_appendix.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "text/text.h"

namespace obsidra::scenetree {

namespace {

using text::AppendFormat;

void AppendPoint(std::string& out, const HC_POINT& p) {
    AppendFormat(out, "%f %f %f", double(p.x), double(p.y), double(p.z));
}

// "<x y z, x y z, ...>"
void AppendPointList(std::string& out, const HC_POINT* points, int count) {
    out += '<';
    for (int i = 0; i < count; ++i) {
        if (i) out += ", ";
        AppendPoint(out, points[i]);
    }
    out += ">\n";
}

std::string ShellText(HC_KEY key) {
    int pointCount = 0, faceListLength = 0;
    HC_Show_Shell_Size(key, &pointCount, &faceListLength);
    std::vector<HC_POINT> points(static_cast<size_t>(std::max(pointCount, 0)));
    std::vector<int> faces(static_cast<size_t>(std::max(faceListLength, 0)));
    HC_Show_Shell(key, &pointCount, points.data(), &faceListLength, faces.data());
    std::string out = "\n";
    for (int i = 0; i < pointCount; ++i) {
        const HC_POINT& p = points[size_t(i)];
        AppendFormat(out, "%f, %f, %f", double(p.x), double(p.y), double(p.z));
        if (i + 1 < pointCount) out += ",     ";
    }
    out += '\n';
    for (int i = 0; i < faceListLength;) {
        const int count = faces[size_t(i)];
        // A hole's loop counts its vertices negatively; its indices follow all the same.
        const int n = std::abs(count);
        AppendFormat(out, "%d, ", count);
        for (int j = 1; j <= n && i + j < faceListLength; ++j) {
            AppendFormat(out, "%d", faces[size_t(i + j)]);
            if (j < n)
                out += ',';
            else if (i + j + n < faceListLength)
                // The separator after a face is kept only where the last index's place plus the
                // face's count stays inside the list: a large face before a small last one gets
                // none, as the text has always been written.
                out += "   ";
        }
        i += n + 1;
    }
    out += '\n';
    return out;
}

std::string MeshText(HC_KEY key) {
    int rows = 0, columns = 0;
    HC_Show_Mesh_Size(key, &rows, &columns);
    if (rows < 1 || columns < 1) return "\n";
    std::vector<HC_POINT> points(size_t(rows) * size_t(columns));
    HC_Show_Mesh(key, &rows, &columns, points.data());
    std::string out = "\n";
    for (int row = 0; row < rows; ++row)
        AppendPointList(out, &points[size_t(row) * size_t(columns)], columns);
    return out;
}

template <void (*ShowCount)(HC_KEY, int*), void (*Show)(HC_KEY, int*, HC_POINT*)>
std::string PointListText(HC_KEY key) {
    int count = 0;
    ShowCount(key, &count);
    std::vector<HC_POINT> points(static_cast<size_t>(std::max(count, 0)));
    Show(key, &count, points.data());
    std::string out = "\n";
    AppendPointList(out, points.data(), count);
    return out;
}

std::string CircularArcText(HC_KEY key) {
    HC_POINT p[3]{};
    HC_Show_Circular_Arc(key, &p[0], &p[1], &p[2]);
    std::string out = "\n";
    AppendPointList(out, p, 3);
    return out;
}

// "Cenrter" is the label the text has always carried; the descriptors read it back.
std::string EllipticalArcText(HC_KEY key) {
    HC_POINT center{}, major{}, minor{};
    float start = 0, end = 0;
    HC_Show_Elliptical_Arc(key, &center, &major, &minor, &start, &end);
    std::string out = "\n<Cenrter:";
    AppendPoint(out, center);
    out += ", Major:";
    AppendPoint(out, major);
    out += ", Minor:";
    AppendPoint(out, minor);
    out += ">\n";
    return out;
}

std::string CircleText(HC_KEY key) {
    HC_POINT center{};
    HC_VECTOR normal{};
    float radius = 0;
    HC_Show_Circle_By_Radius(key, &center, &radius, &normal);
    std::string out = "\n<Cenrter:";
    AppendPoint(out, center);
    AppendFormat(out, ", Radius:%f, Normal:", double(radius));
    AppendPoint(out, normal);
    out += ">\n";
    return out;
}

std::string CuttingPlaneText(HC_KEY key) {
    float a = 0, b = 0, c = 0, d = 0;
    HC_Show_Cutting_Plane(key, &a, &b, &c, &d);
    std::string out;
    AppendFormat(out, "\n<a:%f, b:%f c:%f, d:%f>\n", double(a), double(b), double(c), double(d));
    return out;
}

struct AppendixMaker {
    const char* kind;
    std::string (*make)(HC_KEY);
};

constexpr AppendixMaker kMakers[] = {
    {"SHELL", ShellText},
    {"MESH", MeshText},
    {"CIRCULAR ARC", CircularArcText},
    {"POLYLINE", PointListText<HC_Show_Polyline_Count, HC_Show_Polyline>},
    {"POLYGON", PointListText<HC_Show_Polygon_Count, HC_Show_Polygon>},
    {"ELLIPTICAL ARC", EllipticalArcText},
    {"CIRCLE", CircleText},
    {"CUTTING PLANE", CuttingPlaneText},
};

} // namespace

std::string EditAppendix(HC_KEY key, const std::function<bool(const char* kind)>& isOfKind) {
    std::string out;
    for (const AppendixMaker& maker : kMakers)
        if (isOfKind(maker.kind)) out += maker.make(key);
    return out;
}

} // namespace obsidra::scenetree
