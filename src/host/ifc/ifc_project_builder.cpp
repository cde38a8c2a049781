#include "host/ifc/ifc_project_builder.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "host/ifc/ifc_guid.h"

namespace obsidra::host::ifc {

namespace {

ComponentId NoId() {
    return ComponentId{{}, "none"};
}

std::uint8_t Byte(float channel) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(channel, 0.0f, 1.0f) * 255));
}

// The attribute groups components of one type: the type object when the file gives one,
// else the element's ObjectType text, else its IFC class.
struct AttributeKey {
    std::string name;
    std::string typeGlobalId;

    friend auto operator<=>(const AttributeKey&, const AttributeKey&) = default;
};

AttributeKey AttributeOf(const ProductData& p) {
    if (!p.typeGlobalId.empty() || !p.typeName.empty())
        return {p.typeName.empty() ? p.typeClass : p.typeName, p.typeGlobalId};
    return {p.objectType.empty() ? p.ifcClass : p.objectType, {}};
}

// The element's own IFC attributes, shown as the first part of each of its geometries.
PartData IfcPart(const ProductData& p, const ComponentId& id) {
    PartData part{id, p.name, p.ifcClass, {}};
    const std::pair<const char*, const std::string*> values[] = {
        {"GlobalId", &p.globalId}, {"ObjectType", &p.objectType},
        {"Tag", &p.tag},           {"PredefinedType", &p.predefinedType},
        {"Type", &p.typeName},     {"TypeClass", &p.typeClass}};
    for (const auto& [name, value] : values)
        if (!value->empty()) part.parameters.emplace(name, *value);
    return part;
}

PartData PropertyPart(const PropertySetData& set) {
    PartData part{IdFromGlobalId(set.globalId), set.name, set.ifcClass, {}};
    for (const auto& [name, value] : set.values)
        part.parameters.insert_or_assign(name, value);
    return part;
}

class ProjectBuilder {
public:
    ProjectBuilder(const ModelData& data, const FloorPlan& plan,
                   const std::vector<Classification>& classes, const SceneKeys& keys)
        : m_data(data), m_plan(plan), m_classes(classes), m_keys(keys) {}

    IfcBuilding Build(const std::string& fallbackName) {
        ProjectData project;
        project.handle = static_cast<std::uint64_t>(m_keys.root);
        project.name = m_data.projectName.empty() ? fallbackName : m_data.projectName;
        project.type = m_data.projectType.empty() ? m_data.schema : m_data.projectType;
        project.order = 0;
        std::vector<IfcFloor> floors;
        for (std::size_t f = 0; f < m_plan.floors.size(); ++f) {
            const FloorPlan::Floor& floor = m_plan.floors[f];
            floors.push_back({floor.name, m_keys.floors[f], floor.storey >= 0, floor.elevation,
                              floor.height, static_cast<int>(floor.products.size())});
            if (floor.storey < 0) continue;
            project.floors.emplace(floor.name,
                                   FloorData{static_cast<std::uint64_t>(m_keys.floors[f]),
                                             static_cast<std::uint32_t>(f), floor.elevation,
                                             floor.height});
        }
        std::vector<IfcComponent> components = MakeComponents();
        MakeCategories(project);
        MakeIndex(project);
        return IfcBuilding(std::move(project), m_data.schema, m_keys.root, std::move(floors),
                           std::move(components));
    }

private:
    struct Group {
        std::size_t floor;
        std::string attributeName;
        ComponentId attribute;
        std::vector<int> products;
    };

    std::vector<IfcComponent> MakeComponents() {
        std::vector<IfcComponent> components;
        components.reserve(m_data.products.size());
        for (std::size_t i = 0; i < m_data.products.size(); ++i) {
            const ProductData& p = m_data.products[i];
            const Classification& c = m_classes[i];
            const CategoryPath path{std::string(DisciplineName(c.discipline)), std::string(c.major),
                                    std::string(c.minor)};
            components.push_back({static_cast<std::uint64_t>(m_keys.products[i]),
                                  m_keys.products[i], p.globalId, p.ifcClass, p.name, path,
                                  m_plan.floors[m_plan.floorOfProduct[i]].name, m_keys.shells[i]});
            AddToGroup(path, i);
        }
        return components;
    }

    void AddToGroup(const CategoryPath& path, std::size_t product) {
        const ProductData& p = m_data.products[product];
        const AttributeKey key = AttributeOf(p);
        auto [attribute, added] = m_attributeIds.try_emplace(key);
        if (added) {
            if (!key.typeGlobalId.empty()) {
                attribute->second = IdFromGlobalId(key.typeGlobalId);
            } else {
                // No identifier in the file: shown as none, told apart by a serial number.
                attribute->second = NoId();
                attribute->second.guid.data1 = static_cast<std::uint32_t>(m_attributeIds.size());
            }
        }
        const std::size_t floor = static_cast<std::size_t>(m_plan.floorOfProduct[product]);
        std::vector<Group>& groups = m_groups[path];
        // A named copy: clang before 16 cannot capture a structured binding.
        const auto& id = attribute->second;
        auto group = std::find_if(groups.begin(), groups.end(), [&](const Group& g) {
            return g.floor == floor && g.attribute == id;
        });
        if (group == groups.end()) {
            groups.push_back({floor, key.name, attribute->second, {}});
            group = groups.end() - 1;
        }
        group->products.push_back(static_cast<int>(product));
    }

