// Meshed products as bytes through a pipe, so that a worker process can hand its share of a
// building to the importing process.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/ifc/ifc_model.h"

namespace obsidra::host::ifc {

// A frame for one chunk: its number, then each product's placement and mesh parts in the
// chunk's order, then the warnings its meshing gave.
void EncodeMeshed(const ModelData& data, int chunk, const std::vector<int>& products,
                  const std::vector<std::string>& warnings, std::string& frame);

// Reads a frame into the products of its chunk (of chunks); chunk names it. False, with data
// untouched, when the frame does not fit the chunks.
bool DecodeMeshed(std::string_view frame, const std::vector<std::vector<int>>& chunks,
                  ModelData& data, int& chunk, std::vector<std::string>& warnings);

// A frame preceded by its size. False when the pipe is broken.
bool WriteFrame(int fd, const std::string& frame);
// False at the end of the stream or on a broken one.
bool ReadFrame(int fd, std::string& frame);

} // namespace obsidra::host::ifc
