#include <obsidra/hc.h>

#include "commands.h"

namespace obsidra::tools {

int ConvertCommand(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() != 2) {
        err << "usage: obsidra-scene convert IN OUT.hmf\n";
        return 2;
    }
    if (!LoadScene(args[0], HC_Create_Segment("/"), err)) return 1;
    HC_Write_Metafile("/", args[1].c_str(), "");
    return 0;
}

} // namespace obsidra::tools
