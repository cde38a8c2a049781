#pragma once

#include <cstddef>
#include <string_view>

// Sets one line through every attribute descriptor, on a segment and on a shell opened in it,
// shows everything back and unsets it, in a database reset for the purpose. Answers the length of
// the longest text a descriptor showed, which must stay below the 4096-byte line bound. Errors go
// to whatever handler the caller installed.
size_t FeedAttributeSetters(std::string_view line);
