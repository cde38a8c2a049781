#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <obsidra/hc.h>

#include "hc/content_kind.h"
#include "hc/option_string.h"

namespace hc {

struct ConditionalAction {
    std::string type;
    std::string options;
    std::string condition;
};

// One attribute set on a segment or geometry item. One shape for every kind; each kind uses the
// fields its values need (docs/formats.md, "Attributes").
struct Attribute {
    ContentKind kind;
    OptionList options;                  // option strings, conditions
    std::string text;                    // texts, variable weights, projection, clip-region options
    std::vector<float> numbers;          // matrices, camera, window, text path and spacing, weights
    int64_t integer = 0;                 // user value
    std::vector<HC_POINT> points;        // clip region
    std::map<long, std::string> entries; // user indices (the value's bytes), user data
    std::vector<ConditionalAction> actions;
};

// How a kind's net value is made from the values set along the path up to the root.
enum class NetRule : uint8_t {
    Merge,    // option by option, the nearer value of an option winning
    Multiply, // matrices: the nearer one first
    Nearest,  // the nearest value, whole
};

NetRule NetRuleOf(ContentKind kind);
// Whether a kind's value is an option string (parsed, merged when set again) rather than a
// text kept as written.
bool IsOptionString(ContentKind kind);

// The attributes of one object, few and looked up by kind.
class AttributeSet {
public:
    const Attribute* Find(ContentKind kind) const;
    Attribute* Find(ContentKind kind);
    // The attribute of that kind, made empty when missing.
    Attribute& Obtain(ContentKind kind);
    bool Remove(ContentKind kind);
    bool Empty() const { return m_items.empty(); }
    const std::vector<Attribute>& Items() const { return m_items; }
    std::vector<Attribute>& Items() { return m_items; }

private:
    std::vector<Attribute> m_items;
};

// 4x4 row-major matrices with row vectors: a * b applies a first.
void MultiplyMatrices(const float* a, const float* b, float* result);
HC_POINT TransformPoint(const HC_POINT& point, const float* matrix);

} // namespace hc
