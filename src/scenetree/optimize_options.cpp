#include "scenetree/optimize_options.h"

namespace obsidra::scenetree {

std::string ComposeOptimizeOptions(const OptimizeOptions& o) {
    std::string text;
    if (o.includes == 1) text += "process includes,";
    if (o.includes == 2) text += "expand includes,";
    if (o.collapseMatrices) text += "collapse matrices,";
    if (o.localizeMatrices) text += "localize matrices,";
    if (o.removeDuplicate) text += "remove duplicate shells,";
    if (o.extractAttributes) text += "extract geometry attributes,";
    if (o.generateMapping) text += "generate mapping,";
    static const char* const kNames[] = {"",
                                         "=discard,",
                                         "=record,",
                                         "=(discard,record),",
                                         "=sequence,",
                                         "=(discard,sequence),",
                                         "=(record,sequence),",
                                         "=(discard,record,sequence),"};
    const int names =
        (o.namesDiscard ? 1 : 0) | (o.namesRecord ? 2 : 0) | (o.namesSequence ? 4 : 0);
    if (names) text += std::string("segment names") + kNames[names];
    if (o.shells == 1) text += "merge shells,";
    if (o.shells == 2) text += "instance shells,";
    if (o.userData == 1) text += "discard user data,";
    if (o.userData == 2) {
        static const char* const kUserData[] = {",", "=merge,", "=localize,", "=(merge,localize),"};
        text += std::string("preserve user data") +
                kUserData[(o.userDataMerge ? 1 : 0) | (o.userDataLocalize ? 2 : 0)];
    }
    // "Attributes only" is the bare word: the asymmetry is the dialog's own.
    if (o.reorganize == 1) text += "reorganize=(attributes,spatial)";
    if (o.reorganize == 2) text += "reorganize";
    if (o.reorganize == 3) text += "reorganize=spatial";
    if (!text.empty() && text.back() == ',') text.pop_back();
    return text;
}

} // namespace obsidra::scenetree
