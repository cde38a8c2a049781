// The option string of HC_Optimize_Segment_Tree, the C function, and the order its passes run in.
#include "hc/optimize.h"

#include <array>
#include <string>
#include <vector>

#include "hc/api_support.h"
#include "hc/optimize_passes.h"
#include "hc/session.h"

namespace hc {

namespace {

// A value's words: "merge", "(merge, localize)"; lower case.
std::vector<std::string> ValueWords(std::string_view value) {
    value = Trim(value);
    if (value.size() >= 2 && value.front() == '(' && value.back() == ')')
        value = value.substr(1, value.size() - 2);
    std::vector<std::string> words;
    for (std::string_view item : SplitList(value, ','))
        if (!item.empty()) words.push_back(CollapseBlanks(ToLower(item)));
    return words;
}

struct Flag {
    const char* name;
    bool OptimizeChoices::*field;
};

constexpr std::array kFlags = {
    Flag{"process includes", &OptimizeChoices::processIncludes},
    Flag{"expand includes", &OptimizeChoices::expandIncludes},
    Flag{"collapse matrices", &OptimizeChoices::collapseMatrices},
    Flag{"localize matrices", &OptimizeChoices::localizeMatrices},
    Flag{"remove duplicate shells", &OptimizeChoices::removeDuplicateShells},
    Flag{"extract geometry attributes", &OptimizeChoices::extractAttributes},
    Flag{"generate mapping", &OptimizeChoices::generateMapping},
    Flag{"merge shells", &OptimizeChoices::mergeShells},
    Flag{"instance shells", &OptimizeChoices::instanceShells},
    Flag{"discard user data", &OptimizeChoices::discardUserData},
};

// Options whose value is a set of words; the bare option means its defaults.
struct WordSet {
    const char* name;
    std::array<const char*, 3> words;
    std::array<bool OptimizeChoices::*, 3> fields;
    std::array<bool, 3> defaults;
};

constexpr std::array kWordSets = {
    WordSet{"segment names",
            {"discard", "record", "sequence"},
            {&OptimizeChoices::discardNames, &OptimizeChoices::recordNames,
             &OptimizeChoices::sequenceNames},
            {true, false, false}},
    WordSet{"preserve user data",
            {"merge", "localize", nullptr},
            {&OptimizeChoices::mergeUserData, &OptimizeChoices::localizeUserData, nullptr},
            {false, false, false}},
    WordSet{"reorganize",
            {"attributes", "spatial", nullptr},
            {&OptimizeChoices::reorganizeAttributes, &OptimizeChoices::reorganizeSpatial, nullptr},
            {true, false, false}},
};

bool ApplyOption(const Option& option, OptimizeChoices& choices) {
    const bool on = !option.negated && !EqualsIgnoreCase(Trim(option.value), "off");
    for (const Flag& flag : kFlags) {
        if (option.name != flag.name) continue;
        if (on && !option.value.empty() && !EqualsIgnoreCase(Trim(option.value), "on")) {
            ReportError("the optimize option \"" + option.name + "\" takes no value");
            return false;
        }
        choices.*flag.field = on;
        return true;
    }
    for (const WordSet& set : kWordSets) {
        if (option.name != set.name) continue;
        std::array<bool, 3> chosen{};
        if (on && option.value.empty()) chosen = set.defaults;
        if (on && !option.value.empty() && !EqualsIgnoreCase(Trim(option.value), "on")) {
            for (const std::string& word : ValueWords(option.value)) {
                size_t i = 0;
                while (i < set.words.size() && !(set.words[i] && word == set.words[i]))
                    ++i;
                if (i == set.words.size()) {
                    ReportError("unknown value \"" + word + "\" of the optimize option \"" +
                                option.name + "\"");
                    return false;
                }
                chosen[i] = true;
            }
        }
        for (size_t i = 0; i < set.fields.size(); ++i)
            if (set.fields[i]) choices.*set.fields[i] = chosen[i];
        return true;
    }
    ReportError("unknown optimize option \"" + option.name + "\"");
    return false;
}

} // namespace

bool ParseOptimizeOptions(std::string_view text, OptimizeChoices& choices) {
    OptionList list;
    if (!Trim(text).empty() && !OptionList::Parse(text, list)) {
        ReportError("cannot understand the options \"" + std::string(text) + "\"");
        return false;
    }
    OptimizeChoices parsed;
    for (const Option& option : list.Options())
        if (!ApplyOption(option, parsed)) return false;
    choices = parsed;
    return true;
}

void OptimizeSegmentTree(Database& db, Slot root, const OptimizeChoices& choices) {
    if (!db.GetSegment(root)) return;
    Optimizer optimizer(db, choices);
    if (choices.expandIncludes) optimizer.ExpandIncludes(root);
    std::vector<Slot> roots{root};
    if (choices.processIncludes) optimizer.AddIncludedRoots(roots);
    optimizer.PinLinkedObjects();
    for (Slot each : roots)
        if (db.GetSegment(each)) optimizer.OptimizeTree(each);
}

} // namespace hc

void HC_Optimize_Segment_Tree(const char* segment, const char* options) {
    HC_API(HC_Optimize_Segment_Tree);
    hc::OptimizeChoices choices;
    if (!hc::ParseOptimizeOptions(hc::api::Text(options), choices)) return;
    hc::Database& db = hc::Current();
    for (hc::Slot root : hc::CurrentSession().ResolvePattern(hc::api::Text(segment)))
        hc::OptimizeSegmentTree(db, root, choices);
}
