#include "host/view/net_look.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "text/text.h"

namespace obsidra::host::view {

namespace {

using obsidra::text::Trim;

// The options of a text, split at commas outside parentheses and quotes.
std::vector<std::string_view> SplitOptions(std::string_view text) {
    std::vector<std::string_view> parts;
    int depth = 0;
    char quote = 0;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        char c = i < text.size() ? text[i] : ',';
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')') {
            depth = std::max(0, depth - 1);
        } else if (c == ',' && depth == 0) {
            std::string_view part = Trim(text.substr(start, i - start));
            if (!part.empty()) parts.push_back(part);
            start = i + 1;
        }
    }
    return parts;
}

std::string Lowered(std::string_view text) {
    std::string lowered = obsidra::text::ToLower(text);
    // Names keep single blanks, so "light  blue" and "light blue" are one name.
    std::string single;
    for (char c : lowered)
        if (!(c == ' ' && (single.empty() || single.back() == ' '))) single += c;
    while (!single.empty() && single.back() == ' ')
        single.pop_back();
    return single;
}

struct NamedColour {
    const char* name;
    float r, g, b;
};

constexpr NamedColour kColours[] = {
    {"black", 0, 0, 0},
    {"white", 1, 1, 1},
    {"red", 1, 0, 0},
    {"green", 0, 1, 0},
    {"blue", 0, 0, 1},
    {"yellow", 1, 1, 0},
    {"cyan", 0, 1, 1},
    {"magenta", 1, 0, 1},
    {"grey", 0.5f, 0.5f, 0.5f},
    {"gray", 0.5f, 0.5f, 0.5f},
    {"orange", 1, 0.5f, 0},
    {"pink", 1, 0.6f, 0.7f},
    {"brown", 0.55f, 0.3f, 0.1f},
    {"purple", 0.5f, 0, 0.5f},
    {"violet", 0.55f, 0.25f, 0.9f},
    {"gold", 1, 0.84f, 0},
    {"silver", 0.75f, 0.75f, 0.75f},
};

std::optional<std::array<float, 3>> NamedRgb(const std::string& name) {
    for (const NamedColour& colour : kColours)
        if (name == colour.name) return std::array<float, 3>{colour.r, colour.g, colour.b};
    // "light X" and "dark X": halfway to white, halfway to black.
    for (auto [prefix, towards] : {std::pair{"light ", 1.0f}, std::pair{"dark ", 0.0f}}) {
        std::string_view p = prefix;
        if (name.starts_with(p))
            if (auto base = NamedRgb(name.substr(p.size())))
                return std::array<float, 3>{((*base)[0] + towards) / 2, ((*base)[1] + towards) / 2,
                                            ((*base)[2] + towards) / 2};
    }
    return std::nullopt;
}

// The number after "name=" in a list such as "r=0.5 g=0.2 b=0.1".
std::optional<float> Component(std::string_view text, char name) {
    for (size_t i = 0; i + 1 < text.size(); ++i) {
        bool starts = i == 0 || text[i - 1] == ' ' || text[i - 1] == '(' || text[i - 1] == ',';
        if (starts && obsidra::text::Lower(text[i]) == name) {
            size_t j = i + 1;
            while (j < text.size() && text[j] == ' ')
                ++j;
            if (j >= text.size() || text[j] != '=') continue;
            std::string number(Trim(text.substr(j + 1, 24)));
            char* end = nullptr;
            float value = std::strtof(number.c_str(), &end);
            if (end != number.c_str()) return value;
        }
    }
    return std::nullopt;
}

// The colour after "part=" in a material text: a parenthesised colour or a name.
std::optional<Rgba> MaterialPart(const std::string& material, std::string_view part) {
    size_t at = material.find(part);
    if (at == std::string::npos) return std::nullopt;
    size_t equals = material.find('=', at);
    if (equals == std::string::npos) return std::nullopt;
    std::string_view value = Trim(std::string_view(material).substr(equals + 1));
    if (!value.empty() && value.front() == '(') {
        size_t close = value.find(')');
        return close == std::string_view::npos ? std::nullopt
                                               : ParseColour(value.substr(0, close + 1));
    }
    return ParseColour(value.substr(0, value.find_first_of(",)")));
}

} // namespace

