#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <obsidra/hc.h>

namespace obsidra::browser {

// The number an error report gives for a shell, read as a decimal long and cut to its low 32
// bits; text that is no number reads 0.
std::int32_t ParseShellNumber(std::string_view text);

// The first shell of the whole scene (in the order a search of "/" lists them) whose key has
// number as its low 32 bits; 0 when there is none, and for number 0.
HC_KEY FindShellByNumber(std::int32_t number);

// What the locate row shows for a shell found: its key, its owner's key and pathname.
std::string LocateResultText(HC_KEY shell, HC_KEY owner, std::string_view ownerPath);

} // namespace obsidra::browser
