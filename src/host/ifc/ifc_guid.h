// IFC GlobalIds: 128-bit GUIDs written as 22 characters of IFC's own base-64 alphabet.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <obsidra/host.h>

namespace obsidra::host::ifc {

// The GUID a GlobalId stands for. A GlobalId is the GUID's 128 bits as one number in base 64,
// most significant digit first, with the digits "0-9A-Za-z_$"; the first digit holds only the
// top two bits (0 to 3). Nothing for any other text: wrong length, a character outside the
// alphabet, or a first digit above 3.
std::optional<Guid> DecodeIfcGuid(std::string_view globalId);

// The 22-character GlobalId of a GUID; DecodeIfcGuid(EncodeIfcGuid(g)) == g.
std::string EncodeIfcGuid(const Guid& guid);

// The identifier of an object that carries a GlobalId: its GUID when the GlobalId decodes,
// otherwise the GlobalId itself as the identifier text, so that a malformed file still names
// its objects as it wrote them.
ComponentId IdFromGlobalId(std::string_view globalId);

} // namespace obsidra::host::ifc
