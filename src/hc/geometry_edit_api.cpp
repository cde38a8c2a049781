// The geometry functions of the C interface that change items in place: a shell's details and
// the edits. Every call checks all it is given before it changes anything.
#include <algorithm>
#include <climits>
#include <optional>
#include <string>
#include <vector>

#include "hc/geometry_api_support.h"

using namespace hc;
using namespace hc::api;

namespace {

Geometry* ShellOf(HC_KEY key) {
    Geometry* shell = GeometryOf(key, ContentKind::Shell);
    return shell && CheckWellFormed(*shell) ? shell : nullptr;
}

ShellDetails* MutableDetails(Geometry& shell) {
    return shell.extras ? shell.extras->shell.get() : nullptr;
}

// Bounds that use the item are computed again when next asked for.
void Edited(const Geometry& item) {
    Current().PlacementChanged(item.slot);
    Current().GeometryChanged(item.slot);
}

enum class ShellPart { Faces, Edges, Points };

size_t SizeOf(const Geometry& shell, ShellPart part) {
    switch (part) {
    case ShellPart::Faces:
        return size_t(FaceCount(shell.ints));
    case ShellPart::Edges:
        return size_t(EdgeCount(shell.ints));
    case ShellPart::Points:
        break;
    }
    return shell.points.size();
}

const char* NameOf(ShellPart part) {
    return part == ShellPart::Faces ? "faces" : part == ShellPart::Edges ? "edges" : "points";
}

// Sets count entries from offset of one of a shell's per-face, per-edge or per-point lists to
// value(i); given is what the caller passed for them.
template <typename T, typename Value>
void SetShellEntries(HC_KEY key, std::vector<T> ShellDetails::*list, ShellPart part, int offset,
                     int count, const void* given, const char* what, T unset, Value value) {
    Geometry* shell = ShellOf(key);
    if (!shell) return;
    size_t size = SizeOf(*shell, part);
    if (!CheckRange(offset, count, size, NameOf(part)) || !CheckArray(count, given, what)) return;
    Current().GeometryChanging(shell->slot);
    std::vector<T>& entries = ObtainDetails(*shell).*list;
    if (entries.empty()) entries.assign(size, unset);
    for (int i = 0; i < count; ++i)
        entries[size_t(offset + i)] = value(i);
    TrimDetails(*shell);
    Current().GeometryChanged(shell->slot);
}

template <typename T>
void Splice(std::vector<T>& list, int offset, int deleteCount, const T* insert, int insertCount) {
    auto at = list.erase(list.begin() + offset, list.begin() + offset + deleteCount);
    list.insert(at, insert, insert + insertCount);
}

// As Splice, inserting copies of fill; a list that holds nothing set stays empty.
template <typename T>
void SpliceFill(std::vector<T>& list, size_t offset, size_t deleteCount, size_t insertCount,
                const T& fill) {
    if (list.empty()) return;
    auto at = list.erase(list.begin() + std::ptrdiff_t(offset),
                         list.begin() + std::ptrdiff_t(offset + deleteCount));
    list.insert(at, insertCount, fill);
}

template <typename T>
void KeepFlagged(std::vector<T>& list, const std::vector<bool>& keep) {
    if (list.empty()) return;
    size_t kept = 0;
    for (size_t i = 0; i < list.size(); ++i)
        if (keep[i]) list[kept++] = std::move(list[i]);
    list.resize(kept);
}

// Checks a splice of a list of size entries: the deleted entries lie within it, the inserted
// ones are given and the result stays within minimum and INT_MAX entries.
bool CheckSplice(size_t size, int offset, int deleteCount, int insertCount, const void* items,
                 const std::string& what, long long minimum) {
    if (!CheckRange(offset, deleteCount, size, what) || !CheckArray(insertCount, items, what))
        return false;
    long long after = static_cast<long long>(size) - deleteCount + insertCount;
    if (after < minimum) {
        ReportError("at least " + std::to_string(minimum) + " " + what + " must remain, not " +
                    std::to_string(after));
        return false;
    }
    if (after > INT_MAX) {
        ReportError("the edit would make too many " + what);
        return false;
    }
    return true;
}

void EditPointArray(HC_KEY key, ContentKind type, int offset, int deleteCount, int insertCount,
                    const HC_POINT* points, int minimum) {
    Geometry* item = GeometryOf(key, type);
    if (!item || !CheckSplice(item->points.size(), offset, deleteCount, insertCount, points,
                              "points", minimum))
        return;
    Current().GeometryChanging(item->slot);
    Splice(item->points, offset, deleteCount, points, insertCount);
    Edited(*item);
}

// The face list once points from goneFrom to goneTo are deleted and the points after them move
// by shift: a face that uses a deleted point goes with its holes, a hole that uses one goes
// alone. keptFaces and keptEdges flag, face by face and edge by edge, what stays.
std::vector<int> RenumberFaces(const std::vector<int>& faceList, int goneFrom, int goneTo,
                               int shift, std::vector<bool>& keptFaces,
                               std::vector<bool>& keptEdges) {
    std::vector<int> result;
    result.reserve(faceList.size());
    bool faceKept = true;
    for (const FaceLoop& loop : FaceLoops(faceList)) {
        const int* vertex = &faceList[size_t(loop.position) + 1];
        bool intact = std::none_of(vertex, vertex + loop.count,
                                   [&](int v) { return v >= goneFrom && v < goneTo; });
        if (!loop.hole) {
            faceKept = intact;
            keptFaces.push_back(intact);
        }
        bool kept = faceKept && intact;
        keptEdges.insert(keptEdges.end(), size_t(loop.count), kept);
        if (!kept) continue;
        result.push_back(faceList[size_t(loop.position)]);
        for (int k = 0; k < loop.count; ++k)
            result.push_back(vertex[k] >= goneTo ? vertex[k] + shift : vertex[k]);
    }
    return result;
}

void EditThreePoints(HC_KEY key, ContentKind type, const HC_POINT* first, const HC_POINT* second,
                     const HC_POINT* third) {
    Geometry* item = GeometryOf(key, type);
    if (!item || !Given({first, second, third})) return;
    Current().GeometryChanging(item->slot);
    item->points = {*first, *second, *third};
    Edited(*item);
}

} // namespace

