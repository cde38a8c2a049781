#include "host/view/picking.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace obsidra::host::view {

namespace {

Vec3 At(const Vertex& v) {
    return {v.x, v.y, v.z};
}

bool RayHitsBox(const Ray& ray, const Box& box) {
    float near = 0, far = std::numeric_limits<float>::max();
    const float origin[3] = {ray.origin.x, ray.origin.y, ray.origin.z};
    const float direction[3] = {ray.direction.x, ray.direction.y, ray.direction.z};
    const float low[3] = {box.min.x, box.min.y, box.min.z};
    const float high[3] = {box.max.x, box.max.y, box.max.z};
    for (int axis = 0; axis < 3; ++axis) {
        if (std::abs(direction[axis]) < 1e-12f) {
            if (origin[axis] < low[axis] || origin[axis] > high[axis]) return false;
            continue;
        }
        float t0 = (low[axis] - origin[axis]) / direction[axis];
        float t1 = (high[axis] - origin[axis]) / direction[axis];
        if (t0 > t1) std::swap(t0, t1);
        near = std::max(near, t0);
        far = std::min(far, t1);
        if (near > far) return false;
    }
    return true;
}

// The ray's distance to a triangle, or a negative number when it misses.
float RayHitsTriangle(const Ray& ray, Vec3 a, Vec3 b, Vec3 c) {
    Vec3 e1 = b - a, e2 = c - a;
    Vec3 p = Cross(ray.direction, e2);
    float det = Dot(e1, p);
    if (std::abs(det) < 1e-12f) return -1;
    float inverse = 1 / det;
    Vec3 s = ray.origin - a;
    float u = Dot(s, p) * inverse;
    if (u < 0 || u > 1) return -1;
    Vec3 q = Cross(s, e1);
    float v = Dot(ray.direction, q) * inverse;
    if (v < 0 || u + v > 1) return -1;
    return Dot(e2, q) * inverse;
}

// How far along a screen segment the point nearest to (x, y) lies, 0 to 1.
float NearestOnSegment(Vec3 a, Vec3 b, float x, float y) {
    float dx = b.x - a.x, dy = b.y - a.y;
    float length2 = dx * dx + dy * dy;
    if (length2 <= 0) return 0;
    return std::clamp(((x - a.x) * dx + (y - a.y) * dy) / length2, 0.0f, 1.0f);
}

} // namespace

PickHit Pick(const SceneCache& cache, const Camera& camera, float x, float y, float tolerance) {
    PickHit best;
    best.distance = std::numeric_limits<float>::max();
    Ray ray = camera.RayAt(x, y);
    // Lines and marks lie on faces as often as not; at the same distance they win.
    constexpr float kMarkBias = 0.999f;
    auto offer = [&](float distance, HC_KEY item, int instance) {
        if (distance > 0 && distance < best.distance) best = {item, instance, distance};
    };
    const auto& instances = cache.Instances();
    for (int id = 0; id < static_cast<int>(instances.size()); ++id) {
        const SegmentInstance& instance = instances[id];
        if (!instance.alive || instance.batch.Empty()) continue;
        const DrawBatch& batch = instance.batch;
        for (const Primitives* triangles : {&batch.triangles, &batch.translucent}) {
            if (triangles->Empty() || !RayHitsBox(ray, batch.bounds)) continue;
            const auto& v = triangles->vertices;
            for (std::uint32_t t = 0; 3 * t + 2 < v.size(); ++t) {
                float d = RayHitsTriangle(ray, At(v[3 * t]), At(v[3 * t + 1]), At(v[3 * t + 2]));
                if (d > 0 && d < best.distance) offer(d, triangles->ItemOf(t), id);
            }
        }
        const auto& lines = batch.lines.vertices;
        for (std::uint32_t l = 0; 2 * l + 1 < lines.size(); ++l) {
            Vec3 a, b;
            if (!camera.Project(At(lines[2 * l]), a) || !camera.Project(At(lines[2 * l + 1]), b))
                continue;
            float s = NearestOnSegment(a, b, x, y);
            float sx = a.x + (b.x - a.x) * s, sy = a.y + (b.y - a.y) * s;
            if (std::hypot(sx - x, sy - y) > tolerance) continue;
            Vec3 world = At(lines[2 * l]) + (At(lines[2 * l + 1]) - At(lines[2 * l])) * s;
            offer(Dot(world - ray.origin, ray.direction) * kMarkBias, batch.lines.ItemOf(l), id);
        }
        const auto& points = batch.points.vertices;
        for (std::uint32_t p = 0; p < points.size(); ++p) {
            Vec3 screen;
            if (!camera.Project(At(points[p]), screen) ||
                std::hypot(screen.x - x, screen.y - y) > tolerance)
                continue;
            offer(Dot(At(points[p]) - ray.origin, ray.direction) * kMarkBias,
                  batch.points.ItemOf(p), id);
        }
    }
    if (best.item == -1) best.distance = 0;
    return best;
}

std::vector<HC_KEY> SelectionPath(HC_KEY item, const std::vector<HC_KEY>& links, HC_KEY skipLink,
                                  HC_KEY top) {
    std::vector<HC_KEY> path{item};
    for (auto it = links.rbegin(); it != links.rend(); ++it)
        if (*it != skipLink) path.push_back(*it);
    if (top != 0 && top != -1 && top != item) path.push_back(top);
    return path;
}

} // namespace obsidra::host::view
