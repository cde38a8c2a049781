#include "hc/attribute.h"

#include <algorithm>

namespace hc {

NetRule NetRuleOf(ContentKind kind) {
    switch (kind) {
    case ContentKind::ModellingMatrix:
    case ContentKind::TextureMatrix:
        return NetRule::Multiply;
    default:
        return IsOptionString(kind) ? NetRule::Merge : NetRule::Nearest;
    }
}

bool IsOptionString(ContentKind kind) {
    switch (kind) {
    case ContentKind::Color:
    case ContentKind::Visibility:
    case ContentKind::Selectability:
    case ContentKind::Callback:
    case ContentKind::RenderingOptions:
    case ContentKind::UserOptions:
    case ContentKind::UnicodeOptions:
    case ContentKind::Heuristics:
    case ContentKind::TextFont:
    case ContentKind::DriverOptions:
    case ContentKind::Conditions:
    case ContentKind::GeometryOptions:
        return true;
    default:
        return false;
    }
}

const Attribute* AttributeSet::Find(ContentKind kind) const {
    for (const Attribute& attribute : m_items)
        if (attribute.kind == kind) return &attribute;
    return nullptr;
}

Attribute* AttributeSet::Find(ContentKind kind) {
    for (Attribute& attribute : m_items)
        if (attribute.kind == kind) return &attribute;
    return nullptr;
}

Attribute& AttributeSet::Obtain(ContentKind kind) {
    if (Attribute* present = Find(kind)) return *present;
    // Kept in the order of the kinds, which is the order contents searches list them in.
    auto at = std::find_if(m_items.begin(), m_items.end(),
                           [kind](const Attribute& a) { return a.kind > kind; });
    return *m_items.insert(at, Attribute{kind, {}, {}, {}, 0, {}, {}, {}});
}

bool AttributeSet::Remove(ContentKind kind) {
    auto it = std::find_if(m_items.begin(), m_items.end(),
                           [kind](const Attribute& a) { return a.kind == kind; });
    if (it == m_items.end()) return false;
    m_items.erase(it);
    return true;
}

void MultiplyMatrices(const float* a, const float* b, float* result) {
    float product[16];
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += double(a[row * 4 + k]) * b[k * 4 + column];
            product[row * 4 + column] = static_cast<float>(sum);
        }
    }
    std::copy(product, product + 16, result);
}

HC_POINT TransformPoint(const HC_POINT& p, const float* m) {
    double x = p.x * double(m[0]) + p.y * double(m[4]) + p.z * double(m[8]) + m[12];
    double y = p.x * double(m[1]) + p.y * double(m[5]) + p.z * double(m[9]) + m[13];
    double z = p.x * double(m[2]) + p.y * double(m[6]) + p.z * double(m[10]) + m[14];
    double w = p.x * double(m[3]) + p.y * double(m[7]) + p.z * double(m[11]) + m[15];
    if (w != 0 && w != 1) x /= w, y /= w, z /= w;
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

} // namespace hc
