#pragma once

// How each geometry kind keeps its data in Geometry (docs/formats.md, "Geometry data"), and the
// geometry that the insert, show, edit and bounding code shares.

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

#include "hc/content_kind.h"
#include "hc/objects.h"

namespace hc {

// Levels of detail a shell can have, 0 to kLodLevels - 1.
constexpr int kLodLevels = 8;

// --- Vectors in double precision -----------------------------------------------------------------

struct Vec {
    double x = 0, y = 0, z = 0;
};

inline Vec ToVec(const HC_POINT& p) {
    return {p.x, p.y, p.z};
}
inline HC_POINT ToPoint(const Vec& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}
inline Vec operator+(const Vec& a, const Vec& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator-(const Vec& a, const Vec& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator*(const Vec& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
inline double Dot(const Vec& a, const Vec& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec Cross(const Vec& a, const Vec& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vec& a) {
    return std::sqrt(Dot(a, a));
}
inline double Component(const Vec& a, int axis) {
    return axis == 0 ? a.x : axis == 1 ? a.y : a.z;
}

// The circle through three points a, b, c: they run counter-clockwise about the unit normal, u
// points from the centre to a, v = normal x u, and sweep is the angle from a through b to c, in
// (0, 2 pi). False when the points are collinear or not numbers.
struct CircleFrame {
    Vec center;
    double radius = 0;
    Vec normal, u, v;
    double sweep = 0;
};
bool CircleThrough(const HC_POINT& a, const HC_POINT& b, const HC_POINT& c, CircleFrame& frame);

// Three points on the circle of that centre, radius and normal (not zero), a half turn from the
// first through the second to the third, so that CircleThrough gives the circle back.
std::vector<HC_POINT> CirclePoints(const HC_POINT& center, double radius, const HC_VECTOR& normal);

// --- Shell face lists ----------------------------------------------------------------------------

// One loop of a face list: a face (positive count) or a hole of the face before it (negative
// count). position is the index of the count entry; count is the number of vertices.
struct FaceLoop {
    int position;
    int count;
    bool hole;
};

// The loops of a face list, up to the first entry that does not fit the list.
std::vector<FaceLoop> FaceLoops(const std::vector<int>& faceList);
// What is wrong with a face list over pointCount points ("face list entry 3 names no point"),
// or an empty text when nothing is.
std::string FaceListProblem(const int* faceList, int length, int pointCount);
int FaceCount(const std::vector<int>& faceList);
// Edges are numbered along the face list: loop by loop, edge k of a loop running from its k-th
// vertex to the next, so a loop of n vertices has n edges and an edge two faces share has two
// numbers.
int EdgeCount(const std::vector<int>& faceList);
// The strips a simple builder makes walking the faces in order: a triangle that shares the last
// edge of the current strip (any edge while the strip is one triangle) extends it; every other
// face starts a strip of its own.
int TristripCount(const std::vector<int>& faceList);

// The shell's details, null when it has none.
inline const ShellDetails* DetailsOf(const Geometry& shell) {
    return shell.extras ? shell.extras->shell.get() : nullptr;
}
ShellDetails& ObtainDetails(Geometry& shell);
// Drops the lists that hold nothing set any more, and the details when none is left, so that a
// shell without details stays as small as it was.
void TrimDetails(Geometry& shell);

// --- Other layouts -------------------------------------------------------------------------------

// The caps of a cylinder or polycylinder as stored: "none", "first", "second" or "both" (an
// empty text means "both"); empty when caps names none of them.
std::string CapsWord(std::string_view caps);
// A grid's type as stored: "quadrilateral" (also for an empty text) or "radial"; empty when type
// is neither.
std::string GridType(std::string_view type);

// Bytes per pixel of an image format ("rgb", "RGBA, name=x": the first item counts), 0 for a
// format the database does not know.
int PixelSize(std::string_view format);
// The pixel bytes of an image travel in ints after width and height, four to an int, the first
// byte in the lowest bits.
std::vector<int> PackBytes(const unsigned char* bytes, size_t count);
void UnpackBytes(const std::vector<int>& ints, size_t first, size_t count, unsigned char* bytes);
// The image's pixel byte count by its format and size; 0 when they are malformed.
size_t ImageByteCount(const Geometry& image);

// The radius of a polycylinder at point i: its own when it has one, else the last given.
float PolyCylinderRadius(const Geometry& item, size_t i);

// Whether an item holds what its kind's layout needs: the right number of points, integers and
// values, and for shells a face list that fits its points and details that fit both. Items made
// by the HC_ functions always do; a reader of stored data should check what it builds.
bool IsWellFormed(const Geometry& item);

// The shell details a filter asks about: "vertex attributes" (normals), "edge attributes"
// (visibilities), "face attributes" (colours); for Database::Count.
int CountDetails(const Geometry& item, const Filter& filter);

// Copies all of an item's data but its attached references and attributes.
void CopyGeometryData(const Geometry& from, Geometry& to);

} // namespace hc
