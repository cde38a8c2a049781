#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include <obsidra/hc.h>

#include "hc/hc_test.h"
#include "host/mesh/mesh_importer.h"
#include "mvo/model_info.h"

namespace obsidra::host::mesh {
namespace {

namespace fs = std::filesystem;

// Two triangles and a line; the header counts the line among its faces.
constexpr const char* kPlyWithALine = "ply\nformat ascii 1.0\nelement vertex 4\n"
                                      "property float x\nproperty float y\nproperty float z\n"
                                      "element face 3\nproperty list uchar int vertex_indices\n"
                                      "end_header\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n"
                                      "3 0 1 2\n3 0 2 3\n2 0 1\n";

class MeshImportTest : public HcTest {
protected:
    void SetUp() override {
        HcTest::SetUp();
        m_dir = fs::temp_directory_path() / ("obsidra_mesh_test_" + std::to_string(::getpid()));
        fs::create_directories(m_dir);
        m_segment = HC_Create_Segment("/model/mesh");
    }
    void TearDown() override {
        EXPECT_TRUE(Errors().empty()) << Errors().front();
        fs::remove_all(m_dir);
        HcTest::TearDown();
    }

    std::string Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(m_dir / name, std::ios::binary) << bytes;
        return (m_dir / name).string();
    }
    HModelInfo Census() const {
        HModelInfo info;
        info.ComputeModelInfo(m_segment, 0);
        return info;
    }
    static std::string Colour(HC_KEY key) {
        char colour[HC_TEXT_MAX] = "";
        if (Type(key) == "segment") {
            HC_Open_Segment_By_Key(key);
        } else {
            HC_Open_Geometry(key);
        }
        if (HC_Show_Existence("color")) HC_Show_Color(colour);
        if (Type(key) == "segment") {
            HC_Close_Segment();
        } else {
            HC_Close_Geometry();
        }
        return colour;
    }

