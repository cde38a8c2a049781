// The geometry functions of the C interface: insert, show and edit each kind of item.
#include <algorithm>
#include <string>
#include <vector>

#include "hc/api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

HC_KEY InsertPoints(ContentKind type, std::vector<HC_POINT> points, std::string text = {}) {
    Geometry* geometry = Current().AddGeometry(CurrentSegmentOrReport(), type);
    if (!geometry) return 0;
    geometry->points = std::move(points);
    if (!text.empty()) geometry->Extras().text = std::move(text);
    return Current().KeyOf(geometry->slot);
}

} // namespace

extern "C" {

// --- Geometry ------------------------------------------------------------------------------------

HC_KEY HC_Insert_Shell(int pointCount, const HC_POINT* points, int faceListLength,
                       const int* faceList) {
    HC_API(HC_Insert_Shell);
    if (pointCount < 0 || faceListLength < 0 || (pointCount > 0 && !points) ||
        (faceListLength > 0 && !faceList)) {
        ReportError("bad point or face list");
        return 0;
    }
    // Each face: a vertex count (negative for a hole), then that many point indices.
    for (int i = 0; i < faceListLength;) {
        long long n = faceList[i] < 0 ? -static_cast<long long>(faceList[i]) : faceList[i];
        if (n == 0 || i + 1 + n > faceListLength) {
            ReportError("face list entry " + std::to_string(i) + " does not fit the list");
            return 0;
        }
        for (long long j = i + 1; j <= i + n; ++j) {
            if (faceList[j] < 0 || faceList[j] >= pointCount) {
                ReportError("face list entry " + std::to_string(j) + " names no point");
                return 0;
            }
        }
        i += static_cast<int>(n) + 1;
    }
    Geometry* shell = Current().AddGeometry(CurrentSegmentOrReport(), ContentKind::Shell);
    if (!shell) return 0;
    shell->points.assign(points, points + pointCount);
    shell->ints.assign(faceList, faceList + faceListLength);
    return Current().KeyOf(shell->slot);
}

HC_KEY HC_Insert_Polyline(int count, const HC_POINT* points) {
    HC_API(HC_Insert_Polyline);
    if (count < 2 || !points) {
        ReportError("a polyline needs at least two points");
        return 0;
    }
    return InsertPoints(ContentKind::Polyline, std::vector<HC_POINT>(points, points + count));
}

HC_KEY HC_Insert_Line(double xa, double ya, double za, double xb, double yb, double zb) {
    HC_API(HC_Insert_Line);
    return InsertPoints(ContentKind::Line, {Point(xa, ya, za), Point(xb, yb, zb)});
}

HC_KEY HC_Insert_Marker(double x, double y, double z) {
    HC_API(HC_Insert_Marker);
    return InsertPoints(ContentKind::Marker, {Point(x, y, z)});
}

HC_KEY HC_Insert_Text(double x, double y, double z, const char* text) {
    HC_API(HC_Insert_Text);
    return InsertPoints(ContentKind::Text, {Point(x, y, z)}, std::string(Text(text)));
}

void HC_Show_Shell_Size(HC_KEY key, int* pointCount, int* faceListLength) {
    HC_API(HC_Show_Shell_Size);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(pointCount, shell ? static_cast<int>(shell->points.size()) : 0);
    Put(faceListLength, shell ? static_cast<int>(shell->ints.size()) : 0);
}

void HC_Show_Shell(HC_KEY key, int* pointCount, HC_POINT* points, int* faceListLength,
                   int* faceList) {
    HC_API(HC_Show_Shell);
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    Put(pointCount, shell ? static_cast<int>(shell->points.size()) : 0);
    Put(faceListLength, shell ? static_cast<int>(shell->ints.size()) : 0);
    if (!shell) return;
    if (points) std::copy(shell->points.begin(), shell->points.end(), points);
    if (faceList) std::copy(shell->ints.begin(), shell->ints.end(), faceList);
}

void HC_Show_Polyline_Count(HC_KEY key, int* count) {
    HC_API(HC_Show_Polyline_Count);
    Geometry* polyline = GeometryOf(key, ContentKind::Polyline);
    Put(count, polyline ? static_cast<int>(polyline->points.size()) : 0);
}

void HC_Show_Polyline(HC_KEY key, int* count, HC_POINT* points) {
    HC_API(HC_Show_Polyline);
    Geometry* polyline = GeometryOf(key, ContentKind::Polyline);
    Put(count, polyline ? static_cast<int>(polyline->points.size()) : 0);
    if (polyline && points) std::copy(polyline->points.begin(), polyline->points.end(), points);
}

void HC_Show_Line(HC_KEY key, float* xa, float* ya, float* za, float* xb, float* yb, float* zb) {
    HC_API(HC_Show_Line);
    Geometry* line = GeometryOf(key, ContentKind::Line);
    HC_POINT a = line ? line->points[0] : HC_POINT{0, 0, 0};
    HC_POINT b = line ? line->points[1] : HC_POINT{0, 0, 0};
    Put(xa, a.x), Put(ya, a.y), Put(za, a.z), Put(xb, b.x), Put(yb, b.y), Put(zb, b.z);
}

void HC_Show_Marker(HC_KEY key, float* x, float* y, float* z) {
    HC_API(HC_Show_Marker);
    Geometry* marker = GeometryOf(key, ContentKind::Marker);
    HC_POINT p = marker ? marker->points[0] : HC_POINT{0, 0, 0};
    Put(x, p.x), Put(y, p.y), Put(z, p.z);
}

void HC_Show_Text(HC_KEY key, float* x, float* y, float* z, char* text) {
    HC_API(HC_Show_Text);
    Geometry* item = GeometryOf(key, ContentKind::Text);
    HC_POINT p = item ? item->points[0] : HC_POINT{0, 0, 0};
    Put(x, p.x), Put(y, p.y), Put(z, p.z);
    CopyOut(item ? item->Text() : std::string(), text);
}

} // extern "C"
