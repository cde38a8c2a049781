#pragma once

#include <string>

namespace obsidra::scenetree {

// The values of the "Optimize Segment" dialog, with its defaults: radio groups hold the index of
// the chosen button, check boxes 0 or 1.
struct OptimizeOptions {
    int includes = 1; // "Do Nothing", "Process Includes", "Expand Includes"
    int collapseMatrices = 0;
    int localizeMatrices = 1;
    int removeDuplicate = 0;
    int extractAttributes = 0;
    int generateMapping = 0;
    int shells = 0;   // "Do Nothing", "Merge", "Instance"
    int userData = 2; // "Do Nothing", "Discard", "Preserve"
    int userDataMerge = 1;
    int userDataLocalize = 1;
    int namesDiscard = 0;
    int namesRecord = 0;
    int namesSequence = 0;
    // "Do Nothing", "Attributes and Spatial", "Attributes only", "Spatial only"
    int reorganize = 2;
};

// The option string of HC_Optimize_Segment_Tree for the dialog's values, its pieces in a fixed
// order; the defaults give "process includes,localize matrices,preserve user
// data=(merge,localize),reorganize".
std::string ComposeOptimizeOptions(const OptimizeOptions& options);

} // namespace obsidra::scenetree
