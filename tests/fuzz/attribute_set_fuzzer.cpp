// libFuzzer target: random lines through every attribute descriptor's Set.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <obsidra/hc.h>

#include "attribute_set_feed.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    HC_Define_Error_Handler([](const char*, const char*) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view line(reinterpret_cast<const char*>(data), size);
    if (FeedAttributeSetters(line) >= HC_TEXT_MAX) std::abort();
    return 0;
}
