#pragma once

// The descriptor lists the segment tree keeps, each made once and in a fixed order: the order of
// a list is the order in which the tree lists nodes and writes texts.

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "descriptors/attribute_descriptors.h"
#include "descriptors/definition_descriptors.h"
#include "descriptors/geometry_descriptors.h"

namespace obsidra::descriptors {

using AttributeList = std::vector<std::unique_ptr<HoopsAttribute>>;
using GeometryList = std::vector<std::unique_ptr<HoopsGeometry>>;
using DefinitionList = std::vector<std::unique_ptr<HoopsDefineGeometry>>;

// The attributes listed under a shell, a mesh or a light.
inline constexpr AttributeKind kShellMeshLightAttributes[] = {
    AttributeKind::Color,          AttributeKind::GeometryOptions, AttributeKind::UserValue,
    AttributeKind::UserOptions,    AttributeKind::UserIndex,       AttributeKind::UserData,
    AttributeKind::UnicodeOptions,
};

// The attributes listed under any other geometry item but text.
inline constexpr AttributeKind kGeometryItemAttributes[] = {
    AttributeKind::UserValue, AttributeKind::UserOptions, AttributeKind::UnicodeOptions,
    AttributeKind::UserIndex, AttributeKind::UserData,    AttributeKind::GeometryOptions,
};

inline constexpr AttributeKind kTextItemAttributes[] = {
    AttributeKind::TextAlignment,  AttributeKind::TextFont,        AttributeKind::TextPath,
    AttributeKind::TextSpacing,    AttributeKind::ModellingMatrix, AttributeKind::UserValue,
    AttributeKind::UserOptions,    AttributeKind::UserIndex,       AttributeKind::UserData,
    AttributeKind::UnicodeOptions,
};

// The attributes listed under a geometry item reached through a reference.
inline constexpr AttributeKind kReferencedItemAttributes[] = {
    AttributeKind::Color,           AttributeKind::UserValue,     AttributeKind::UserOptions,
    AttributeKind::UserIndex,       AttributeKind::UserData,      AttributeKind::UnicodeOptions,
    AttributeKind::ModellingMatrix, AttributeKind::TextAlignment, AttributeKind::TextFont,
    AttributeKind::TextPath,        AttributeKind::TextSpacing,   AttributeKind::MarkerSymbol,
    AttributeKind::MarkerSize,      AttributeKind::LineWeight,    AttributeKind::LinePattern,
    AttributeKind::Visibility,
};

// A new descriptor of each kind, in the order given.
AttributeList MakeAttributeList(std::span<const AttributeKind> kinds);
// Every attribute kind, in the order of the attribute table: the segment's list.
AttributeList MakeSegmentAttributes();
// Every geometry kind and every definition kind, in the order of their tables.
GeometryList MakeGeometryList();
DefinitionList MakeDefinitionList();

// The tree's lists of descriptors, which it owns and frees together.
struct DescriptorLists {
    AttributeList segmentAttributes;
    GeometryList geometry;
    DefinitionList definitions;
    AttributeList shellMeshLightAttributes;
    AttributeList geometryItemAttributes;
    AttributeList textItemAttributes;
    AttributeList referencedItemAttributes;

    // The attribute list of a geometry item of the type word ("shell", "spot light"): chosen by
    // the words the type holds, "shell", "light" or "mesh" before "text"; an item reached through
    // a reference has a list of its own.
    const AttributeList& ForGeometryItem(std::string_view type, bool throughReference) const;
};

// Makes every list, in the order the tree creates them.
DescriptorLists MakeDescriptorLists();

} // namespace obsidra::descriptors
