#include "hc/content_kind.h"

#include <array>

#include "hc/error.h"
#include "hc/text.h"

namespace hc {

namespace {

struct KindWords {
    std::string_view word;
    std::string_view other;
};

constexpr std::array<KindWords, kContentKindCount> kWords = {{
#define HC_WORDS(name, word, other) {word, other},
    HC_CONTENT_KINDS(HC_WORDS)
#undef HC_WORDS
}};

template <typename Predicate>
void SetWhere(std::bitset<kContentKindCount>& bits, bool value, Predicate predicate) {
    for (size_t i = 0; i < kContentKindCount; ++i) {
        if (predicate(static_cast<ContentKind>(i))) bits.set(i, value);
    }
}

// Applies one filter word; false when the word names nothing.
bool ApplyWord(std::string_view word, bool value, std::bitset<kContentKindCount>& bits) {
    if (word == "everything") {
        SetWhere(bits, value, [](ContentKind k) { return k != ContentKind::StaticModel; });
        return true;
    }
    if (word == "geometry" || word == "geometries") {
        SetWhere(bits, value, IsGeometry);
        return true;
    }
    if (word == "attributes" || word == "attribute") {
        SetWhere(bits, value, IsAttribute);
        return true;
    }
    if (word == "definitions" || word == "definition") {
        SetWhere(bits, value, IsDefinition);
        return true;
    }
    if (word == "lights" || word == "light") {
        for (ContentKind k :
             {ContentKind::DistantLight, ContentKind::LocalLight, ContentKind::SpotLight})
            bits.set(static_cast<size_t>(k), value);
        return true;
    }
    if (word == "subsegments" || word == "subsegment") word = "segment";
    for (size_t i = 0; i < kContentKindCount; ++i) {
        if (kWords[i].word == word || kWords[i].other == word) {
            bits.set(i, value);
            return true;
        }
    }
    return false;
}

} // namespace

std::string_view TypeWord(ContentKind kind) {
    return kWords[static_cast<size_t>(kind)].word;
}

Filter Filter::Parse(std::string_view text, std::vector<std::string>& unknownWords) {
    Filter filter;
    for (std::string_view item : SplitList(text, ',')) {
        std::string word = CollapseBlanks(ToLower(item));
        if (word.empty()) continue;
        if (word == "first match") {
            filter.m_firstMatch = true;
            continue;
        }
        bool value = true;
        if (word.starts_with("no ")) {
            value = false;
            word.erase(0, 3);
        }
        if (!ApplyWord(word, value, filter.m_kinds)) unknownWords.push_back(std::string(item));
    }
    return filter;
}

// Contents searches ask these once per segment: one AND of a few words each.
bool Filter::HasAnyGeometry() const {
    static const std::bitset<kContentKindCount> kGeometry = [] {
        std::bitset<kContentKindCount> bits;
        SetWhere(bits, true, IsGeometry);
        return bits;
    }();
    return (m_kinds & kGeometry).any();
}

bool Filter::HasAnyAttribute() const {
    static const std::bitset<kContentKindCount> kAttributes = [] {
        std::bitset<kContentKindCount> bits;
        SetWhere(bits, true, IsAttribute);
        return bits;
    }();
    return (m_kinds & kAttributes).any();
}

Filter Filter::ParseOrReport(std::string_view text) {
    std::vector<std::string> unknown;
    Filter filter = Parse(text, unknown);
    for (const std::string& word : unknown)
        ReportError("unknown content type \"" + word + "\"");
    return filter;
}

} // namespace hc
