#pragma once

#include <array>

#include <obsidra/hc.h>

// A 4x4 matrix as the scene database stores modelling matrices: row by row, for row vectors,
// translation in the last row. A product A * B applies A first, then B.
struct HMatrix {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static HMatrix Translation(const HC_POINT& by);
    // About an axis (0 x, 1 y, 2 z) through the origin, counter-clockwise seen from the axis'
    // positive side.
    static HMatrix Rotation(int axis, double radians);
    // Along one axis (0 x, 1 y, 2 z).
    static HMatrix Scaling(int axis, double factor);
    // The matrix m about a centre instead of the origin.
    static HMatrix About(const HC_POINT& centre, const HMatrix& m);

    HMatrix operator*(const HMatrix& other) const;
    HC_POINT Transform(const HC_POINT& point) const;
    // The inverse of an affine matrix; false (and the matrix unchanged) when it is singular.
    bool Invert();
    bool IsIdentity() const { return m == HMatrix{}.m; }
};
