// A module as a host loads it: a shared object with its own static copy of the view-side
// services, linking the scene database library. The shared-registry test loads it with dlopen.
#include <memory>

#include "mvo/hdb.h"

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

class ModuleReader : public HInputHandler {
public:
    bool FileInputByKey(const char*, HC_KEY segment, const char*) override {
        HC_Open_Segment_By_Key(segment);
        HC_Create_Segment("read by module");
        HC_Close_Segment();
        return true;
    }
};

} // namespace

PROBE_EXPORT void* ProbeRegistry() {
    return HDB::GetHIOManager();
}

PROBE_EXPORT void ProbeRegister(const char* extension) {
    HDB::GetHIOManager()->RegisterInputHandler(extension, std::make_shared<ModuleReader>());
}

// What "Load Into Segment" does with a file: reads it by the registry's handler.
PROBE_EXPORT int ProbeRead(const char* file, HC_KEY segment) {
    return static_cast<int>(HDB::GetHIOManager()->Read(file, segment));
}
