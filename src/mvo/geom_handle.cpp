#include "mvo/geom_handle.h"

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "mvo/base_view.h"
#include "mvo/matrix.h"
#include "mvo/utility.h"

namespace {

// What the handles segment remembers, as user data of its own.
struct State {
    HC_KEY segment; // original key, which renumbering leaves valid
    HC_POINT centre;
};
constexpr long kStateIndex = 0;

constexpr const char* kKindNames[] = {"translate", "rotate", "scale"};
constexpr const char* kAxisNames[] = {"x", "y", "z"};
constexpr const char* kAxisColours[] = {"red", "green", "blue"};

float& Component(HC_POINT& point, int axis) {
    return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
}

HC_POINT Along(const HC_POINT& from, int axis, float distance) {
    HC_POINT point = from;
    Component(point, axis) += distance;
    return point;
}

std::string PathOf(HC_KEY key) {
    char path[HC_TEXT_MAX];
    HC_Show_Segment(key, path);
    return path;
}

HMatrix OwnMatrix(HC_KEY segment) {
    HMatrix matrix;
    if (HC_Show_Existence_By_Key(segment, "modelling matrix")) {
        HC_Open_Segment_By_Key(segment);
        HC_Show_Modelling_Matrix(matrix.m.data());
        HC_Close_Segment();
    }
    return matrix;
}

void SetOwnMatrix(HC_KEY segment, const HMatrix& matrix) {
    HC_Open_Segment_By_Key(segment);
    HC_Set_Modelling_Matrix(matrix.m.data());
    HC_Close_Segment();
}

// The segment's own matrix and those of its owners up to the model: where the view's scene,
// which includes the model, draws the segment's geometry.
HMatrix Placement(HC_KEY segment, HC_KEY model) {
    HMatrix placement = OwnMatrix(segment);
    for (HC_KEY key = segment; key != model;) {
        key = HC_Show_Owner_Original_Key(key);
        placement = placement * OwnMatrix(key);
    }
    return placement;
}

bool IsWithin(HC_KEY segment, HC_KEY top) {
    const std::string path = PathOf(segment), topPath = PathOf(top);
    return path == topPath || (path.starts_with(topPath) && path[topPath.size()] == '/');
}

HC_KEY FindHandles(HBaseView* view) {
    if (!view || !HUtility::IsSegmentKey(view->GetSceneKey())) return 0;
    HC_Open_Segment_By_Key(view->GetSceneKey());
    HC_KEY handles = 0;
    if (HC_QShow_Existence(HUtilityGeomHandle::kHandlesSegment, "self")) {
        handles = HC_Open_Segment(HUtilityGeomHandle::kHandlesSegment);
        HC_Close_Segment();
    }
    HC_Close_Segment();
    return handles;
}

// The state of a handles segment whose manipulated segment is still there.
bool ReadState(HC_KEY handles, State& state) {
    if (!HUtility::IsSegmentKey(handles) ||
        HUtility::OwnName(PathOf(handles)) != HUtilityGeomHandle::kHandlesSegment ||
        !HC_Show_Existence_By_Key(handles, "user data"))
        return false;
    long size = 0;
    HC_Open_Segment_By_Key(handles);
    HC_Show_One_User_Data(kStateIndex, &state, sizeof state, &size);
    HC_Close_Segment();
    return size == sizeof state && HUtility::IsSegmentKey(state.segment);
}

void InsertArrow(const HC_POINT& centre, int axis, float length) {
    const HC_POINT shaft[] = {centre, Along(centre, axis, length)};
    HC_Insert_Polyline(2, shaft);
    // A four-sided pyramid for the head, its tip at the shaft's end.
    const int u = (axis + 1) % 3, v = (axis + 2) % 3;
    const float width = 0.05f * length;
    const HC_POINT base = Along(centre, axis, 0.85f * length);
    const HC_POINT head[] = {
        shaft[1], Along(Along(base, u, width), v, width), Along(Along(base, u, -width), v, width),
        Along(Along(base, u, -width), v, -width), Along(Along(base, u, width), v, -width)};
    const int faces[] = {3, 0, 1, 2, 3, 0, 2, 3, 3, 0, 3, 4, 3, 0, 4, 1, 4, 4, 3, 2, 1};
    HC_Insert_Shell(5, head, static_cast<int>(std::size(faces)), faces);
}

void InsertRing(const HC_POINT& centre, int axis, float radius) {
    constexpr int kSteps = 64;
    const int u = (axis + 1) % 3, v = (axis + 2) % 3;
    std::vector<HC_POINT> ring;
    for (int step = 0; step <= kSteps; ++step) {
        const double angle = 2 * std::numbers::pi * step / kSteps;
        ring.push_back(Along(Along(centre, u, static_cast<float>(radius * std::cos(angle))), v,
                             static_cast<float>(radius * std::sin(angle))));
    }
    HC_Insert_Polyline(static_cast<int>(ring.size()), ring.data());
}

void InsertBox(const HC_POINT& middle, float half) {
    HC_POINT corners[8];
    for (int i = 0; i < 8; ++i)
        corners[i] = {middle.x + (i & 1 ? half : -half), middle.y + (i & 2 ? half : -half),
                      middle.z + (i & 4 ? half : -half)};
    const int faces[] = {4, 0, 2, 3, 1, 4, 4, 5, 7, 6, 4, 0, 1, 5, 4,
                         4, 2, 6, 7, 3, 4, 0, 4, 6, 2, 4, 1, 3, 7, 5};
    HC_Insert_Shell(8, corners, static_cast<int>(std::size(faces)), faces);
}

} // namespace

