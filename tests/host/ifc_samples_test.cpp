// Every sample building in ../shared/samples/ifc imports, and every product that IFC++'s own
// converter meshes is a component with geometry. Skipped where the samples are not at hand.
#include <filesystem>
#include <fstream>
#include <ifcpp/IFC4/include/IfcGloballyUniqueId.h>
#include <ifcpp/IFC4/include/IfcProduct.h>
#include <ifcpp/geometry/Carve/GeometryConverter.h>
#include <ifcpp/model/BuildingModel.h>
#include <ifcpp/reader/ReaderSTEP.h>
#include <set>
#include <sstream>

#include "host/ifc/ifc_text.h"
#include "ifc_test.h"

namespace obsidra::host::ifc::testing {
namespace {

namespace fs = std::filesystem;

// The GlobalIds of the products that IFC++ gives at least one face, by itself.
std::multiset<std::string> MeshedByIfcPlusPlus(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    std::string content = std::move(text).str();
    auto model = std::make_shared<BuildingModel>();
    ReaderSTEP reader;
    reader.loadModelFromString(content, model);
    GeometryConverter converter(model);
    converter.convertGeometry();
    model->setMessageTarget(nullptr);
    std::multiset<std::string> meshed;
    for (const auto& [id, shape] : converter.getShapeInputData()) {
        const auto product =
            dynamic_pointer_cast<IfcProduct>(shape->m_ifc_object_definition.lock());
        if (!product) continue;
        bool faces = false;
        for (const auto& representation : shape->m_vec_representations)
            for (const auto& item : representation->m_vec_item_data)
                for (const auto* sets : {&item->m_meshsets, &item->m_meshsets_open})
                    for (const auto& set : *sets)
                        for (const auto* mesh : set->meshes)
                            faces = faces || !mesh->faces.empty();
        if (faces) meshed.insert(ToUtf8(product->m_GlobalId->m_value));
    }
    return meshed;
}

class IfcSamplesTest : public IfcTest {};

TEST_F(IfcSamplesTest, EverySampleImportsWithEveryMeshedProductAsAComponent) {
    const fs::path dir = OBSIDRA_IFC_SAMPLES;
    if (!fs::is_directory(dir)) GTEST_SKIP() << "no samples in " << dir;
    // Storeys as the samples' README counts them.
    const std::pair<const char*, std::size_t> samples[] = {
        {"IfcOpenHouse_IFC4.ifc", 1},
        {"AC20-FZK-Haus.ifc", 2},
        {"EnEff_BoilerGasRadiatorDHW_IFC4.ifc", 1},
        {"Duplex_A_IFC2x3.ifc", 4},
        {"Office_A_20110811.ifc", 3},
        {"Tekla_Carwash_MiniProject_IFC2x3.ifc", 1},
    };
    for (const auto& [name, storeys] : samples) {
        SCOPED_TRACE(name);
        const fs::path path = dir / name;
        if (!fs::exists(path)) continue;
        HC_Reset_System();
        const ImportResult result = ImportIfcFile(path.string());
        ASSERT_TRUE(result.building) << result.error;
        const IfcBuilding& building = *result.building;
        EXPECT_EQ(building.Project().floors.size(), storeys);
        std::multiset<std::string> withGeometry;
        for (const IfcComponent& c : building.Components())
            if (!c.shells.empty()) withGeometry.insert(c.globalId);
        const std::multiset<std::string> meshed = MeshedByIfcPlusPlus(path);
        for (const std::string& globalId : meshed)
            EXPECT_EQ(withGeometry.count(globalId), meshed.count(globalId)) << globalId;
        EXPECT_EQ(withGeometry.size(), meshed.size());
    }
}

} // namespace
} // namespace obsidra::host::ifc::testing
