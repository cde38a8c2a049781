#include "host/view/camera.h"

#include <algorithm>
#include <cmath>

namespace obsidra::host::view {

void Camera::SetViewport(int width, int height) {
    m_width = std::max(1, width);
    m_height = std::max(1, height);
}

void Camera::Fit(const Box& box) {
    if (box.Empty()) return;
    m_target = box.Centre();
    float radius = std::max(box.Radius(), 1e-3f);
    float aspect = static_cast<float>(m_width) / static_cast<float>(m_height);
    float half = kFieldOfView / 2;
    // The narrower of the two fields decides: a sphere of that radius fits both.
    float narrow = aspect < 1 ? std::atan(std::tan(half) * aspect) : half;
    m_distance = radius / std::sin(narrow);
    m_sceneRadius = radius;
}

void Camera::Orbit(float dx, float dy) {
    m_yaw -= dx * 0.01f;
    m_pitch = std::clamp(m_pitch + dy * 0.01f, -1.55f, 1.55f);
}

void Camera::Pan(float dx, float dy) {
    Vec3 forward, right, up;
    Basis(forward, right, up);
    float perPixel = 2 * m_distance * std::tan(kFieldOfView / 2) / static_cast<float>(m_height);
    m_target = m_target + (right * -dx + up * dy) * perPixel;
}

void Camera::Zoom(float steps) {
    m_distance = std::max(m_distance * std::pow(0.85f, steps), m_sceneRadius * 1e-4f);
}

Vec3 Camera::Eye() const {
    Vec3 towardsEye{std::cos(m_pitch) * std::cos(m_yaw), std::cos(m_pitch) * std::sin(m_yaw),
                    std::sin(m_pitch)};
    return m_target + towardsEye * m_distance;
}

void Camera::Basis(Vec3& forward, Vec3& right, Vec3& up) const {
    forward = Normalized(m_target - Eye());
    right = Normalized(Cross(forward, {0, 0, 1}));
    up = Cross(right, forward);
}

Mat4 Camera::View() const {
    Vec3 f, s, u;
    Basis(f, s, u);
    Vec3 e = Eye();
    Mat4 v;
    v.m = {s.x, u.x, -f.x, 0, s.y,        u.y,        -f.y,      0,
           s.z, u.z, -f.z, 0, -Dot(s, e), -Dot(u, e), Dot(f, e), 1};
    return v;
}

Mat4 Camera::Projection() const {
    // Depth from just in front of the scene to just behind it, never nearer than a thousandth
    // of the way, so that depth keeps its precision.
    float far = m_distance + 2 * m_sceneRadius;
    float near = std::max(m_distance - 2 * m_sceneRadius, far * 1e-3f);
    float f = 1 / std::tan(kFieldOfView / 2);
    float aspect = static_cast<float>(m_width) / static_cast<float>(m_height);
    Mat4 p;
    p.m = {f / aspect,
           0,
           0,
           0,
           0,
           f,
           0,
           0,
           0,
           0,
           (far + near) / (near - far),
           -1,
           0,
           0,
           2 * far * near / (near - far),
           0};
    return p;
}

Ray Camera::RayAt(float x, float y) const {
    Vec3 f, s, u;
    Basis(f, s, u);
    float t = std::tan(kFieldOfView / 2);
    float aspect = static_cast<float>(m_width) / static_cast<float>(m_height);
    float ndcX = 2 * x / static_cast<float>(m_width) - 1;
    float ndcY = 1 - 2 * y / static_cast<float>(m_height);
    return {Eye(), Normalized(f + s * (ndcX * t * aspect) + u * (ndcY * t))};
}

bool Camera::Project(Vec3 point, Vec3& screen) const {
    Vec3 f, s, u;
    Basis(f, s, u);
    if (Dot(point - Eye(), f) <= 0) return false;
    Vec3 ndc = Transform(ViewProjection(), point);
    screen = {(ndc.x + 1) / 2 * static_cast<float>(m_width),
              (1 - ndc.y) / 2 * static_cast<float>(m_height), (ndc.z + 1) / 2};
    return true;
}

} // namespace obsidra::host::view
