#include "browser/shell_locator.h"

#include <cstdlib>

#include "scenetree/scene_access.h"

namespace obsidra::browser {

std::int32_t ParseShellNumber(std::string_view text) {
    const std::string copy(text);
    return static_cast<std::int32_t>(std::strtol(copy.c_str(), nullptr, 10));
}

HC_KEY FindShellByNumber(std::int32_t number) {
    if (number == 0) return 0;
    HC_KEY found = 0;
    HC_Open_Segment("/");
    HC_Begin_Contents_Search("....", "shell");
    char type[HC_TEXT_MAX];
    HC_KEY key = 0;
    while (HC_Find_Contents(type, &key))
        if (static_cast<std::int32_t>(static_cast<std::uint64_t>(key) & 0xFFFFFFFFu) == number) {
            found = key;
            break;
        }
    HC_End_Contents_Search();
    HC_Close_Segment();
    return found;
}

std::string LocateResultText(HC_KEY shell, HC_KEY owner, std::string_view ownerPath) {
    const std::string path(ownerPath);
    return obsidra::scenetree::Format("GemKey: %lld ,OwnerKey: %lld \r\nPath: %s",
                                      static_cast<long long>(shell), static_cast<long long>(owner),
                                      path.c_str());
}

} // namespace obsidra::browser
