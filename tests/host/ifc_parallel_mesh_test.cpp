// Meshing on several processes gives the building that one process gives, product by product
// as it goes, and a cancel leaves no process behind.
#include <cerrno>
#include <filesystem>
#include <set>
#include <sys/wait.h>

#include "host/ifc/ifc_mesh_plan.h"
#include "host/ifc/ifc_mesh_stream.h"
#include "host/ifc/ifc_model.h"
#include "ifc_test.h"

namespace obsidra::host::ifc::testing {
namespace {

namespace fs = std::filesystem;

std::size_t Triangles(const ProductData& p) {
    std::size_t triangles = 0;
    for (const MeshPart& part : p.meshes)
        for (std::size_t at = 0; at < part.faces.size(); at += part.faces[at] + 1)
            triangles += part.faces[at] - 2;
    return triangles;
}

bool NoChildLeft() {
    return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
}

TEST(IfcParallelMeshTest, WorkersGiveTheBuildingOneProcessGivesAndShowItAsTheyGo) {
    // Openings cut from the parts of windows (the house), many chunks (the duplex).
    std::vector<std::string> paths = {HousePath()};
    const fs::path duplex = fs::path(OBSIDRA_IFC_SAMPLES) / "Duplex_A_IFC2x3.ifc";
    if (fs::exists(duplex)) paths.push_back(duplex.string());
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        const PreparedIfc single = PrepareIfcFile(path, {}, {1, {}});
        std::vector<int> told;
        int batches = 0;
        MeshOptions parallel{3, [&](const ModelData& model, const std::vector<int>& products) {
                                 ++batches;
                                 for (int index : products) {
                                     told.push_back(index);
                                     // Whatever is told has its meshes already.
                                     EXPECT_LT(index, static_cast<int>(model.products.size()));
                                 }
                             }};
        const PreparedIfc forked = PrepareIfcFile(path, {}, parallel);
        ASSERT_TRUE(single.model && forked.model);
        EXPECT_TRUE(NoChildLeft());
        const auto& a = single.model->products;
        const auto& b = forked.model->products;
        ASSERT_EQ(a.size(), b.size());
        EXPECT_EQ(std::set<int>(told.begin(), told.end()).size(), b.size());
        EXPECT_EQ(told.size(), b.size());
        if (b.size() > 16) {
            EXPECT_GT(batches, 1);
        }
        std::size_t trianglesA = 0, trianglesB = 0;
        for (std::size_t i = 0; i < a.size(); ++i) {
            EXPECT_EQ(a[i].meshes.size(), b[i].meshes.size()) << a[i].globalId;
            EXPECT_EQ(a[i].transform, b[i].transform) << a[i].globalId;
            trianglesA += Triangles(a[i]);
            trianglesB += Triangles(b[i]);
        }
        // Carve's booleans vary by a few triangles from run to run.
        EXPECT_NEAR(double(trianglesB), double(trianglesA), 0.01 * double(trianglesA));
        for (std::size_t s = 0; s < single.model->storeys.size(); ++s)
            EXPECT_EQ(single.model->storeys[s].elevation, forked.model->storeys[s].elevation);
    }
}

TEST(IfcParallelMeshTest, CancelWhileMeshingEndsEveryWorker) {
    const PreparedIfc prepared = PrepareIfcFile(
        HousePath(), [](ImportPhase phase, double) { return phase != ImportPhase::Meshing; },
        {4, {}});
    EXPECT_FALSE(prepared.model);
    EXPECT_TRUE(prepared.failure.cancelled);
    EXPECT_TRUE(NoChildLeft());
}

TEST(IfcParallelMeshTest, ChunksKeepWholesWithTheirPartsAndGoUpTheStoreys) {
    ModelData data;
    data.storeys = {{1, "", "upper", 3.0, true}, {2, "", "ground", 0.0, true}};
    // 0 upper; 1 outside every storey; 2 ground, the whole of 3 and 4; 3 holds part 4 by way
    // of 2; 5 ground.
    for (int storey : {0, -1, 1, 1, 1, 1}) {
        ProductData p;
        p.storey = storey;
        data.products.push_back(p);
    }
    data.products[3].whole = 2;
    data.products[4].whole = 3;
    const std::vector<std::vector<int>> chunks = PlanMeshChunks(data, 2);
    EXPECT_EQ(chunks, (std::vector<std::vector<int>>{{2, 3, 4}, {5, 0}, {1}}));
}

TEST(IfcParallelMeshTest, FramesCarryMeshesAndRefuseWhatDoesNotFit) {
    ModelData from;
    from.products.resize(3);
    from.products[1].transform[12] = 5;
    from.products[1].meshes.push_back(
        {{1, 0, 0, 0.5f}, true, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {3, 0, 1, 2}});
    const std::vector<std::vector<int>> chunks = {{0}, {1, 2}};
    std::string frame;
    EncodeMeshed(from, 1, chunks[1], {"a warning"}, frame);

    ModelData to;
    to.products.resize(3);
    int chunk = -1;
    std::vector<std::string> warnings;
    for (std::size_t cut : {std::size_t(1), frame.size() - 1})
        EXPECT_FALSE(
            DecodeMeshed(std::string_view(frame).substr(0, cut), chunks, to, chunk, warnings));
    EXPECT_FALSE(DecodeMeshed(frame, {{0}}, to, chunk, warnings)); // no chunk 1
    EXPECT_TRUE(to.products[1].meshes.empty());
    ASSERT_TRUE(DecodeMeshed(frame, chunks, to, chunk, warnings));
    EXPECT_EQ(chunk, 1);
    EXPECT_EQ(warnings, std::vector<std::string>{"a warning"});
    EXPECT_EQ(to.products[1].transform, from.products[1].transform);
    ASSERT_EQ(to.products[1].meshes.size(), 1u);
    EXPECT_EQ(to.products[1].meshes[0].faces, from.products[1].meshes[0].faces);
    EXPECT_EQ(to.products[1].meshes[0].colour, from.products[1].meshes[0].colour);
}

} // namespace
} // namespace obsidra::host::ifc::testing
