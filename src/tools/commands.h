#pragma once

#include <ostream>
#include <string>
#include <vector>

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

// Loads a scene file into "/" of the database; false (with the reason on err) when it cannot.
bool LoadScene(const std::string& file, std::ostream& err);

} // namespace obsidra::tools