bool HUtilityGeomHandle::SetupManipulator(HC_KEY segment, HBaseView* view, const HPoint* position,
                                          bool translate, bool rotate, bool scale, bool xAxis,
                                          bool yAxis, bool zAxis) {
    if (!view || !HUtility::IsSegmentKey(segment) || !HUtility::IsSegmentKey(view->GetModelKey()) ||
        !HUtility::IsSegmentKey(view->GetSceneKey()))
        return false;
    const HC_KEY model = HC_Show_Original_Key(view->GetModelKey());
    segment = HC_Show_Original_Key(segment);
    if (!IsWithin(segment, model)) return false;
    RemoveManipulator(view);
    const bool kinds[] = {translate, rotate, scale};
    const bool axes[] = {xAxis, yAxis, zAxis};
    if (!(translate || rotate || scale) || !(xAxis || yAxis || zAxis)) return false;

    State state{segment, {0, 0, 0}};
    float radius = 0;
    char info[HC_TEXT_MAX];
    HC_Show_Bounding_Info_By_Key(segment, info);
    if (info[0]) HC_Show_Bounding_Sphere_By_Key(segment, &state.centre, &radius);
    if (!(radius > 0)) radius = 1;
    if (position) state.centre = *position;
    const float length = 1.25f * radius;

    const HMatrix placement = Placement(segment, model);
    HC_Open_Segment_By_Key(view->GetSceneKey());
    HC_Open_Segment(kHandlesSegment);
    HC_Set_User_Data(kStateIndex, &state, sizeof state);
    if (!placement.IsIdentity()) HC_Set_Modelling_Matrix(placement.m.data());
    for (int kind = 0; kind < 3; ++kind)
        for (int axis = 0; axis < 3; ++axis) {
            if (!kinds[kind] || !axes[axis]) continue;
            HC_Open_Segment((std::string(kKindNames[kind]) + " " + kAxisNames[axis]).c_str());
            HC_Set_Color(kAxisColours[axis]);
            if (kind == 0)
                InsertArrow(state.centre, axis, length);
            else if (kind == 1)
                InsertRing(state.centre, axis, radius);
            else
                InsertBox(Along(state.centre, axis, 1.15f * length), 0.05f * length);
            HC_Close_Segment();
        }
    HC_Close_Segment();
    HC_Close_Segment();
    return true;
}

void HUtilityGeomHandle::RemoveManipulator(HBaseView* view) {
    if (HC_KEY handles = FindHandles(view)) HC_Delete_By_Key(handles);
}

HC_KEY HUtilityGeomHandle::GetManipulatedSegment(HBaseView* view) {
    State state;
    return ReadState(FindHandles(view), state) ? state.segment : 0;
}

HManipulatorHandle HUtilityGeomHandle::HandleOf(HC_KEY key) {
    if (key == 0 || key == -1 || !HC_Show_Existence_By_Key(key, "self")) return {};
    const HC_KEY handle = HUtility::IsSegmentKey(key) ? key : HC_Show_Owner_Original_Key(key);
    const std::string name = HUtility::OwnName(PathOf(handle));
    for (int kind = 0; kind < 3; ++kind)
        for (int axis = 0; axis < 3; ++axis) {
            if (name != std::string(kKindNames[kind]) + " " + kAxisNames[axis]) continue;
            const HC_KEY handles = HC_Show_Owner_Original_Key(handle);
            State state;
            if (!ReadState(handles, state)) return {};
            return {static_cast<HHandleKind>(kind + 1), axis, state.segment, handles};
        }
    return {};
}

bool HUtilityGeomHandle::ApplyDrag(const HManipulatorHandle& handle, const HPoint& from,
                                   const HPoint& to) {
    State state;
    if (!handle || handle.axis < 0 || handle.axis > 2 || !ReadState(handle.handles, state) ||
        state.segment != handle.segment)
        return false;
    // Into the segment's own coordinates, where the handles are built and its matrix applies
    // first.
    HMatrix world;
    HC_PShow_Net_Modelling_Matrix(1, &handle.handles, world.m.data());
    if (!world.Invert()) return false;
    const int axis = handle.axis, u = (axis + 1) % 3, v = (axis + 2) % 3;
    HC_POINT a = world.Transform(from), b = world.Transform(to);
    for (HC_POINT* point : {&a, &b}) {
        point->x -= state.centre.x;
        point->y -= state.centre.y;
        point->z -= state.centre.z;
    }
    constexpr double kTiny = 1e-6;
    HMatrix change;
    switch (handle.kind) {
    case HHandleKind::Translate:
        change =
            HMatrix::Translation(Along({0, 0, 0}, axis, Component(b, axis) - Component(a, axis)));
        break;
    case HHandleKind::Rotate: {
        const double cross =
            double(Component(a, u)) * Component(b, v) - double(Component(a, v)) * Component(b, u);
        const double dot =
            double(Component(a, u)) * Component(b, u) + double(Component(a, v)) * Component(b, v);
        if (std::hypot(Component(a, u), Component(a, v)) < kTiny ||
            std::hypot(Component(b, u), Component(b, v)) < kTiny)
            return false;
        change = HMatrix::About(state.centre, HMatrix::Rotation(axis, std::atan2(cross, dot)));
        break;
    }
    case HHandleKind::Scale: {
        const double start = Component(a, axis), end = Component(b, axis);
        if (std::abs(start) < kTiny || end / start < kTiny) return false;
        change = HMatrix::About(state.centre, HMatrix::Scaling(axis, end / start));
        break;
    }
    case HHandleKind::None:
        return false;
    }
    SetOwnMatrix(handle.segment, change * OwnMatrix(handle.segment));
    SetOwnMatrix(handle.handles, change * OwnMatrix(handle.handles));
    return true;
}
