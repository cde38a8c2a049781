// Entity instances the reader cannot read, taken out of the text of an IFC file before it reads
// it, so that one annotation entity of a newer schema, or one broken line, costs that entity
// and not the building.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/ifc/ifc_warning_tally.h"

namespace obsidra::host::ifc {

// What the reader knows of an entity type, by its upper-case keyword: the number of arguments
// it takes, or one of these.
constexpr int kUnknownEntity = -1;
constexpr int kAnyArguments = -2;
using ArgumentsOf = std::function<int(std::string_view keyword)>;

// Skips each statement of the DATA sections that is not an entity instance, names an unknown
// entity, or gives a known one another number of arguments; a reference to a skipped instance
// becomes $ (an attribute) or leaves its list. Each kind of problem is told once in warnings,
// with the line and #id where it was first met. The text is left alone when nothing is skipped;
// a reference to an instance that was never there is the reader's to report.
void SkipUnreadableEntities(std::string& text, const ArgumentsOf& argumentsOf,
                            WarningTally& warnings);

} // namespace obsidra::host::ifc
