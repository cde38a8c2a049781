// A host and a module that each link their own copy of the view-side services find one registry
// of input handlers: what the host registers, the module's "Load Into Segment" reads with, and
// the other way round.
#include <dlfcn.h>

#include "../hc/hc_test.h"
#include "mvo/hdb.h"

namespace {

class SharedRegistry : public HcTest {
protected:
    template <typename Function>
    static Function Find(const char* name) {
        return reinterpret_cast<Function>(dlsym(s_library, name));
    }
    static void SetUpTestSuite() {
        // Never closed: the registry may hold the module's handlers, which the host may call
        // until the process ends (the module itself is linked so that it is never unloaded).
        s_library = dlopen(OBSIDRA_REGISTRY_MODULE, RTLD_NOW | RTLD_LOCAL);
    }
    void SetUp() override {
        ASSERT_NE(s_library, nullptr) << dlerror();
        HcTest::SetUp();
    }

    static inline void* s_library = nullptr;
};

class HostReader : public HInputHandler {
public:
    bool FileInputByKey(const char*, HC_KEY segment, const char*) override {
        reads.push_back(segment);
        return true;
    }
    std::vector<HC_KEY> reads;
};

TEST_F(SharedRegistry, HostAndModuleShareOneRegistry) {
    auto registry = Find<void* (*)()>("ProbeRegistry");
    auto registerReader = Find<void (*)(const char*)>("ProbeRegister");
    auto read = Find<int (*)(const char*, HC_KEY)>("ProbeRead");
    ASSERT_TRUE(registry && registerReader && read);

    // The module asks first (a host that registers nothing never asks), and the host then finds
    // the registry the module made; a scene reset keeps it.
    void* modules = registry();
    HC_Reset_System();
    EXPECT_EQ(HDB::GetHIOManager(), modules);

    HC_KEY target = HC_Create_Segment("/target");
    auto hostReader = std::make_shared<HostReader>();
    HDB::GetHIOManager()->RegisterInputHandler("OBJ", hostReader);
    EXPECT_EQ(read("part.obj", target), static_cast<int>(HFileInputResult::Success));
    EXPECT_EQ(hostReader->reads, std::vector<HC_KEY>{target});

    registerReader("stl");
    EXPECT_EQ(HDB::GetHIOManager()->Read("part.STL", target), HFileInputResult::Success);
    EXPECT_EQ(Types("/target", "segments"), std::vector<std::string>{"segment"});
    EXPECT_EQ(read("part.dwg", target), static_cast<int>(HFileInputResult::NoHandler));
    HDB::GetHIOManager()->RegisterInputHandler("obj", nullptr);
    EXPECT_EQ(read("part.obj", target), static_cast<int>(HFileInputResult::NoHandler));
    EXPECT_TRUE(TakeErrors().empty());
}

} // namespace
