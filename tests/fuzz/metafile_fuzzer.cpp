// Any text through the metafile reader: it loads or is refused, never crashes, hangs or leaks.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <obsidra/hc.h>

#include "hc/database.h"
#include "hc/invariants.h"
#include "hc/metafile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool quiet = [] {
        HC_Define_Error_Handler([](const char*, const char*) {});
        return true;
    }();
    (void)quiet;
    hc::Database database;
    std::string error;
    std::string text(reinterpret_cast<const char*>(data), size);
    if (hc::LoadMetafileText(database, text, database.Root(), error))
        (void)hc::MetafileText(database, database.Root());
    if (!hc::CheckInvariants(database).empty()) std::abort();
    return 0;
}
