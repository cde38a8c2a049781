// How a segment's net colour and visibility options turn into what the view draws: option texts
// merged down the walk (styles, then the segment's own, then an item's own), and the colour and
// on/off state of each kind of geometry they give.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace obsidra::host::view {

// Options by name, merged as the database merges them: a nearer value of a name wins.
class OptionMap {
public:
    // Merges an option text ("faces=red, no edges"). For colours, an option without a value
    // ("red") colours everything, so what was inherited is dropped first.
    void Merge(std::string_view text, bool colour);
    // The value of a name, "off" for "no name", "on" for a bare name; nullptr when not set.
    const std::string* Find(std::string_view name) const;
    bool operator==(const OptionMap&) const = default;

private:
    std::vector<std::pair<std::string, std::string>> m_options;
};

// An RGBA colour, red in the lowest byte, as the vertex buffers hold it.
using Rgba = std::uint32_t;
Rgba MakeRgba(float r, float g, float b, float a = 1.0f);

// A colour text: a name ("red", "light blue", "dark grey"), "(r=0.5 g=0.5 b=0.5)" or a
// material whose diffuse colour is one of those. nullopt when it does not parse.
std::optional<Rgba> ParseColour(std::string_view text);

// The kinds of geometry that colour and visibility name apart.
enum class Part { Faces, Edges, Lines, Markers, Text, Count };

// What a net colour and visibility give each part.
struct Look {
    Rgba colour[static_cast<int>(Part::Count)];
    bool visible[static_cast<int>(Part::Count)];
    // Whether "edges" was named in the visibility: edges shown by default are only those of
    // faces of four or more vertices (see scene_extract.cpp).
    bool edgesNamed = false;

    Rgba ColourOf(Part part) const { return colour[static_cast<int>(part)]; }
    bool Shows(Part part) const { return visible[static_cast<int>(part)]; }
};

Look ResolveLook(const OptionMap& colour, const OptionMap& visibility);

} // namespace obsidra::host::view
