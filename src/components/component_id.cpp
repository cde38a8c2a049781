#include "components/component_id.h"

#include <cstdio>

namespace obsidra::components {

std::string IdentifierText(const ComponentId& id) {
    if (id.text.empty()) {
        const Guid& g = id.guid;
        char buffer[100];
        std::snprintf(buffer, sizeof buffer, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                      g.data1, g.data2, g.data3, g.data4[0], g.data4[1], g.data4[2], g.data4[3],
                      g.data4[4], g.data4[5], g.data4[6], g.data4[7]);
        return buffer;
    }
    if (id.text == "none") return {};
    return id.text;
}

} // namespace obsidra::components
