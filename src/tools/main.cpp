// obsidra-scene: the scene database from the command line, for scripts, tests and debugging.
#include <cstring>
#include <iostream>

#include "commands.h"

namespace {

struct Entry {
    const char* name;
    obsidra::tools::Command command;
    const char* help;
};

constexpr Entry kCommands[] = {
    {"tree", obsidra::tools::TreeCommand,
     "tree FILE [--depth N]   print the segment tree: names, keys, contents counts"},
    {"convert", obsidra::tools::ConvertCommand,
     "convert IN OUT.hmf      read a scene and write it as a metafile"},
    {"ifc", obsidra::tools::IfcCommand,
     "ifc FILE.ifc [--tree]   import an IFC building: storeys, categories, scene tree"},
    {"browse", obsidra::tools::BrowseCommand,
     "browse FILE [--depth N] print the segment browser's tree, expanded N levels (3)"},
    {"search", obsidra::tools::SearchCommand,
     "search FILE KIND TEXT   run a segment browser search and list the nodes it reveals"},
    {"info", obsidra::tools::InfoCommand,
     "info FILE PATH|KEY      the segment browser's information lines of an object"},
    {"showcase", obsidra::tools::ShowcaseCommand,
     "showcase OUT.hmf        write a scene with every kind of geometry"},
};

int Usage(std::ostream& out) {
    out << "usage: obsidra-scene COMMAND ARGS...\n";
    for (const Entry& entry : kCommands)
        out << "  " << entry.help << "\n";
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Usage(std::cerr);
    if (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h")) {
        Usage(std::cout);
        return 0;
    }
    for (const Entry& entry : kCommands)
        if (!std::strcmp(argv[1], entry.name))
            return entry.command({argv + 2, argv + argc}, std::cout, std::cerr);
    std::cerr << "obsidra-scene: unknown command \"" << argv[1] << "\"\n";
    return Usage(std::cerr);
}
