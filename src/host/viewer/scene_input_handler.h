// "Load Into Segment" for every format the viewer opens: the same readers, written at once.
#pragma once

#include "mvo/io_manager.h"

namespace obsidra::host::viewer {

// Reads any file ReadSceneFile reads into the segment; the reason for a failure and the
// warnings go to stderr. An IFC building brings its scene, not its component data.
class SceneInputHandler final : public HInputHandler {
public:
    bool FileInputByKey(const char* filename, HC_KEY segment, const char* options) override;
};

// Registers one SceneInputHandler with the process's registry for "ifc" and every extension
// assimp reads. The metafile reader stays as it is.
void RegisterSceneInputHandlers();

} // namespace obsidra::host::viewer