    fs::path m_dir;
    HC_KEY m_segment = 0;
};

TEST_F(MeshImportTest, SamplesKeepEveryFace) {
    const struct {
        const char* file;
        std::size_t faces;
        std::size_t shells;
    } samples[] = {
        {"Spider_binary.stl", 1368, 1},       {"Wuson.ply", 3732, 1},
        {"stanford-bunny.obj", 69451, 1},     {"BoxTextured_embedded.gltf", 12, 1},
        {"2CylinderEngine.glb", 121496, 115}, {"ClearCoatTest/ClearCoatTest.gltf", 37116, 27},
    };
    for (const auto& sample : samples) {
        SCOPED_TRACE(sample.file);
        HC_Flush_Contents("/model/mesh", "everything");
        const MeshImportResult result =
            ImportMeshFile(std::string(OBSIDRA_MESH_SAMPLES "/") + sample.file, m_segment);
        ASSERT_TRUE(result.imported) << result.error;
        EXPECT_TRUE(result.warnings.empty()) << result.warnings.front();
        const HModelInfo census = Census();
        EXPECT_EQ(census.GetTotalFaces(), sample.faces);
        EXPECT_EQ(census.GetTotalShell(), sample.shells);
        EXPECT_LT(census.GetTotalVertices(), 3 * sample.faces) << "faces share no vertex";
        EXPECT_EQ(result.faces, sample.faces);
    }
}

TEST_F(MeshImportTest, NodesBecomeSegmentsWithMatricesOrAreFlattened) {
    const std::string engine = OBSIDRA_MESH_SAMPLES "/2CylinderEngine.glb";
    ASSERT_TRUE(ImportMeshFile(engine, m_segment).imported);
    const auto segments = List("/model/mesh/...", "segments");
    EXPECT_GT(segments.size(), 50u);
    int matrices = 0;
    for (const auto& [type, key] : segments) {
        HC_Open_Segment_By_Key(key);
        matrices += HC_Show_Existence("modelling matrix") ? 1 : 0;
        HC_Close_Segment();
    }
    EXPECT_GT(matrices, 0);

    HC_KEY flat = HC_Create_Segment("/model/flat");
    MeshReadOptions options;
    options.flatten = true;
    ASSERT_TRUE(ImportMeshFile(engine, flat, options).imported);
    EXPECT_TRUE(List("/model/flat", "segments").empty());
    HModelInfo census;
    census.ComputeModelInfo(flat, 0);
    EXPECT_EQ(census.GetTotalFaces(), Census().GetTotalFaces());
}

TEST_F(MeshImportTest, AYUpFormatIsTurnedZUpWhenAskedAndStlIsLeft) {
    MeshReadOptions zUp;
    zUp.zUp = true;
    const std::string obj = Write("up.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const std::string stl =
        Write("up.stl", "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\n"
                        "vertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n"
                        "endsolid t\n");
    for (const auto& [path, turned] : {std::pair{obj, true}, std::pair{stl, false}}) {
        SCOPED_TRACE(path);
        const HC_KEY segment =
            HC_Create_Segment(("/model/" + fs::path(path).extension().string().substr(1)).c_str());
        ASSERT_TRUE(ImportMeshFile(path, segment, zUp).imported);
        HC_Open_Segment_By_Key(segment);
        float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        if (HC_Show_Existence("modelling matrix")) HC_Show_Modelling_Matrix(m);
        HC_Close_Segment();
        // Where the file's +Y goes: the matrix's second row.
        EXPECT_EQ((std::vector<float>{m[4], m[5], m[6]}),
                  (turned ? std::vector<float>{0, 0, 1} : std::vector<float>{0, 1, 0}));
    }
}

TEST_F(MeshImportTest, MaterialColoursGoOnTheSegmentOrTheOddShell) {
    Write("two.mtl", "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\n");
    const std::string obj = Write("two.obj", "mtllib two.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\n"
                                             "v 0 1 0\no part\nusemtl red\nf 1 2 3\nf 1 3 4\n"
                                             "usemtl blue\nf 1 2 4\n");
    ASSERT_TRUE(ImportMeshFile(obj, m_segment).imported);
    std::vector<std::string> colours;
    for (const auto& [type, key] : List("/model/mesh/...", "segments, shells"))
        colours.push_back(type + " " + Colour(key));
    EXPECT_EQ(colours,
              (std::vector<std::string>{"segment faces=(r=1.000 g=0.000 b=0.000)", "shell ",
                                        "shell faces=(r=0.000 g=0.000 b=1.000)"}));
}

// A square of two triangles, with a blank line among its faces.
constexpr const char* kOffSquare = "OFF\n4 2 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n\n3 0 2 3\n";

TEST_F(MeshImportTest, OffFilesAreCheckedBeforeAssimpReadsThem) {
    for (const std::string& off :
         {std::string(kOffSquare), "# square\nOFF 4 2 0\n" + std::string(kOffSquare + 10)}) {
        HC_Flush_Contents("/model/mesh", "everything");
        const MeshImportResult result = ImportMeshFile(Write("square.off", off), m_segment);
        ASSERT_TRUE(result.imported) << result.error;
        EXPECT_EQ(result.faces, 2u);
    }
}

// Four corners and two triangles, the second with a corner that is not there: assimp drops it.
constexpr const char* kGltfWithABadCorner =
    R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],)"
    R"("meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1}]}],)"
    R"("buffers":[{"byteLength":60,"uri":"data:application/octet-stream;base64,)"
    R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAACAPwAAgD8AAAAAAAAAAAAAgD8AAAAAAAABAAIAAAACAAkA"}],)"
    R"("bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":48},)"
    R"({"buffer":0,"byteOffset":48,"byteLength":12}],)"
    R"("accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3",)"
    R"("max":[1,1,0],"min":[0,0,0]},)"
    R"({"bufferView":1,"componentType":5123,"count":6,"type":"SCALAR"}]})";

