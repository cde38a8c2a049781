// Builds the component viewer's project data of an imported model.
#pragma once

#include <string>
#include <vector>

#include "host/ifc/ifc_building.h"
#include "host/ifc/ifc_layout.h"
#include "host/ifc/ifc_model.h"
#include "host/ifc/ifc_scene_writer.h"

namespace obsidra::host::ifc {

// The flag bit of a display style that says its colour is set.
inline constexpr std::uint16_t kStyleColourSet = 0x0010;
// The kind of the parts that hold an element's IFC attributes and property sets: the kind
// the viewer shows.
inline constexpr std::uint32_t kPropertyPartKind = kShownPartKind;

// fallbackName names the project when the file does not.
IfcBuilding BuildProject(const ModelData& data, const FloorPlan& plan,
                         const std::vector<Classification>& classes, const SceneKeys& keys,
                         const std::string& fallbackName);

} // namespace obsidra::host::ifc
