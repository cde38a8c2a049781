// A host and a module that both link the scene database library share one scene: the host
// builds it, the module (loaded with dlopen, as a host loads ours) reads, edits and searches it,
// and the error handler either of them sets is the one both report through.
#include <dlfcn.h>

#include "hc_test.h"

namespace {

// The module's entry points, found by name as a host finds the module's exports.
struct Module {
    int (*countContents)(const char* segment, const char* type);
    HC_KEY (*edit)(HC_KEY segment, const char* color, const char* child);
    int (*segmentSearch)(const char* pattern, char* first);
    void (*misuse)();
    void (*installHandler)();
    int (*reportedCount)();
};

template <typename Function>
void Find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    ASSERT_NE(function, nullptr) << name;
}

class CrossLibraryTest : public HcTest {
protected:
    static void SetUpTestSuite() {
        s_library = dlopen(OBSIDRA_PROBE_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(s_library, nullptr) << dlerror();
        Find(s_library, "ProbeCountContents", s_module.countContents);
        Find(s_library, "ProbeEdit", s_module.edit);
        Find(s_library, "ProbeSegmentSearch", s_module.segmentSearch);
        Find(s_library, "ProbeMisuse", s_module.misuse);
        Find(s_library, "ProbeInstallHandler", s_module.installHandler);
        Find(s_library, "ProbeReportedCount", s_module.reportedCount);
    }
    static void TearDownTestSuite() {
        if (s_library) dlclose(s_library);
        s_library = nullptr;
    }
    void SetUp() override {
        ASSERT_NE(s_library, nullptr);
        HcTest::SetUp();
    }

    static inline void* s_library = nullptr;
    static inline Module s_module{};
};

TEST_F(CrossLibraryTest, ModuleReadsEditsAndSearchesTheHostsScene) {
    HC_KEY model = HC_Open_Segment("/model");
    Triangle();
    Triangle();
    HC_Create_Segment("part");
    HC_Close_Segment();

    EXPECT_EQ(s_module.countContents("/model", "shells"), 2);
    EXPECT_EQ(s_module.countContents("/model", "segments"), 1);

    HC_KEY made = s_module.edit(model, "faces=red", "made by module");
    ASSERT_NE(made, 0);
    EXPECT_EQ(Path(made), "/model/made by module");
    EXPECT_EQ(Types("/model", "segments"), (std::vector<std::string>{"segment", "segment"}));
    char color[HC_TEXT_MAX];
    HC_Open_Segment_By_Key(model);
    HC_Show_Color(color);
    HC_Close_Segment();
    EXPECT_STREQ(color, "faces=red");

    char first[HC_TEXT_MAX];
    EXPECT_EQ(s_module.segmentSearch("/model/made*", first), 1);
    EXPECT_STREQ(first, "/model/made by module");
    EXPECT_TRUE(TakeErrors().empty());
}

TEST_F(CrossLibraryTest, OneErrorHandlerServesHostAndModule) {
    s_module.misuse();
    EXPECT_EQ(TakeErrors(), (std::vector<std::string>{"HC_Close_Segment: no segment is open"}));

    s_module.installHandler();
    HC_Close_Segment();
    EXPECT_EQ(s_module.reportedCount(), 1);
    EXPECT_TRUE(TakeErrors().empty());
}

} // namespace
