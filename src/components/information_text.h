// The information texts the component viewer shows for a selected node, and their count lines.
// Line ends are CR LF throughout.
#pragma once

#include <cstdint>
#include <string>

#include "components/node_kind.h"
#include "components/records.h"

namespace obsidra::components {

// "未设置" when no Order is set, otherwise the decimal value.
std::string OrderText(std::uint32_t order);

// A style counts as set only when a flag above bits 0 to 3 is.
bool IsDisplayStyleSet(const DisplayStyle& style);
// Empty when the style is not set.
std::string DisplayStyleText(const DisplayStyle& style);

std::string InformationText(const ProjectRecord& record);
std::string InformationText(const DisciplineRecord& record);
std::string InformationText(const MajorCategoryRecord& record);
// Includes the display-style text.
std::string InformationText(const MinorCategoryRecord& record);
std::string InformationText(const FloorRecord& record);
// Ends without a line end: its count line continues the last line.
std::string InformationText(const AttributeRecord& record);
std::string InformationText(const ComponentRecord& record);
std::string InformationText(const GeometryRecord& record);

// The line that follows the text of a node that counts the components below it; empty for the
// kinds that show no count (root, component, geometry).
std::string CountLine(NodeKind kind, int componentCount);

} // namespace obsidra::components
