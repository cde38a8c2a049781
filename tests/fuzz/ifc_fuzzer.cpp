// Any text through the IFC importer: it imports or is refused with a message, the scene is
// sound either way, and a refused import leaves nothing behind. IFC++ is slow on large inputs:
// run with a small -max_len and a -timeout.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <obsidra/hc.h>
#include <obsidra/hc_check.h>

#include "host/ifc/ifc_importer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = [] {
        HC_Define_Error_Handler([](const char*, const char*) {});
        return true;
    }();
    (void)quiet;
    HC_Reset_System();
    const auto result = obsidra::host::ifc::ImportIfcText(
        std::string(reinterpret_cast<const char*>(data), size), "fuzz", {"/fuzz", {}});
    if (!result.building && HC_QShow_Existence("/fuzz", "self") != 0) std::abort();
    if (HC_Check_Database(nullptr, 0) != 0) std::abort();
    return 0;
}
