#include "host/viewer/scene_reader.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include <obsidra/hc_fastpath.h>

#include "host/mesh/mesh_reader.h"
#include "host/mesh/mesh_writer.h"

namespace obsidra::host::viewer {

namespace {

std::string LowerExtension(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    if (!extension.empty()) extension.erase(0, 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

// The database parses metafiles itself, and reads one whole or not at all.
class PendingMetafile final : public PendingScene {
public:
    explicit PendingMetafile(std::string path) : m_path(std::move(path)) {}
    bool Write(HC_KEY segment, std::string& error) override {
        char reason[HC_TEXT_MAX] = "";
        if (HC_Fast_Read_Metafile(m_path.c_str(), segment, reason)) return true;
        error = reason;
        return false;
    }

private:
    std::string m_path;
};

class PendingMesh final : public PendingScene {
public:
    explicit PendingMesh(mesh::MeshScene scene) : m_scene(std::move(scene)) {
        m_warnings = std::move(m_scene.warnings);
    }
    bool Write(HC_KEY segment, std::string&) override {
        mesh::WriteMeshScene(m_scene, segment);
        return true;
    }

private:
    mesh::MeshScene m_scene;
};

SceneReadResult ReadMesh(const std::string& path, const ReadProgress& progress, bool upright) {
    mesh::MeshReadOptions options;
    options.progress = progress;
    options.zUp = upright;
    mesh::MeshReadResult read = mesh::ReadMeshFile(path, options);
    SceneReadResult result;
    result.error = std::move(read.error);
    result.cancelled = read.cancelled;
    if (read.scene) result.scene = std::make_unique<PendingMesh>(std::move(*read.scene));
    return result;
}

} // namespace

SceneReadResult ReadSceneFile(const std::string& path, const ReadProgress& progress,
                              const ReadPreview& preview, bool upright) {
    const std::string extension = LowerExtension(path);
    if (extension == "ifc") return ReadIfcFile(path, progress, preview);
    if (extension != "hmf") return ReadMesh(path, progress, upright);
    SceneReadResult result;
    std::error_code code;
    if (!std::filesystem::is_regular_file(path, code))
        result.error = "cannot read " + path;
    else
        result.scene = std::make_unique<PendingMetafile>(path);
    return result;
}

std::vector<std::string> SceneFileExtensions() {
    std::vector<std::string> extensions = mesh::MeshExtensions();
    for (const char* own : {"hmf", "ifc"})
        if (std::find(extensions.begin(), extensions.end(), own) == extensions.end())
            extensions.push_back(own);
    std::sort(extensions.begin(), extensions.end());
    return extensions;
}

} // namespace obsidra::host::viewer
