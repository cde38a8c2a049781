// The faces below a segment, as the model's census counts them.
#pragma once

#include <cstdint>

#include <obsidra/hc.h>

#include "mvo/model_info.h"

namespace obsidra::host::viewer {

inline std::uint32_t Faces(HC_KEY segment) {
    HModelInfo info;
    info.ComputeModelInfo(segment, 0);
    return info.GetTotalFaces();
}

} // namespace obsidra::host::viewer
