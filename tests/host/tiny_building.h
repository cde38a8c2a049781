// A small IFC4 building written by hand, with the cases the sample files lack: two storeys
// whose names differ only in case and hold a "/", given out of elevation order; two walls that
// share a GlobalId; a proxy whose GlobalId does not decode; a wall type whose property set an
// occurrence set overrides; a translucent colour; a connection; a beam in an assembly.
#pragma once

#include <string>

namespace obsidra::host::ifc::testing {

const std::string& TinyBuildingText();

} // namespace obsidra::host::ifc::testing
