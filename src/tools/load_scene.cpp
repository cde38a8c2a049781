#include <obsidra/hc_fastpath.h>

#include "commands.h"

namespace obsidra::tools {

bool LoadScene(const std::string& file, HC_KEY segment, std::ostream& err) {
    char error[HC_TEXT_MAX];
    if (HC_Fast_Read_Metafile(file.c_str(), segment, error)) return true;
    err << "obsidra-scene: " << error << "\n";
    return false;
}

} // namespace obsidra::tools
