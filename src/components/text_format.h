// printf-style appending for the information texts, whose number forms follow printf exactly.
#pragma once

#include <string>

namespace obsidra::components {

#if defined(__GNUC__) || defined(__clang__)
__attribute__((format(printf, 2, 3)))
#endif
void AppendFormat(std::string& out, const char* format, ...);

} // namespace obsidra::components
