#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <obsidra/hc.h>

namespace obsidra::tools {

// One sub-command of obsidra-scene: its arguments after the command word; returns the exit code.
using Command = int (*)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

int TreeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ShowcaseCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int ConvertCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int IfcCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int BrowseCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int SearchCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int InfoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// Prints a segment and its subsegments, maxDepth levels down, a line each: the segment's name,
// its key and how many items of each type it holds.
void PrintSegmentTree(HC_KEY root, int maxDepth, std::ostream& out);

// Loads a scene file into a segment of the database; false (with the reason on err) when it
// cannot. Every command that reads a scene reads it this way.
bool LoadScene(const std::string& file, HC_KEY segment, std::ostream& err);

} // namespace obsidra::tools
