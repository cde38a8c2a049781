#include <cstdio>
#include <fstream>
#include <memory>

#include "../hc/hc_test.h"
#include "mvo/hdb.h"

namespace {

using InputHandlers = HcTest;

// Remembers what it was asked to read.
class Recorder : public HInputHandler {
public:
    bool FileInputByKey(const char* filename, HC_KEY segment, const char* options) override {
        calls.push_back(std::string(filename) + " " + std::to_string(segment) + " " + options);
        return true;
    }
    std::vector<std::string> calls;
};

std::string TempFile(const char* name) {
    return ::testing::TempDir() + name;
}

TEST_F(InputHandlers, ExtensionsAreLookedUpWithoutRegardToCase) {
    HIOManager manager;
    auto recorder = std::make_shared<Recorder>();
    manager.RegisterInputHandler("OBJ", recorder);
    manager.RegisterInputHandler("stl", recorder);
    EXPECT_EQ(manager.GetInputHandler("obj"), recorder.get());
    EXPECT_EQ(manager.GetInputHandler("Stl"), recorder.get());
    EXPECT_NE(manager.GetInputHandler("HMF"), nullptr) << "the metafile reader is there at once";
    EXPECT_EQ(manager.GetInputHandler("dwg"), nullptr);

    EXPECT_EQ(manager.Read("/models/part.Obj", 7, "lines"), HFileInputResult::Success);
    EXPECT_EQ(recorder->calls, std::vector<std::string>{"/models/part.Obj 7 lines"});
    EXPECT_EQ(manager.Read("/models.d/part", 7), HFileInputResult::NoExtension);
    EXPECT_EQ(manager.Read("part.dwg", 7), HFileInputResult::NoHandler);

    manager.RegisterInputHandler("obj", nullptr);
    EXPECT_EQ(manager.GetInputHandler("OBJ"), nullptr);
    EXPECT_EQ(manager.GetInputHandler("stl"), recorder.get());
}

TEST_F(InputHandlers, TheProcessRegistryReadsMetafilesIntoASegment) {
    HC_Open_Segment("/source");
    Triangle();
    HC_Set_Color("faces=red");
    HC_Close_Segment();
    const std::string file = TempFile("obsidra_io_manager.HMF");
    HC_Write_Metafile("/source", file.c_str(), "");

    HIOManager* manager = HDB::GetHIOManager();
    EXPECT_EQ(manager, HDB::GetHIOManager());
    HC_KEY target = HC_Create_Segment("/target");
    EXPECT_EQ(manager->Read(file.c_str(), target), HFileInputResult::Success);
    EXPECT_EQ(Types("/target", "shells, colors"), (std::vector<std::string>{"shell", "color"}));

    // A file that does not read leaves the segment as it was.
    const std::string bad = TempFile("obsidra_io_manager_bad.hmf");
    std::ofstream(bad) << "(Segment \"x\" (Shell";
    EXPECT_EQ(manager->Read(bad.c_str(), target), HFileInputResult::Fail);
    EXPECT_EQ(manager->Read(TempFile("missing.hmf").c_str(), target), HFileInputResult::Fail);
    EXPECT_EQ(TakeErrors().size(), 2u);
    EXPECT_EQ(Types("/target/...", "segments, geometry"), std::vector<std::string>{"shell"});
    std::remove(file.c_str());
    std::remove(bad.c_str());
}

} // namespace
