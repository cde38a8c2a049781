// Opening a scene file in two steps, because the scene database belongs to one thread: the
// file is read, parsed and meshed into memory on any thread, then written into the database
// on the database's own. A metafile, which the database parses itself, is only checked by the
// first step and read by the second.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <obsidra/hc.h>

#include "host/ifc/ifc_building.h"

namespace obsidra::host::viewer {

// A file read into memory, not yet in the scene.
class PendingScene {
public:
    virtual ~PendingScene() = default;

    // Writes the scene into the segment, which holds nothing yet. False with the reason (the
    // segment then holds what it held) when the database cannot take it.
    virtual bool Write(HC_KEY segment, std::string& error) = 0;
    // The building, for an IFC file that has been written; empty for other files.
    virtual std::optional<ifc::IfcBuilding> TakeBuilding() { return std::nullopt; }

    // Told while reading: faces the file states that were lost, products that failed to mesh.
    const std::vector<std::string>& Warnings() const { return m_warnings; }

protected:
    std::vector<std::string> m_warnings;
};

struct SceneReadResult {
    std::unique_ptr<PendingScene> scene; // empty when the file cannot be read, or on cancel
    std::string error;                   // names the file and what was wrong
    bool cancelled = false;
};

// Told the fraction done (0 to 1); returns false to cancel.
using ReadProgress = std::function<bool(double fraction)>;

// Geometry read before the whole file is: shown while the rest is read, then thrown away,
// since the file's own scene takes its place or the load fails.
class PreviewPart {
public:
    virtual ~PreviewPart() = default;
    // Into segment, a scratch segment of the window's, on the database's thread.
    virtual void Write(HC_KEY segment) = 0;
};

// Told, on the reading thread, of each part as it is ready.
using ReadPreview = std::function<void(std::unique_ptr<PreviewPart> part)>;

// Reads a metafile (.hmf), an IFC building (.ifc) or any mesh format assimp knows, by the
// file name's extension. Touches no scene: safe on any thread. Only a building gives
// previews, storey by storey as its products are meshed. upright turns a mesh whose format has
// +Y up so that it stands on the view's +Z (by its segment's matrix: for a new segment only).
SceneReadResult ReadSceneFile(const std::string& path, const ReadProgress& progress = {},
                              const ReadPreview& preview = {}, bool upright = false);

// An IFC building parsed and meshed, to be written as ImportIfcFile would write it.
SceneReadResult ReadIfcFile(const std::string& path, const ReadProgress& progress,
                            const ReadPreview& preview = {});

// Every extension ReadSceneFile reads, lower case, without the dot.
std::vector<std::string> SceneFileExtensions();

} // namespace obsidra::host::viewer
