#include "host/viewer/scene_input_handler.h"

#include <iostream>

#include "host/mesh/mesh_reader.h"
#include "host/viewer/scene_reader.h"
#include "mvo/hdb.h"

namespace obsidra::host::viewer {

bool SceneInputHandler::FileInputByKey(const char* filename, HC_KEY segment, const char*) {
    SceneReadResult read = ReadSceneFile(filename);
    std::string error = std::move(read.error);
    if (read.scene) {
        for (const std::string& warning : read.scene->Warnings())
            std::cerr << "warning: " << warning << "\n";
        if (read.scene->Write(segment, error)) return true;
    }
    std::cerr << error << "\n";
    return false;
}

void RegisterSceneInputHandlers() {
    auto handler = std::make_shared<SceneInputHandler>();
    HIOManager* manager = HDB::GetHIOManager();
    manager->RegisterInputHandler("ifc", handler);
    for (const std::string& extension : mesh::MeshExtensions())
        if (extension != "ifc") manager->RegisterInputHandler(extension, handler);
}

} // namespace obsidra::host::viewer
