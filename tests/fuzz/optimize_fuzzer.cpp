// Any option string through HC_Optimize_Segment_Tree on a small scene: it is refused with a report
// and nothing changes, or it is taken and the scene draws the same; never a crash or a hang.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <obsidra/hc.h>

#include "hc/testing/optimize_scene.h"

namespace {

int g_reports = 0;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    HC_Define_Error_Handler([](const char*, const char*) { ++g_reports; });
    HC_Reset_System();
    HC_KEY root = hc::testing::BuildOptimizeScene("/scene", 10);
    const auto before = hc::testing::DrawnScene(root);
    g_reports = 0;
    std::string options(reinterpret_cast<const char*>(data), size);
    HC_Optimize_Segment_Tree("/scene", options.c_str());
    if (hc::testing::DrawnScene(root) != before) std::abort();
    return 0;
}