void OptionMap::Merge(std::string_view text, bool colour) {
    for (std::string_view option : SplitOptions(text)) {
        std::string name;
        std::string value;
        if (size_t equals = option.find('='); equals != std::string_view::npos) {
            name = Lowered(option.substr(0, equals));
            value = std::string(Trim(option.substr(equals + 1)));
        } else if (std::string lowered = Lowered(option); lowered.starts_with("no ")) {
            name = lowered.substr(3);
            value = "off";
        } else if (std::string word = Lowered(option); !colour && (word == "on" || word == "off")) {
            name = "everything";
            value = word;
        } else if (colour) {
            m_options.clear();
            name = "geometry";
            value = std::string(option);
        } else {
            name = lowered;
            value = "on";
        }
        auto it = std::find_if(m_options.begin(), m_options.end(),
                               [&](const auto& entry) { return entry.first == name; });
        if (it != m_options.end())
            it->second = std::move(value);
        else
            m_options.emplace_back(std::move(name), std::move(value));
    }
}

const std::string* OptionMap::Find(std::string_view name) const {
    for (const auto& [key, value] : m_options)
        if (key == name) return &value;
    return nullptr;
}

Rgba MakeRgba(float r, float g, float b, float a) {
    auto byte = [](float v) {
        return static_cast<Rgba>((std::isfinite(v) ? std::clamp(v, 0.0f, 1.0f) : 0.0f) * 255.0f +
                                 0.5f);
    };
    return byte(r) | byte(g) << 8 | byte(b) << 16 | byte(a) << 24;
}

std::optional<Rgba> ParseColour(std::string_view text) {
    std::string lowered = Lowered(Trim(text));
    if (lowered.find("diffuse") != std::string::npos) {
        std::optional<Rgba> diffuse = MaterialPart(lowered, "diffuse");
        // What a material lets through makes it translucent.
        if (std::optional<Rgba> through = MaterialPart(lowered, "transmission");
            diffuse && through) {
            float level = static_cast<float>((*through & 0xFF) + (*through >> 8 & 0xFF) +
                                             (*through >> 16 & 0xFF)) /
                          (3 * 255.0f);
            *diffuse = (*diffuse & 0xFFFFFF) | (MakeRgba(0, 0, 0, 1 - level) & 0xFF000000);
        }
        return diffuse;
    }
    if (!lowered.empty() && lowered.front() == '(') {
        auto r = Component(lowered, 'r'), g = Component(lowered, 'g'), b = Component(lowered, 'b');
        if (r && g && b) return MakeRgba(*r, *g, *b);
        return std::nullopt;
    }
    if (auto rgb = NamedRgb(lowered)) return MakeRgba((*rgb)[0], (*rgb)[1], (*rgb)[2]);
    return std::nullopt;
}

Look ResolveLook(const OptionMap& colour, const OptionMap& visibility) {
    // The names each part answers to, most particular first; "geometry" and a bare colour
    // (stored as "geometry") reach every part.
    static constexpr const char* kNames[static_cast<int>(Part::Count)][3] = {
        {"faces", "face", "polygons"},  {"edges", "edge", nullptr}, {"lines", "line", "polylines"},
        {"markers", "marker", nullptr}, {"text", "texts", nullptr},
    };
    static const Rgba kDefaults[static_cast<int>(Part::Count)] = {
        MakeRgba(0.78f, 0.78f, 0.76f), MakeRgba(0.2f, 0.2f, 0.2f), MakeRgba(0.1f, 0.1f, 0.1f),
        MakeRgba(0.1f, 0.1f, 0.1f), MakeRgba(0.1f, 0.1f, 0.4f)};
    auto find = [](const OptionMap& map, int part) -> const std::string* {
        for (const char* name : kNames[part])
            if (name)
                if (const std::string* value = map.Find(name)) return value;
        for (const char* name : {"geometry", "everything"})
            if (const std::string* value = map.Find(name)) return value;
        return nullptr;
    };
    Look look{};
    for (int part = 0; part < static_cast<int>(Part::Count); ++part) {
        const std::string* c = find(colour, part);
        std::optional<Rgba> parsed = c ? ParseColour(*c) : std::nullopt;
        look.colour[part] = parsed.value_or(kDefaults[part]);
        const std::string* v = find(visibility, part);
        look.visible[part] = !(v && Lowered(*v) == "off");
    }
    const std::string* edges = visibility.Find("edges");
    if (!edges) edges = visibility.Find("edge");
    look.edgesNamed = edges != nullptr;
    return look;
}

} // namespace obsidra::host::view
