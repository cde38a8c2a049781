#pragma once

#include "mvo/io_manager.h"

// The process-wide services of the view side: for now the registry of input handlers.
class HDB {
public:
    // The one input-handler registry of the process; made with the metafile reader registered.
    static HIOManager* GetHIOManager();
};
