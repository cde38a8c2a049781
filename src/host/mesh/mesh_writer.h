// Puts a mesh file read into memory into the scene database: on the database's thread.
#pragma once

#include <obsidra/hc.h>

#include "host/mesh/mesh_reader.h"
#include "host/mesh/mesh_scene.h"

namespace obsidra::host::mesh {

// The file's root node goes onto the segment itself (its modelling matrix, its colour), every
// other node into a subsegment named after it (made unique among its siblings), each mesh of a
// node as a shell. A node's colour is the one most of its shells have; a shell of another
// colour carries its own. The reader has checked everything, so nothing here can fail; the
// progress is told, but a write is not cancelled half-way.
void WriteMeshScene(const MeshScene& scene, HC_KEY segment, const MeshProgress& progress = {});

// A node name as a segment name: any character but "/", and not a name that paths read
// otherwise ("", ".", "..", "@...").
std::string SegmentNameOf(std::string_view nodeName);

} // namespace obsidra::host::mesh
