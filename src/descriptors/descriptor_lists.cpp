#include "descriptors/descriptor_lists.h"

namespace obsidra::descriptors {

AttributeList MakeAttributeList(std::span<const AttributeKind> kinds) {
    AttributeList list;
    list.reserve(kinds.size());
    for (AttributeKind kind : kinds)
        list.push_back(MakeAttribute(kind));
    return list;
}

AttributeList MakeSegmentAttributes() {
    AttributeList list;
    list.reserve(kAttributeKindCount);
    for (const AttributeInfo& info : kAttributeTable)
        list.push_back(MakeAttribute(info.kind));
    return list;
}

GeometryList MakeGeometryList() {
    GeometryList list;
    list.reserve(kGeometryKindCount);
    for (const GeometryInfo& info : kGeometryTable)
        list.push_back(MakeGeometry(info.kind));
    return list;
}

DefinitionList MakeDefinitionList() {
    DefinitionList list;
    list.reserve(kDefinitionKindCount);
    for (const DefinitionInfo& info : kDefinitionTable)
        list.push_back(MakeDefinition(info.kind));
    return list;
}

const AttributeList& DescriptorLists::ForGeometryItem(std::string_view type,
                                                      bool throughReference) const {
    auto holds = [type](std::string_view word) { return type.find(word) != type.npos; };
    if (throughReference) return referencedItemAttributes;
    if (holds("shell") || holds("light") || holds("mesh")) return shellMeshLightAttributes;
    if (holds("text")) return textItemAttributes;
    return geometryItemAttributes;
}

DescriptorLists MakeDescriptorLists() {
    DescriptorLists lists;
    lists.segmentAttributes = MakeSegmentAttributes();
    lists.geometry = MakeGeometryList();
    lists.definitions = MakeDefinitionList();
    lists.shellMeshLightAttributes = MakeAttributeList(kShellMeshLightAttributes);
    lists.geometryItemAttributes = MakeAttributeList(kGeometryItemAttributes);
    lists.textItemAttributes = MakeAttributeList(kTextItemAttributes);
    lists.referencedItemAttributes = MakeAttributeList(kReferencedItemAttributes);
    return lists;
}

} // namespace obsidra::descriptors