// The same as a binary glTF: a 12-byte header, the JSON chunk and the buffer as a BIN chunk.
std::string CornerGlb() {
    std::string json = kGltfWithABadCorner;
    const std::size_t uri = json.find(R"(,"uri")");
    json.erase(uri, json.find('}', uri) - uri);
    json.resize((json.size() + 3) / 4 * 4, ' ');
    const float corners[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    const std::uint16_t indices[] = {0, 1, 2, 0, 2, 9};
    const std::string bin = std::string(reinterpret_cast<const char*>(corners), sizeof corners) +
                            std::string(reinterpret_cast<const char*>(indices), sizeof indices);
    const auto word = [](std::size_t value) {
        const auto little = static_cast<std::uint32_t>(value); // the x86 order glTF has
        return std::string(reinterpret_cast<const char*>(&little), 4);
    };
    return "glTF" + word(2) + word(28 + json.size() + bin.size()) + word(json.size()) + "JSON" +
           json + word(bin.size()) + std::string("BIN\0", 4) + bin;
}

TEST_F(MeshImportTest, LostFacesAreTold) {
    const struct {
        const char* name;
        std::string bytes;
        std::size_t faces;
        const char* warning;
    } cases[] = {
        {"line.ply", kPlyWithALine, 2, "1 of the 3 faces its header states were lost"},
        {"corner.gltf", kGltfWithABadCorner, 1, "1 of the 2 faces its JSON states were lost"},
        {"corner.glb", CornerGlb(), 1, "1 of the 2 faces its JSON states were lost"},
    };
    for (const auto& lossy : cases) {
        SCOPED_TRACE(lossy.name);
        HC_Flush_Contents("/model/mesh", "everything");
        const MeshImportResult result = ImportMeshFile(Write(lossy.name, lossy.bytes), m_segment);
        ASSERT_TRUE(result.imported) << result.error;
        EXPECT_EQ(result.faces, lossy.faces);
        ASSERT_FALSE(result.warnings.empty());
        EXPECT_NE(result.warnings.back().find(lossy.warning), std::string::npos)
            << result.warnings.back();
    }
}

TEST_F(MeshImportTest, BadFilesLeaveTheSceneAsItWas) {
    HC_Open_Segment_By_Key(m_segment);
    Triangle();
    HC_Close_Segment();
    std::string spider;
    {
        std::ifstream in(OBSIDRA_TEST_DATA "/Spider_binary.stl", std::ios::binary);
        spider.assign(std::istreambuf_iterator<char>(in), {});
    }
    fs::create_directories(m_dir / "folder.obj");
    const struct {
        std::string path;
        const char* error;
    } cases[] = {
        {Write("empty.stl", ""), "the file is empty"},
        {Write("cut.stl", spider.substr(0, 2000)), "STL"},
        {Write("garbage.ply", "hello\n"), "ply"},
        // A property type assimp 5.2 does not know made its reader loop forever (found by
        // tests/fuzz/mesh_fuzzer.cpp).
        {Write("mangled.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                              "property flmd5 x\nelement face 1\nend_header\n"),
         "line 5: a property of no known type"},
        {Write("endless.ply", "ply\nformat ascii 1.0\nelement vertex 3\n"), "no end_header"},
        // assimp's reader passes over a face line without a corner count, then crashes on what
        // follows (tests/fuzz/findings/assimp_off_crash.bin).
        {Write("skipped.off", std::string(kOffSquare, 42) + "v\n ],\n "),
         "line 8: a face without a corner count from 1 to 9"},
        {Write("corner.off", std::string(kOffSquare, 42) + "3 0 2 4\n"),
         "line 8: a face corner that is not one of the vertices"},
        {Write("flat.off", "OFF\n1 0 0\n0 0\n"), "line 3: a vertex without three coordinates"},
        // Content no glTF reader takes goes to whichever reader takes it, unchecked
        // (tests/fuzz/findings/assimp_off_crash_as_glb.bin).
        {Write("off.glb", kOffSquare), "the file is not what its extension .glb says"},
        {Write("comment.off", std::string(kOffSquare, 42) + "# a\n3 0 2 3\n"), "line 8: a face"},
        {Write("notes.txt", "v 0 0 0\n"), ".txt is not a mesh format this viewer reads"},
        {Write("noextension", "v 0 0 0\n"), "no extension"},
        {Write("solid.stl", "solid x\n"), "holds no faces"},
        {(m_dir / "folder.obj").string(), "it is a directory"},
        {(m_dir / "missing.obj").string(), "No such file"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.path);
        const MeshImportResult result = ImportMeshFile(bad.path, m_segment);
        EXPECT_FALSE(result.imported);
        EXPECT_NE(result.error.find(bad.path), std::string::npos) << result.error;
        EXPECT_NE(result.error.find(bad.error), std::string::npos) << result.error;
        EXPECT_EQ(Types("/model/mesh", "everything"), std::vector<std::string>{"shell"});
    }
}

TEST_F(MeshImportTest, CancelLeavesTheSceneAsItWas) {
    MeshReadOptions options;
    double last = 0;
    options.progress = [&](double done) {
        EXPECT_GE(done, last);
        last = done;
        return done < 0.5;
    };
    const MeshImportResult result =
        ImportMeshFile(OBSIDRA_MESH_SAMPLES "/stanford-bunny.obj", m_segment, options);
    EXPECT_TRUE(result.cancelled);
    EXPECT_FALSE(result.imported);
    EXPECT_TRUE(List("/model/mesh", "everything").empty());
}

} // namespace
} // namespace obsidra::host::mesh
