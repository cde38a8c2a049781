#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace hc {

// Writes text to file through a temporary file beside it, renamed over the file only once the
// whole text is written and flushed: a write that fails (a full disk, a folder without write
// permission) leaves the old file as it was and no temporary behind. error then names the file
// and the cause.
bool WriteFileAtomically(const std::string& file, std::string_view text, std::string& error);

// White-box tests: from now on every write fails once it has written this many bytes of a
// file, as a disk filling up would; nullopt writes normally again.
void FailFileWritesAfter(std::optional<size_t> bytes);

} // namespace hc
