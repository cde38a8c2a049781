#include <gtest/gtest.h>

#include <obsidra/hc.h>

#include "scenetree/optimize_options.h"

using obsidra::scenetree::ComposeOptimizeOptions;
using obsidra::scenetree::OptimizeOptions;

namespace {

OptimizeOptions Nothing() {
    OptimizeOptions o;
    o.includes = o.localizeMatrices = o.userData = o.reorganize = 0;
    return o;
}

TEST(OptimizeOptions, ComposedInTheDialogsOrder) {
    struct Row {
        const char* name;
        OptimizeOptions options;
        const char* expected;
    };
    auto with = [](auto change) {
        OptimizeOptions o = Nothing();
        change(o);
        return o;
    };
    const Row kRows[] = {
        {"defaults",
         {},
         "process includes,localize matrices,preserve user data=(merge,localize),reorganize"},
        {"all do nothing", Nothing(), ""},
        {"only sequence", with([](auto& o) { o.namesSequence = 1; }), "segment names=sequence"},
        {"preserve with both clear, alone",
         with([](auto& o) { o.userData = 2, o.userDataMerge = o.userDataLocalize = 0; }),
         "preserve user data"},
        {"preserve with both clear, then reorganize", with([](auto& o) {
             o.userData = 2, o.userDataMerge = o.userDataLocalize = 0, o.reorganize = 3;
         }),
         "preserve user data,reorganize=spatial"},
        {"discard ignores merge and localize", with([](auto& o) { o.userData = 1; }),
         "discard user data"},
        {"preserve merge only", with([](auto& o) { o.userData = 2, o.userDataLocalize = 0; }),
         "preserve user data=merge"},
        {"every box, expand, instance, attributes and spatial", with([](auto& o) {
             o.includes = 2, o.collapseMatrices = o.localizeMatrices = o.removeDuplicate = 1;
             o.extractAttributes = o.generateMapping = 1, o.shells = 2, o.reorganize = 1;
             o.namesDiscard = o.namesRecord = o.namesSequence = 1;
         }),
         "expand includes,collapse matrices,localize matrices,remove duplicate shells,extract "
         "geometry attributes,generate mapping,segment names=(discard,record,sequence),instance "
         "shells,reorganize=(attributes,spatial)"},
        {"discard and record, merge",
         with([](auto& o) { o.namesDiscard = o.namesRecord = 1, o.shells = 1; }),
         "segment names=(discard,record),merge shells"},
        {"record and sequence", with([](auto& o) { o.namesRecord = o.namesSequence = 1; }),
         "segment names=(record,sequence)"},
        {"discard and sequence", with([](auto& o) { o.namesDiscard = o.namesSequence = 1; }),
         "segment names=(discard,sequence)"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const std::string text = ComposeOptimizeOptions(row.options);
        EXPECT_EQ(text, row.expected);
        // Every string the dialog makes is one the database takes.
        static int reports;
        reports = 0;
        HC_Define_Error_Handler([](const char*, const char*) { ++reports; });
        HC_Optimize_Segment_Tree("/", text.c_str());
        HC_Define_Error_Handler(nullptr);
        EXPECT_EQ(reports, 0);
    }
}

} // namespace
