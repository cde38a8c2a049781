// Any option string through HC_Optimize_Segment_Tree on a small scene: refused or taken, the scene
// draws the same afterwards; never a crash or a hang.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <obsidra/hc.h>

#include "hc/database.h"
#include "hc/invariants.h"
#include "hc/testing/optimize_scene.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    HC_Define_Error_Handler([](const char*, const char*) {});
    HC_Reset_System();
    HC_KEY root = hc::testing::BuildOptimizeScene("/scene", 10);
    const auto before = hc::testing::DrawnScene(root);
    std::string options(reinterpret_cast<const char*>(data), size);
    HC_Optimize_Segment_Tree("/scene", options.c_str());
    if (hc::testing::DrawnScene(root) != before) std::abort();
    if (!hc::CheckInvariants(hc::Current()).empty()) std::abort();
    return 0;
}