extern "C" {

// --- Shell details -------------------------------------------------------------------------------

void HC_Set_Face_Regions(HC_KEY key, int firstFace, int faceCount, int region) {
    HC_API(HC_Set_Face_Regions);
    SetShellEntries(key, &ShellDetails::regions, ShellPart::Faces, firstFace, faceCount, &region,
                    "regions", 0, [region](int) { return region; });
}

void HC_Set_LOD_Type(HC_KEY key, int level, const char* type) {
    HC_API(HC_Set_LOD_Type);
    Geometry* shell = ShellOf(key);
    if (!shell) return;
    if (level < 0 || level >= kLodLevels) {
        ReportError("level " + std::to_string(level) + " is not 0 to " +
                    std::to_string(kLodLevels - 1));
        return;
    }
    // Setting a level "invalid" (or nothing) unsets it, as showing it then says.
    std::string word(Trim(Text(type)));
    if (EqualsIgnoreCase(word, "invalid")) word.clear();
    Current().GeometryChanging(shell->slot);
    std::vector<std::string>& types = ObtainDetails(*shell).lodTypes;
    if (types.size() <= size_t(level)) types.resize(size_t(level) + 1);
    types[size_t(level)] = std::move(word);
    TrimDetails(*shell);
    Current().GeometryChanged(shell->slot);
}

void HC_MSet_Vertex_Normals(HC_KEY key, int offset, int count, const HC_VECTOR* normals) {
    HC_API(HC_MSet_Vertex_Normals);
    SetShellEntries(key, &ShellDetails::vertexNormals, ShellPart::Points, offset, count, normals,
                    "normals", std::optional<HC_VECTOR>(),
                    [normals](int i) { return std::optional<HC_VECTOR>(normals[i]); });
}

void HC_MSet_Edge_Visibilities(HC_KEY key, int offset, int count, const char* visible) {
    HC_API(HC_MSet_Edge_Visibilities);
    SetShellEntries(key, &ShellDetails::edgeVisibilities, ShellPart::Edges, offset, count, visible,
                    "visibilities", int8_t{-1},
                    [visible](int i) { return int8_t{visible[i] != 0}; });
}

void HC_MSet_Face_Colors_By_Value(HC_KEY key, int offset, int count, const HC_POINT* rgb) {
    HC_API(HC_MSet_Face_Colors_By_Value);
    SetShellEntries(key, &ShellDetails::faceColors, ShellPart::Faces, offset, count, rgb, "colours",
                    std::optional<HC_POINT>(),
                    [rgb](int i) { return std::optional<HC_POINT>(rgb[i]); });
}

// --- Edits ---------------------------------------------------------------------------------------

void HC_Edit_Shell_Points(HC_KEY key, int offset, int deleteCount, int insertCount,
                          const HC_POINT* points) {
    HC_API(HC_Edit_Shell_Points);
    Geometry* shell = ShellOf(key);
    if (!shell ||
        !CheckSplice(shell->points.size(), offset, deleteCount, insertCount, points, "points", 0))
        return;
    Current().GeometryChanging(shell->slot);
    // The first points inserted take the places of the first ones deleted, so the faces that
    // use those places keep them; only the places beyond are deleted or made.
    int replaced = std::min(deleteCount, insertCount);
    int goneFrom = offset + replaced;
    int goneTo = offset + deleteCount;
    int shift = insertCount - deleteCount;
    ShellDetails* details = MutableDetails(*shell);
    if (shift != 0) {
        std::vector<bool> keptFaces, keptEdges;
        shell->ints = RenumberFaces(shell->ints, goneFrom, goneTo, shift, keptFaces, keptEdges);
        if (details) {
            KeepFlagged(details->regions, keptFaces);
            KeepFlagged(details->faceColors, keptFaces);
            KeepFlagged(details->edgeVisibilities, keptEdges);
        }
    }
    Splice(shell->points, offset, deleteCount, points, insertCount);
    if (details)
        SpliceFill(details->vertexNormals, size_t(goneFrom), size_t(goneTo - goneFrom),
                   size_t(insertCount - replaced), std::optional<HC_VECTOR>());
    TrimDetails(*shell);
    Edited(*shell);
}

void HC_Edit_Shell_Faces(HC_KEY key, int offset, int deleteCount, int insertListLength,
                         const int* insertList) {
    HC_API(HC_Edit_Shell_Faces);
    Geometry* shell = ShellOf(key);
    if (!shell) return;
    // Where each face starts in the list, and its first edge; a face runs up to the next one,
    // holes included.
    std::vector<std::pair<size_t, size_t>> starts;
    size_t edges = 0;
    for (const FaceLoop& loop : FaceLoops(shell->ints)) {
        if (!loop.hole) starts.emplace_back(size_t(loop.position), edges);
        edges += size_t(loop.count);
    }
    starts.emplace_back(shell->ints.size(), edges);
    size_t faces = starts.size() - 1;
    if (!CheckRange(offset, deleteCount, faces, "faces") ||
        !CheckArray(insertListLength, insertList, "face list entries"))
        return;
    std::string problem =
        FaceListProblem(insertList, insertListLength, static_cast<int>(shell->points.size()));
    if (!problem.empty()) {
        ReportError("inserted " + problem);
        return;
    }
    auto [from, edgeFrom] = starts[size_t(offset)];
    auto [to, edgeTo] = starts[size_t(offset + deleteCount)];
    if (static_cast<long long>(shell->ints.size() - (to - from)) + insertListLength > INT_MAX) {
        ReportError("the face list would grow too long");
        return;
    }
    std::vector<int> inserted(insertList, insertList + insertListLength);
    Current().GeometryChanging(shell->slot);
    Splice(shell->ints, int(from), int(to - from), insertList, insertListLength);
    if (ShellDetails* details = MutableDetails(*shell)) {
        size_t newFaces = size_t(FaceCount(inserted));
        SpliceFill(details->regions, size_t(offset), size_t(deleteCount), newFaces, 0);
        SpliceFill(details->faceColors, size_t(offset), size_t(deleteCount), newFaces,
                   std::optional<HC_POINT>());
        SpliceFill(details->edgeVisibilities, edgeFrom, edgeTo - edgeFrom,
                   size_t(EdgeCount(inserted)), int8_t{-1});
    }
    TrimDetails(*shell);
    Edited(*shell);
}

void HC_Edit_Polyline(HC_KEY key, int offset, int deleteCount, int insertCount,
                      const HC_POINT* points) {
    HC_API(HC_Edit_Polyline);
    EditPointArray(key, ContentKind::Polyline, offset, deleteCount, insertCount, points, 2);
}

void HC_Edit_Polygon(HC_KEY key, int offset, int deleteCount, int insertCount,
                     const HC_POINT* points) {
    HC_API(HC_Edit_Polygon);
    EditPointArray(key, ContentKind::Polygon, offset, deleteCount, insertCount, points, 3);
}

void HC_Edit_Circle(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                    const HC_POINT* third) {
    HC_API(HC_Edit_Circle);
    EditThreePoints(key, ContentKind::Circle, first, second, third);
}

void HC_Edit_Circle_By_Radius(HC_KEY key, const HC_POINT* center, double radius,
                              const HC_VECTOR* normal) {
    HC_API(HC_Edit_Circle_By_Radius);
    Geometry* circle = GeometryOf(key, ContentKind::Circle);
    std::vector<HC_POINT> points;
    if (!circle || !CircleByRadius(center, radius, normal, points)) return;
    Current().GeometryChanging(circle->slot);
    circle->points = std::move(points);
    Edited(*circle);
}

void HC_Edit_Circular_Arc(HC_KEY key, const HC_POINT* first, const HC_POINT* second,
                          const HC_POINT* third) {
    HC_API(HC_Edit_Circular_Arc);
    EditThreePoints(key, ContentKind::CircularArc, first, second, third);
}

void HC_Edit_Elliptical_Arc(HC_KEY key, const HC_POINT* center, const HC_POINT* major,
                            const HC_POINT* minor, double start, double end) {
    HC_API(HC_Edit_Elliptical_Arc);
    Geometry* arc = GeometryOf(key, ContentKind::EllipticalArc);
    if (!arc || !Given({center, major, minor})) return;
    Current().GeometryChanging(arc->slot);
    Assign(*arc, {.points = {*center, *major, *minor},
                  .values = {static_cast<float>(start), static_cast<float>(end)}});
    Edited(*arc);
}

void HC_Edit_Cutting_Plane(HC_KEY key, double a, double b, double c, double d) {
    HC_API(HC_Edit_Cutting_Plane);
    Geometry* plane = GeometryOf(key, ContentKind::CuttingPlane);
    if (!plane || !CheckPlane(a, b, c)) return;
    Current().GeometryChanging(plane->slot);
    Assign(*plane, {.values = {static_cast<float>(a), static_cast<float>(b), static_cast<float>(c),
                               static_cast<float>(d)}});
    Edited(*plane);
}

void HC_Edit_Mesh(HC_KEY key, int rowOffset, int columnOffset, int rowCount, int columnCount,
                  const HC_POINT* points) {
    HC_API(HC_Edit_Mesh);
    Geometry* mesh = GeometryOf(key, ContentKind::Mesh);
    if (!mesh || !CheckWellFormed(*mesh)) return;
    const size_t rows = size_t(mesh->ints[0]), columns = size_t(mesh->ints[1]);
    if (!CheckRange(rowOffset, rowCount, rows, "rows") ||
        !CheckRange(columnOffset, columnCount, columns, "columns") ||
        !CheckArray(static_cast<long long>(rowCount) * columnCount, points, "points"))
        return;
    Current().GeometryChanging(mesh->slot);
    for (size_t r = 0; r < size_t(rowCount); ++r)
        for (size_t c = 0; c < size_t(columnCount); ++c)
            mesh->points[(size_t(rowOffset) + r) * columns + size_t(columnOffset) + c] =
                points[r * size_t(columnCount) + c];
    Edited(*mesh);
}

void HC_Edit_Text(HC_KEY key, int row, int column, int deleteCount, const char* insert) {
    HC_API(HC_Edit_Text);
    Geometry* item = GeometryOf(key, ContentKind::Text);
    if (!item) return;
    if (row != 0) {
        ReportError("a text has one row, row 0, not row " + std::to_string(row));
        return;
    }
    const std::string& text = item->Text();
    if (!CheckRange(column, deleteCount, text.size(), "characters")) return;
    std::string_view insertion = Text(insert);
    if (text.size() - size_t(deleteCount) + insertion.size() >= HC_TEXT_MAX) {
        ReportError("a text holds at most " + std::to_string(HC_TEXT_MAX - 1) + " bytes");
        return;
    }
    Current().GeometryChanging(item->slot);
    std::string edited = text;
    edited.replace(size_t(column), size_t(deleteCount), insertion);
    item->Extras().text = std::move(edited);
    Edited(*item);
}

} // extern "C"
