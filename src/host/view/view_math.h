// The few vector and matrix operations the view needs, in the scene database's convention: row
// vectors, 4x4 matrices stored row by row with the translation in the last row. Stored that way a
// matrix is also what OpenGL reads as a column-major matrix for column vectors, so the same 16
// floats go to the database and to the shaders.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace obsidra::host::view {

struct Vec3 {
    float x = 0, y = 0, z = 0;
};

inline Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(Vec3 a, float s) {
    return {a.x * s, a.y * s, a.z * s};
}
inline float Dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 Cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float Length(Vec3 a) {
    return std::sqrt(Dot(a, a));
}
inline Vec3 Normalized(Vec3 a) {
    float length = Length(a);
    return length > 0 ? a * (1.0f / length) : Vec3{};
}

struct Mat4 {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    bool IsIdentity() const { return m == Mat4{}.m; }
};

// The matrix that applies first, then second.
inline Mat4 Then(const Mat4& first, const Mat4& second) {
    Mat4 result;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            float sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += first.m[r * 4 + k] * second.m[k * 4 + c];
            result.m[r * 4 + c] = sum;
        }
    return result;
}

// The point times the matrix, divided by w (so projections work too).
inline Vec3 Transform(const Mat4& t, Vec3 p) {
    const auto& m = t.m;
    float x = p.x * m[0] + p.y * m[4] + p.z * m[8] + m[12];
    float y = p.x * m[1] + p.y * m[5] + p.z * m[9] + m[13];
    float z = p.x * m[2] + p.y * m[6] + p.z * m[10] + m[14];
    float w = p.x * m[3] + p.y * m[7] + p.z * m[11] + m[15];
    if (w != 0 && w != 1) return {x / w, y / w, z / w};
    return {x, y, z};
}

// An axis-aligned box; empty until a point is added.
struct Box {
    Vec3 min{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
             std::numeric_limits<float>::max()};
    Vec3 max{-std::numeric_limits<float>::max(), -std::numeric_limits<float>::max(),
             -std::numeric_limits<float>::max()};

    bool Empty() const { return min.x > max.x; }
    void Add(Vec3 p) {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    void Add(const Box& other) {
        if (!other.Empty()) {
            Add(other.min);
            Add(other.max);
        }
    }
    Vec3 Centre() const { return (min + max) * 0.5f; }
    float Radius() const { return Length(max - min) * 0.5f; }
    Vec3 Corner(int i) const {
        return {i & 1 ? max.x : min.x, i & 2 ? max.y : min.y, i & 4 ? max.z : min.z};
    }
};

// The box around the eight corners of a box carried by a matrix.
inline Box Transform(const Mat4& t, const Box& box) {
    Box result;
    if (box.Empty()) return result;
    for (int i = 0; i < 8; ++i)
        result.Add(Transform(t, box.Corner(i)));
    return result;
}

} // namespace obsidra::host::view
