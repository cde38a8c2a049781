#pragma once

#include "mvo/io_manager.h"

// The process-wide services of the view side: for now the registry of input handlers.
class HDB {
public:
    // The one input-handler registry of the process, shared by every library in it that links
    // this one (a host and the module alike); made with the metafile reader registered by the
    // first that asks.
    static HIOManager* GetHIOManager();
};
