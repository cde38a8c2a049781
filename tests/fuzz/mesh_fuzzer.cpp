// Any bytes through the mesh importer, as a file of one of the formats assimp reads (the first
// byte picks which): it reads or is refused with a message, and what it reads writes into a
// sound scene; what the file states of itself is read too. assimp's own faults are assimp's; this
// is about what we do with its answers and what we read ourselves.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include <obsidra/hc.h>
#include <obsidra/hc_check.h>

#include "host/mesh/mesh_reader.h"
#include "host/mesh/mesh_writer.h"
#include "host/mesh/stated_faces.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const char* const kExtensions[] = {"stl", "ply", "obj", "off", "gltf", "glb"};
    static const bool quiet = [] {
        HC_Define_Error_Handler([](const char*, const char*) {});
        return true;
    }();
    (void)quiet;
    if (size == 0) return 0;
    const std::string path = "/tmp/obsidra_mesh_fuzz_" + std::to_string(getpid()) + "." +
                             kExtensions[data[0] % std::size(kExtensions)];
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data + 1), static_cast<std::streamsize>(size - 1));
    (void)obsidra::host::mesh::ReadStatedFaces(path);
    const auto result = obsidra::host::mesh::ReadMeshFile(path);
    std::remove(path.c_str());
    if (!result.scene == result.error.empty()) std::abort(); // a scene or a reason, never both
    if (!result.scene) return 0;
    HC_Reset_System();
    const HC_KEY segment = HC_Create_Segment("/fuzz");
    obsidra::host::mesh::WriteMeshScene(*result.scene, segment);
    if (HC_Check_Database(nullptr, 0) != 0) std::abort();
    return 0;
}
