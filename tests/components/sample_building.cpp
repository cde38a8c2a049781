#include "sample_building.h"

#include <utility>

namespace obsidra::components::sample {

namespace {

ComponentId Text(std::string text) {
    ComponentId id;
    id.text = std::move(text);
    return id;
}

GeometryData Geometry(std::int64_t id) {
    GeometryData geometry;
    geometry.id = id;
    return geometry;
}

ComponentData Component(std::uint64_t handle, ComponentId id,
                        std::initializer_list<std::int64_t> geometryIds) {
    ComponentData component;
    component.handle = handle;
    component.id = std::move(id);
    for (const std::int64_t geometryId : geometryIds)
        component.geometries.push_back(Geometry(geometryId));
    return component;
}

AttributeData Attribute(const char* key, const char* name) {
    AttributeData attribute;
    attribute.id = Text(key);
    attribute.name = name;
    return attribute;
}

void AddAttribute(MinorCategoryData& minor, AttributeData attribute) {
    ComponentId key = attribute.id;
    minor.attributes.emplace(std::move(key), std::move(attribute));
}

} // namespace

ProjectData MakeProject() {
    ProjectData project;
    project.handle = 1;
    project.name = "工程A";
    project.type = "住宅";
    project.order = 1;
    project.floors.emplace("F1", FloorData{11, 1, 0.0, 3.0});
    project.floors.emplace("F2", FloorData{12, 2, 3.0, 3.3});

    MinorCategoryData outer{31, "外墙", 1, {}, {}};
    AddAttribute(outer, Attribute("A1", "外墙属性1"));
    AddAttribute(outer, Attribute("A2", "外墙属性2"));
    MinorCategoryData inner{32, "内墙", 2, {}, {}};
    MajorCategoryData walls{21, "墙体", 1, {std::move(outer), std::move(inner)}};

    MinorCategoryData beams{33, "梁", kOrderNotSet, {}, {}};
    AddAttribute(beams, Attribute("B1", "梁属性"));
    MajorCategoryData frame{22, "梁柱", 1, {std::move(beams)}};

    project.disciplines.push_back({2, "建筑", 1, {std::move(walls)}});
    project.disciplines.push_back({3, "结构", kOrderNotSet, {std::move(frame)}});

    ComponentId guidOnly;
    guidOnly.guid = {0x0000abcd, 0x0001, 0xf00d, {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef}};

    auto& outerGroups = project.componentIndex[CategoryPath{"建筑", "墙体", "外墙"}];
    outerGroups.push_back(
        {"F1",
         Text("A1"),
         {Component(kWallA, Text("QT-001"), {11, 12}), Component(kWallB, guidOnly, {13})}});
    outerGroups.push_back({"F2", Text("A1"), {Component(kWallC, Text("none"), {14})}});
    outerGroups.push_back({"F1", Text("A2"), {Component(kWallD, Text("QT-004"), {15})}});
    outerGroups.push_back({"屋面", Text("A1"), {Component(kRoof, Text("QT-005"), {16})}});
    outerGroups.push_back({"地下室", Text("missing"), {Component(kOrphan, Text("QT-006"), {17})}});

    project.componentIndex[CategoryPath{"结构", "梁柱", "梁"}].push_back(
        {"F2", Text("B1"), {Component(kBeam, Text("L-1"), {})}});
    return project;
}

std::string DumpTree(const ComponentTree& tree, bool withStates) {
    std::string out;
    const auto dump = [&](const auto& self, NodeIndex node, int depth) -> void {
        out.append(static_cast<std::size_t>(depth) * 2, ' ');
        out += tree.Label(node);
        out += " [" + std::to_string(static_cast<int>(tree.Kind(node))) + "]";
        if (withStates)
            out += " <" + std::to_string(static_cast<int>(tree.GetCheckState(node))) + ">";
        out += '\n';
        for (const NodeIndex child : tree.Children(node))
            self(self, child, depth + 1);
    };
    if (tree.Root() != kNoNode) dump(dump, tree.Root(), 0);
    return out;
}

NodeIndex FindNode(const ComponentTree& tree, const std::vector<std::string_view>& path) {
    NodeIndex node = tree.Root();
    for (const std::string_view label : path) {
        NodeIndex next = kNoNode;
        for (const NodeIndex child : tree.Children(node)) {
            if (tree.Label(child) == label) {
                next = child;
                break;
            }
        }
        if (next == kNoNode) return kNoNode;
        node = next;
    }
    return node;
}

} // namespace obsidra::components::sample
