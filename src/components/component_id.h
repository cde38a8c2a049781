// The text by which a component, attribute, part or partition identifier is shown.
#pragma once

#include <string>

#include <obsidra/host.h>

namespace obsidra::components {

// The identifier text when there is one, empty for "none", otherwise the GUID in lower-case
// 8-4-4-4-12 form without braces.
std::string IdentifierText(const ComponentId& id);

} // namespace obsidra::components
