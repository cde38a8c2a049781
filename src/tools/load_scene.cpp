#include <fstream>
#include <sstream>

#include <obsidra/hc.h>

#include "commands.h"
#include "hc/database.h"
#include "hc/metafile.h"

namespace obsidra::tools {

bool LoadScene(const std::string& file, std::ostream& err) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        err << "obsidra-scene: cannot read " << file << "\n";
        return false;
    }
    std::stringstream text;
    text << in.rdbuf();
    std::string error;
    hc::Database& db = hc::Current();
    if (!hc::LoadMetafileText(db, text.str(), db.Root(), error)) {
        err << "obsidra-scene: " << file << ": " << error << "\n";
        return false;
    }
    return true;
}

} // namespace obsidra::tools