    void MakeCategories(ProjectData& project) {
        std::map<
            Discipline,
            std::map<std::pair<std::uint32_t, std::string>,
                     std::map<std::pair<std::uint32_t, std::string>, const std::vector<Group>*>>>
            tree;
        for (const auto& [path, groups] : m_groups) {
            const Discipline discipline = DisciplineOf(path.discipline);
            tree[discipline][{MajorRank(path.majorCategory), path.majorCategory}]
                [{MinorRank(path.majorCategory, path.minorCategory), path.minorCategory}] = &groups;
        }
        std::uint64_t handle = 0;
        for (const auto& [discipline, majors] : tree) {
            DisciplineData d{++handle,
                             std::string(DisciplineName(discipline)),
                             static_cast<std::uint32_t>(project.disciplines.size()),
                             {}};
            for (const auto& [majorKey, minors] : majors) {
                MajorCategoryData major{++handle,
                                        majorKey.second,
                                        static_cast<std::uint32_t>(d.majorCategories.size()),
                                        {}};
                for (const auto& [minorKey, groups] : minors) {
                    MinorCategoryData minor{
                        ++handle,
                        minorKey.second,
                        static_cast<std::uint32_t>(major.minorCategories.size()),
                        StyleOf(*groups),
                        {}};
                    for (const Group& group : *groups)
                        minor.attributes.try_emplace(
                            group.attribute,
                            AttributeData{group.attribute, group.attributeName, {}, NoId(), {}});
                    major.minorCategories.push_back(std::move(minor));
                }
                d.majorCategories.push_back(std::move(major));
            }
            project.disciplines.push_back(std::move(d));
        }
    }

    static Discipline DisciplineOf(const std::string& name) {
        for (int d = 0; d < kDisciplineCount; ++d)
            if (DisciplineName(static_cast<Discipline>(d)) == name)
                return static_cast<Discipline>(d);
        return Discipline::Other;
    }

    // The colour most of the category's shells have.
    DisplayStyle StyleOf(const std::vector<Group>& groups) const {
        std::vector<std::pair<Rgba, std::size_t>> counts;
        for (const Group& group : groups)
            for (int product : group.products)
                for (const MeshPart& part : m_data.products[product].meshes) {
                    const Rgba colour = part.coloured ? part.colour : m_classes[product].colour;
                    auto it = std::find_if(counts.begin(), counts.end(),
                                           [&](const auto& c) { return c.first == colour; });
                    if (it == counts.end())
                        counts.emplace_back(colour, 1);
                    else
                        ++it->second;
                }
        DisplayStyle style;
        if (counts.empty()) return style;
        const Rgba colour = std::max_element(counts.begin(), counts.end(), [](auto& a, auto& b) {
                                return a.second < b.second;
                            })->first;
        style.flags = kStyleColourSet;
        style.red = Byte(colour.red);
        style.green = Byte(colour.green);
        style.blue = Byte(colour.blue);
        style.alpha = Byte(colour.alpha);
        return style;
    }

    void MakeIndex(ProjectData& project) {
        for (auto& [path, groups] : m_groups) {
            std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
                if (a.floor != b.floor) return a.floor < b.floor;
                return Utf16Less{}(a.attributeName, b.attributeName);
            });
            std::vector<ComponentGroupData>& index = project.componentIndex[path];
            for (const Group& group : groups) {
                ComponentGroupData data{m_plan.floors[group.floor].name, group.attribute, {}};
                for (int product : group.products)
                    data.components.push_back(MakeComponent(product));
                index.push_back(std::move(data));
            }
        }
    }

    ComponentData MakeComponent(int index) const {
        const ProductData& p = m_data.products[index];
        ComponentData component;
        component.handle = static_cast<std::uint64_t>(m_keys.products[index]);
        component.id = IdFromGlobalId(p.globalId);
        for (int other : p.connected)
            component.connectedIds.push_back(IdFromGlobalId(m_data.products[other].globalId));
        component.mainComponentId =
            p.whole >= 0 ? IdFromGlobalId(m_data.products[p.whole].globalId) : NoId();
        const std::vector<HC_KEY>& shells = m_keys.shells[index];
        for (HC_KEY shell : shells) {
            GeometryData geometry;
            geometry.id = shell;
            geometry.wholeGeometry = shells.size() == 1;
            geometry.parts.emplace(kPropertyPartKind, IfcPart(p, component.id));
            for (const PropertySetData& set : p.propertySets)
                geometry.parts.emplace(kPropertyPartKind, PropertyPart(set));
            component.geometries.push_back(std::move(geometry));
        }
        return component;
    }

    const ModelData& m_data;
    const FloorPlan& m_plan;
    const std::vector<Classification>& m_classes;
    const SceneKeys& m_keys;
    std::map<AttributeKey, ComponentId> m_attributeIds;
    std::map<CategoryPath, std::vector<Group>> m_groups;
};

} // namespace

IfcBuilding BuildProject(const ModelData& data, const FloorPlan& plan,
                         const std::vector<Classification>& classes, const SceneKeys& keys,
                         const std::string& fallbackName) {
    return ProjectBuilder(data, plan, classes, keys).Build(fallbackName);
}

} // namespace obsidra::host::ifc
