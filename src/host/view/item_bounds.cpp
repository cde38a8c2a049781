#include "host/view/item_bounds.h"

namespace obsidra::host::view {

Box WorldBounds(HC_KEY key, int count, const HC_KEY* path) {
    if (key == 0 || key == -1 || HC_Show_Existence_By_Key(key, "self") == 0) return {};
    char info[HC_TEXT_MAX] = "";
    HC_Show_Bounding_Info_By_Key(key, info);
    if (!info[0]) return {};
    HC_POINT low{}, high{};
    HC_Show_Bounding_Cuboid_By_Key(key, &low, &high);
    Box local;
    local.Add(Vec3{low.x, low.y, low.z});
    local.Add(Vec3{high.x, high.y, high.z});
    // The path must start at the key; one that does not is not this key's.
    bool usable = count > 0 && path && path[0] == key;
    Mat4 net;
    HC_PShow_Net_Modelling_Matrix(usable ? count : 1, usable ? path : &key, net.m.data());
    return Transform(net, local);
}

} // namespace obsidra::host::view
