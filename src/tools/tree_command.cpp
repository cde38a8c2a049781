#include <cstdio>
#include <map>
#include <string>

#include <obsidra/hc.h>

#include "commands.h"
#include "mvo/utility.h"
#include "text/text.h"

namespace obsidra::tools {

namespace {

struct Entry {
    HC_KEY key;
    int depth;
};

// One line a segment: its name, its key and how many items of each type it holds.
void PrintSegment(HC_KEY key, int depth, std::vector<Entry>& children, std::ostream& out) {
    char path[HC_TEXT_MAX];
    HC_Show_Segment(key, path);
    std::map<std::string, int> counts;
    std::vector<std::string> order;
    HC_Open_Segment_By_Key(key);
    HC_Begin_Contents_Search(".", "everything, static model");
    char type[HC_TEXT_MAX];
    HC_KEY item;
    while (HC_Find_Contents(type, &item)) {
        if (counts[type]++ == 0) order.push_back(type);
        if (std::string(type) == "segment") children.push_back({item, depth + 1});
    }
    HC_End_Contents_Search();
    HC_Close_Segment();
    out << std::string(static_cast<size_t>(depth) * 2, ' ') << HUtility::OwnName(path) << "  ["
        << text::KeyText(key) << "]";
    const char* separator = "  ";
    for (const std::string& word : order) {
        out << separator << word << " " << counts[word];
        separator = ", ";
    }
    out << "\n";
}

} // namespace

int TreeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::string file;
    int maxDepth = 1 << 30;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--depth" && i + 1 < args.size()) {
            maxDepth = std::atoi(args[++i].c_str());
        } else if (file.empty()) {
            file = args[i];
        } else {
            err << "usage: obsidra-scene tree FILE [--depth N]\n";
            return 2;
        }
    }
    if (file.empty()) {
        err << "usage: obsidra-scene tree FILE [--depth N]\n";
        return 2;
    }
    HC_KEY root = HC_Create_Segment("/");
    if (!LoadScene(file, root, err)) return 1;
    PrintSegmentTree(root, maxDepth, out);
    return 0;
}

void PrintSegmentTree(HC_KEY root, int maxDepth, std::ostream& out) {
    std::vector<Entry> pending{{root, 0}};
    while (!pending.empty()) {
        Entry entry = pending.back();
        pending.pop_back();
        std::vector<Entry> children;
        PrintSegment(entry.key, entry.depth, children, out);
        if (entry.depth < maxDepth)
            pending.insert(pending.end(), children.rbegin(), children.rend());
    }
}

} // namespace obsidra::tools
