#include <gtest/gtest.h>

#include <obsidra/hc.h>

#include "hc/hc_test.h"
#include "host/viewer/scene_input_handler.h"
#include "host/viewer/scene_reader.h"
#include "host_viewer/faces.h"
#include "mvo/hdb.h"

namespace obsidra::host::viewer {
namespace {

class SceneInputHandlerTest : public HcTest {
protected:
};

TEST_F(SceneInputHandlerTest, EveryFormatTheViewerOpensLoadsIntoASegment) {
    RegisterSceneInputHandlers();
    HIOManager* manager = HDB::GetHIOManager();
    for (const char* extension : {"ifc", "IFC", "stl", "ply", "obj", "gltf", "glb", "fbx", "dae"})
        EXPECT_TRUE(dynamic_cast<SceneInputHandler*>(manager->GetInputHandler(extension)))
            << extension;
    EXPECT_TRUE(dynamic_cast<HIOUtilityMetafile*>(manager->GetInputHandler("hmf")));

    const HC_KEY mesh = HC_Create_Segment("/mesh");
    EXPECT_EQ(manager->Read(OBSIDRA_TEST_DATA "/Spider_binary.stl", mesh),
              HFileInputResult::Success);
    EXPECT_EQ(Faces(mesh), 1368u);
    const HC_KEY building = HC_Create_Segment("/building");
    EXPECT_EQ(manager->Read(OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc", building),
              HFileInputResult::Success);
    EXPECT_GT(Faces(building), 0u);
    EXPECT_EQ(manager->Read(OBSIDRA_TEST_DATA "/tiny_unknown_entities.ifc.missing", mesh),
              HFileInputResult::NoHandler);
    EXPECT_TRUE(Errors().empty());
}

TEST_F(SceneInputHandlerTest, AnIfcBuildingIsReadApartAndWrittenWithItsComponents) {
    SceneReadResult read = ReadSceneFile(OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc");
    ASSERT_TRUE(read.scene) << read.error;
    EXPECT_TRUE(List("/", "segments").empty()) << "reading wrote into the scene";
    const HC_KEY segment = HC_Create_Segment("/house");
    std::string error;
    ASSERT_TRUE(read.scene->Write(segment, error)) << error;
    const std::optional<ifc::IfcBuilding> building = read.scene->TakeBuilding();
    ASSERT_TRUE(building);
    EXPECT_EQ(building->Segment(), segment);
    EXPECT_EQ(building->Schema(), "IFC4");
    EXPECT_FALSE(building->Components().empty());
}

TEST_F(SceneInputHandlerTest, UnreadableFilesSayWhy) {
    const struct {
        const char* path;
        const char* error;
    } cases[] = {
        {OBSIDRA_TEST_DATA "/missing.hmf", "cannot read"},
        {OBSIDRA_TEST_DATA "/missing.ifc", "No such file"},
        {OBSIDRA_TEST_DATA "/Spider_binary.stl/x.ifc", "cannot open"},
        {OBSIDRA_TEST_DATA, "it is a directory"},
    };
    for (const auto& bad : cases) {
        const SceneReadResult read = ReadSceneFile(bad.path);
        EXPECT_FALSE(read.scene) << bad.path;
        EXPECT_NE(read.error.find(bad.error), std::string::npos) << read.error;
    }
}

} // namespace
} // namespace obsidra::host::viewer
