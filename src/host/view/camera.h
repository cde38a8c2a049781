// The view's camera: it orbits a target point (z up, as buildings are drawn), pans, zooms and
// fits a box; it gives the matrices the shaders take and the ray or screen point of a pixel.
#pragma once

#include "host/view/view_math.h"

namespace obsidra::host::view {

struct Ray {
    Vec3 origin;
    Vec3 direction; // unit length
};

class Camera {
public:
    // The field of view, top to bottom.
    static constexpr float kFieldOfView = 0.7854f;

    void SetViewport(int width, int height);
    int Width() const { return m_width; }
    int Height() const { return m_height; }

    // Looks at the box's centre from far enough that all of it shows; an empty box changes
    // nothing.
    void Fit(const Box& box);
    // Turns about the target by a drag of dx, dy pixels.
    void Orbit(float dx, float dy);
    // Moves the target with a drag of dx, dy pixels, so that what is under the cursor follows it.
    void Pan(float dx, float dy);
    // Moves towards the target by wheel steps (positive: nearer).
    void Zoom(float steps);

    Vec3 Eye() const;
    Vec3 Target() const { return m_target; }
    Mat4 View() const;
    Mat4 Projection() const;
    Mat4 ViewProjection() const { return Then(View(), Projection()); }

    // The ray through a pixel (x from the left, y from the top, in pixels).
    Ray RayAt(float x, float y) const;
    // Where a world point shows: pixels and depth (0 near to 1 far); false behind the eye.
    bool Project(Vec3 point, Vec3& screen) const;

private:
    void Basis(Vec3& forward, Vec3& right, Vec3& up) const;

    Vec3 m_target;
    float m_distance = 10;
    float m_yaw = -2.2f;
    float m_pitch = 0.45f;
    float m_sceneRadius = 5; // for the depth range
    int m_width = 1;
    int m_height = 1;
};

} // namespace obsidra::host::view
