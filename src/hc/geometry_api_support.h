#pragma once

// Shared by the files that implement the geometry HC_ functions.

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "hc/api_support.h"
#include "hc/geometry_data.h"

namespace hc::api {

// The data of a new item or of one that an edit replaces whole.
struct ItemData {
    std::vector<HC_POINT> points = {};
    std::vector<int> ints = {};
    std::vector<float> values = {};
    std::string text = {};
};

// Gives an item new data; its attached references and attributes stay.
inline void Assign(Geometry& item, ItemData data) {
    item.points = std::move(data.points);
    item.ints = std::move(data.ints);
    if (item.extras || !data.values.empty() || !data.text.empty()) {
        item.Extras().values = std::move(data.values);
        item.Extras().text = std::move(data.text);
    }
}

// Reports a point argument that is null.
inline bool Given(std::initializer_list<const HC_POINT*> points) {
    for (const HC_POINT* point : points) {
        if (!point) {
            ReportError("a point argument is null");
            return false;
        }
    }
    return true;
}

// Reports a negative count, or a null array for a count that is not zero; what names the
// entries ("points").
inline bool CheckArray(long long count, const void* array, const std::string& what) {
    if (count < 0) {
        ReportError("the count " + std::to_string(count) + " of " + what + " is negative");
        return false;
    }
    if (count > 0 && !array) {
        ReportError("no " + what + " are given for a count of " + std::to_string(count));
        return false;
    }
    return true;
}

// Reports a range [offset, offset + count) that does not lie within size entries.
inline bool CheckRange(long long offset, long long count, size_t size, const std::string& what) {
    if (offset < 0 || count < 0 || offset + count > static_cast<long long>(size)) {
        ReportError(what + " " + std::to_string(offset) + " to " + std::to_string(offset + count) +
                    " do not lie within the " + std::to_string(size) + " there are");
        return false;
    }
    return true;
}

inline bool IsZero(const Vec& v) {
    return v.x == 0 && v.y == 0 && v.z == 0;
}

// The points of a circle given by centre, radius and normal, reported when they make none.
inline bool CircleByRadius(const HC_POINT* center, double radius, const HC_VECTOR* normal,
                           std::vector<HC_POINT>& points) {
    if (!Given({center, normal})) return false;
    if (radius < 0 || IsZero(ToVec(*normal))) {
        ReportError(radius < 0 ? "the radius is negative" : "the normal is zero");
        return false;
    }
    points = CirclePoints(*center, radius, *normal);
    return true;
}

// A cutting plane's numbers, reported when they make no plane.
inline bool CheckPlane(double a, double b, double c) {
    if (a != 0 || b != 0 || c != 0) return true;
    ReportError("the plane's normal (a, b, c) is zero");
    return false;
}

// Reports an item that does not hold what its kind needs (IsWellFormed), which only data
// loaded from elsewhere can do.
inline bool CheckWellFormed(const Geometry& item) {
    if (IsWellFormed(item)) return true;
    ReportError("the " + std::string(TypeWord(item.type)) + " holds malformed data");
    return false;
}

// Safe reads of an item that may be null (a key that named nothing) or malformed: what is
// missing reads as zero.
inline HC_POINT PointAt(const Geometry* item, size_t i) {
    return item && i < item->points.size() ? item->points[i] : HC_POINT{0, 0, 0};
}
inline float ValueAt(const Geometry* item, size_t i) {
    return item && i < item->Values().size() ? item->Values()[i] : 0.0f;
}
inline int IntAt(const Geometry* item, size_t i) {
    return item && i < item->ints.size() ? item->ints[i] : 0;
}

// Writes count entries from first on to out (when not null); entries the item lacks read as
// zero.
template <typename T>
void CopyArray(const std::vector<T>& from, size_t first, size_t count, T* out) {
    if (!out) return;
    for (size_t i = 0; i < count; ++i)
        out[i] = first + i < from.size() ? from[first + i] : T{};
}

} // namespace hc::api
