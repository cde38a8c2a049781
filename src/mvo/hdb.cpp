#include "mvo/hdb.h"

#include <obsidra/hc_fastpath.h>

namespace {

// Versioned: a library built from other sources may lay the manager out otherwise, and must then
// make a registry of its own rather than use this one.
constexpr const char* kIOManagerService = "obsidra HIOManager 1";

} // namespace

// A host and the module each link their own copy of this library, so a static here would give
// each its own registry; the database library, which both share, keeps the one pointer. The
// manager is never deleted: whoever made it, every library may still ask for it until the
// process ends.
HIOManager* HDB::GetHIOManager() {
    if (void* found = HC_Fast_Show_Service(kIOManagerService))
        return static_cast<HIOManager*>(found);
    auto* manager = new HIOManager;
    HC_Fast_Define_Service(kIOManagerService, manager);
    return manager;
}
