#include "mvo/matrix.h"

#include <cmath>

HMatrix HMatrix::Translation(const HC_POINT& by) {
    HMatrix result;
    result.m[12] = by.x;
    result.m[13] = by.y;
    result.m[14] = by.z;
    return result;
}

HMatrix HMatrix::Rotation(int axis, double radians) {
    // The two axes turned, in the order that makes the turn counter-clockwise.
    const int u = (axis + 1) % 3, v = (axis + 2) % 3;
    const float c = static_cast<float>(std::cos(radians)),
                s = static_cast<float>(std::sin(radians));
    HMatrix result;
    result.m[u * 4 + u] = c;
    result.m[u * 4 + v] = s;
    result.m[v * 4 + u] = -s;
    result.m[v * 4 + v] = c;
    return result;
}

HMatrix HMatrix::Scaling(int axis, double factor) {
    HMatrix result;
    result.m[axis * 5] = static_cast<float>(factor);
    return result;
}

HMatrix HMatrix::About(const HC_POINT& centre, const HMatrix& m) {
    return Translation({-centre.x, -centre.y, -centre.z}) * m * Translation(centre);
}

HMatrix HMatrix::operator*(const HMatrix& other) const {
    HMatrix result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            double sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += double(m[row * 4 + k]) * other.m[k * 4 + column];
            result.m[row * 4 + column] = static_cast<float>(sum);
        }
    return result;
}

HC_POINT HMatrix::Transform(const HC_POINT& p) const {
    return {p.x * m[0] + p.y * m[4] + p.z * m[8] + m[12],
            p.x * m[1] + p.y * m[5] + p.z * m[9] + m[13],
            p.x * m[2] + p.y * m[6] + p.z * m[10] + m[14]};
}

bool HMatrix::Invert() {
    // The upper 3x3 by its adjugate, then the translation moved back through it.
    auto a = [this](int row, int column) { return double(m[row * 4 + column]); };
    double cofactor[3][3];
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column) {
            const int r1 = (row + 1) % 3, r2 = (row + 2) % 3;
            const int c1 = (column + 1) % 3, c2 = (column + 2) % 3;
            cofactor[row][column] = a(r1, c1) * a(r2, c2) - a(r1, c2) * a(r2, c1);
        }
    const double determinant =
        a(0, 0) * cofactor[0][0] + a(0, 1) * cofactor[0][1] + a(0, 2) * cofactor[0][2];
    if (std::abs(determinant) < 1e-12) return false;
    HMatrix inverse;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            inverse.m[row * 4 + column] = static_cast<float>(cofactor[column][row] / determinant);
    for (int column = 0; column < 3; ++column) {
        double sum = 0;
        for (int k = 0; k < 3; ++k)
            sum += a(3, k) * inverse.m[k * 4 + column];
        inverse.m[12 + column] = static_cast<float>(-sum);
    }
    *this = inverse;
    return true;
}
