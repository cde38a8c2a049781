#pragma once

#include <obsidra/hc.h>

class HBaseView;

using HPoint = HC_POINT;

// What dragging a manipulator handle does to its segment.
enum class HHandleKind { None, Translate, Rotate, Scale };

// A handle as a pick finds it: its kind and axis (0 x, 1 y, 2 z), the segment it manipulates and
// the segment the handles live in.
struct HManipulatorHandle {
    HHandleKind kind = HHandleKind::None;
    int axis = -1;
    HC_KEY segment = 0;
    HC_KEY handles = 0;

    explicit operator bool() const { return kind != HHandleKind::None; }
};

// Manipulator handles on a segment of a view's model: arrows that move it along an axis, rings
// that turn it about one, boxes that stretch it along one. They are geometry of the view, not of
// the model: a segment of the reserved name kHandlesSegment in the view's scene segment, whose
// modelling matrix keeps them where the manipulated segment is drawn. The model, its metafiles,
// bounds and census never see them. Everything the manipulator knows lives in the scene, so
// that the library that sets it up (the browser) and the one that drags it (a host's view) need
// share nothing else. docs/manipulator.md tells the layout.
class HUtilityGeomHandle {
public:
    static constexpr const char* kHandlesSegment = "manipulator handles";

    // Puts handles on a segment of the view's model, replacing the view's manipulator. The
    // handles turn about position (in the segment's own coordinates; null: the centre of its
    // bounds) and are sized from the segment's bounds. The switches choose the kinds (move,
    // turn, stretch) and the axes (x, y, z) that get handles: every kind switched on, along
    // every axis switched on. False, with the view's manipulator left as it was, for a view or a
    // key that is no segment of the view's model; false and no manipulator when the switches
    // leave no handle.
    static bool SetupManipulator(HC_KEY segment, HBaseView* view, const HPoint* position,
                                 bool translate, bool rotate, bool scale, bool xAxis, bool yAxis,
                                 bool zAxis);
    static void RemoveManipulator(HBaseView* view);
    // The segment the view's manipulator is on, or 0.
    static HC_KEY GetManipulatedSegment(HBaseView* view);

    // The handle a picked key (a handle's geometry or segment) is; kind None for anything else.
    static HManipulatorHandle HandleOf(HC_KEY key);
    // Drags a handle from one point to another, both in world coordinates (for instance where the
    // pointer's ray meets a plane through the handle). A move goes along the handle's axis by
    // the part of the motion along it; a turn about the axis through the centre by the angle
    // the two points make around it; a stretch along the axis by the ratio of the two points'
    // distances from the centre along it. Changes the segment's modelling matrix, and the
    // handles' with it. False, changing nothing, for a handle that is gone or a drag that has no
    // meaning (a point on the axis of a turn, a stretch through the centre or beyond it).
    static bool ApplyDrag(const HManipulatorHandle& handle, const HPoint& from, const HPoint& to);
};
