// Parsing with IFC++ and collecting the model's facts.
#include <algorithm>
#include <ifcpp/IFC4/EntityFactory.h>
#include <ifcpp/IFC4/include/IfcBuildingStorey.h>
#include <ifcpp/IFC4/include/IfcComplexProperty.h>
#include <ifcpp/IFC4/include/IfcCovering.h>
#include <ifcpp/IFC4/include/IfcDistributionElement.h>
#include <ifcpp/IFC4/include/IfcDistributionSystem.h>
#include <ifcpp/IFC4/include/IfcDistributionSystemEnum.h>
#include <ifcpp/IFC4/include/IfcElement.h>
#include <ifcpp/IFC4/include/IfcElementQuantity.h>
#include <ifcpp/IFC4/include/IfcFeatureElementSubtraction.h>
#include <ifcpp/IFC4/include/IfcGloballyUniqueId.h>
#include <ifcpp/IFC4/include/IfcIdentifier.h>
#include <ifcpp/IFC4/include/IfcLabel.h>
#include <ifcpp/IFC4/include/IfcLengthMeasure.h>
#include <ifcpp/IFC4/include/IfcMaterialSelect.h>
#include <ifcpp/IFC4/include/IfcOpeningElement.h>
#include <ifcpp/IFC4/include/IfcPhysicalQuantity.h>
#include <ifcpp/IFC4/include/IfcPort.h>
#include <ifcpp/IFC4/include/IfcProduct.h>
#include <ifcpp/IFC4/include/IfcProject.h>
#include <ifcpp/IFC4/include/IfcPropertyBoundedValue.h>
#include <ifcpp/IFC4/include/IfcPropertyEnumeratedValue.h>
#include <ifcpp/IFC4/include/IfcPropertyListValue.h>
#include <ifcpp/IFC4/include/IfcPropertySet.h>
#include <ifcpp/IFC4/include/IfcPropertySetDefinitionSet.h>
#include <ifcpp/IFC4/include/IfcPropertySingleValue.h>
#include <ifcpp/IFC4/include/IfcRelAggregates.h>
#include <ifcpp/IFC4/include/IfcRelAssignsToGroup.h>
#include <ifcpp/IFC4/include/IfcRelAssociatesMaterial.h>
#include <ifcpp/IFC4/include/IfcRelConnectsElements.h>
#include <ifcpp/IFC4/include/IfcRelConnectsPortToElement.h>
#include <ifcpp/IFC4/include/IfcRelConnectsPorts.h>
#include <ifcpp/IFC4/include/IfcRelContainedInSpatialStructure.h>
#include <ifcpp/IFC4/include/IfcRelCoversBldgElements.h>
#include <ifcpp/IFC4/include/IfcRelDefinesByProperties.h>
#include <ifcpp/IFC4/include/IfcRelDefinesByType.h>
#include <ifcpp/IFC4/include/IfcRelFillsElement.h>
#include <ifcpp/IFC4/include/IfcRelNests.h>
#include <ifcpp/IFC4/include/IfcRelVoidsElement.h>
#include <ifcpp/IFC4/include/IfcText.h>
#include <ifcpp/IFC4/include/IfcTypeObject.h>
#include <ifcpp/IFC4/include/IfcValue.h>
#include <ifcpp/model/UnitConverter.h>
#include <ifcpp/reader/ReaderSTEP.h>

#include "host/ifc/ifc_source_state.h"
#include "host/ifc/ifc_step_filter.h"
#include "host/ifc/ifc_text.h"

namespace obsidra::host::ifc {

namespace {

// Containment and aggregation chains deeper than this are cycles in a malformed file.
constexpr int kMaxChain = 64;
// Complex properties that hold one another (a malformed file) would otherwise nest and multiply
// without end: a set yields at most so many properties, nested at most so deep.
constexpr int kMaxPropertiesPerSet = 10000;
constexpr int kMaxPropertyDepth = 16;

template <typename Label>
std::string Text(const shared_ptr<Label>& label) {
    return label ? ToUtf8(label->m_value) : std::string();
}

std::string ValueText(const shared_ptr<BuildingObject>& value) {
    return value ? ToUtf8(value->toString()) : std::string();
}

// An enumeration as IFC++ shows it, without STEP's dots; empty for the values that say nothing.
std::string EnumText(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '.'), text.end());
    if (text == "NOTDEFINED" || text == "USERDEFINED") text.clear();
    return text;
}

// The PredefinedType attribute that many entity classes declare, each with its own enumeration.
std::string PredefinedTypeOf(const BuildingEntity& entity) {
    std::vector<std::pair<std::string, shared_ptr<BuildingObject>>> attributes;
    entity.getAttributes(attributes);
    for (const auto& [name, value] : attributes)
        if (name == "PredefinedType") return EnumText(ValueText(value));
    return {};
}

template <typename Entity>
int IdOf(const shared_ptr<Entity>& entity) {
    return entity ? entity->m_entity_id : -1;
}

void AddProperty(const shared_ptr<IfcProperty>& property, const std::string& prefix,
                 PropertySetData& set, int depth, int& budget) {
    if (!property || depth > kMaxPropertyDepth || --budget < 0) return;
    const std::string name = prefix + Text(property->m_Name);
    auto join = [](const std::vector<shared_ptr<IfcValue>>& values) {
        std::string text;
        for (const shared_ptr<IfcValue>& value : values) {
            if (!text.empty()) text += ", ";
            text += ValueText(value);
        }
        return text;
    };
    if (auto single = dynamic_pointer_cast<IfcPropertySingleValue>(property)) {
        set.values.emplace_back(name, ValueText(single->m_NominalValue));
    } else if (auto enumerated = dynamic_pointer_cast<IfcPropertyEnumeratedValue>(property)) {
        set.values.emplace_back(name, join(enumerated->m_EnumerationValues));
    } else if (auto list = dynamic_pointer_cast<IfcPropertyListValue>(property)) {
        set.values.emplace_back(name, join(list->m_ListValues));
    } else if (auto bounded = dynamic_pointer_cast<IfcPropertyBoundedValue>(property)) {
        set.values.emplace_back(name, ValueText(bounded->m_LowerBoundValue) + " .. " +
                                          ValueText(bounded->m_UpperBoundValue));
    } else if (auto complex = dynamic_pointer_cast<IfcComplexProperty>(property)) {
        for (const shared_ptr<IfcProperty>& part : complex->m_HasProperties)
            AddProperty(part, name + ".", set, depth + 1, budget);
    }
}

// A quantity's value is its one attribute named ...Value (LengthValue, AreaValue, ...).
std::string QuantityValue(const IfcPhysicalQuantity& quantity) {
    std::vector<std::pair<std::string, shared_ptr<BuildingObject>>> attributes;
    quantity.getAttributes(attributes);
    for (const auto& [name, value] : attributes)
        if (name.ends_with("Value")) return ValueText(value);
    return {};
}

std::optional<PropertySetData> ReadPropertySet(const shared_ptr<IfcPropertySetDefinition>& set) {
    if (auto properties = dynamic_pointer_cast<IfcPropertySet>(set)) {
        PropertySetData data{
            Text(properties->m_GlobalId), Text(properties->m_Name), "IfcPropertySet", {}};
        int budget = kMaxPropertiesPerSet;
        for (const shared_ptr<IfcProperty>& property : properties->m_HasProperties)
            AddProperty(property, "", data, 0, budget);
        return data;
    }
    if (auto quantities = dynamic_pointer_cast<IfcElementQuantity>(set)) {
        PropertySetData data{
            Text(quantities->m_GlobalId), Text(quantities->m_Name), "IfcElementQuantity", {}};
        for (const shared_ptr<IfcPhysicalQuantity>& quantity : quantities->m_Quantities)
            if (quantity)
                data.values.emplace_back(Text(quantity->m_Name), QuantityValue(*quantity));
        return data;
    }
    return std::nullopt;
}

// Occurrence sets override the type's sets of the same name, property by property, as IFC
// means them to.
void MergePropertySet(PropertySetData set, std::vector<PropertySetData>& sets) {
    auto same = std::find_if(sets.begin(), sets.end(),
                             [&](const PropertySetData& s) { return s.name == set.name; });
    if (same == sets.end()) {
        sets.push_back(std::move(set));
        return;
    }
    // Pairs, not bindings: clang before 16 cannot capture a structured binding.
    for (auto& property : set.values) {
        auto it = std::find_if(same->values.begin(), same->values.end(),
                               [&](const auto& entry) { return entry.first == property.first; });
        if (it != same->values.end())
            it->second = std::move(property.second);
        else
            same->values.push_back(std::move(property));
    }
    if (!set.globalId.empty()) same->globalId = set.globalId;
}

// The IsExternal or LoadBearing property of the element's common property set
// (Pset_WallCommon, Pset_SlabCommon, ...).
std::optional<bool> CommonFlag(const std::vector<PropertySetData>& sets, std::string_view name) {
    for (const PropertySetData& set : sets) {
        if (!set.name.starts_with("Pset_") || !set.name.ends_with("Common")) continue;
        for (const auto& [property, value] : set.values) {
            if (property != name) continue;
            const std::string folded = FoldAsciiCase(value);
            if (folded == "true" || folded == ".t.") return true;
            if (folded == "false" || folded == ".f.") return false;
        }
    }
    return std::nullopt;
}

// Ports and openings relate elements only once both of their relations are known.
struct PendingLinks {
    std::unordered_map<int, int> portOwner;
    std::vector<std::pair<int, int>> portLinks;
    std::unordered_map<int, int> openingHost;
    std::vector<std::pair<int, int>> openingFillers;
};

void GatherRelation(const shared_ptr<BuildingEntity>& entity, Relations& relations,
                    PendingLinks& pending) {
    auto connect = [&](int a, int b) {
        if (a >= 0 && b >= 0 && a != b) relations.connections.emplace_back(a, b);
    };
    if (auto contained = dynamic_pointer_cast<IfcRelContainedInSpatialStructure>(entity)) {
        for (const shared_ptr<IfcProduct>& product : contained->m_RelatedElements)
            if (product)
                relations.containerOf.try_emplace(product->m_entity_id,
                                                  IdOf(contained->m_RelatingStructure));
    } else if (auto aggregates = dynamic_pointer_cast<IfcRelAggregates>(entity)) {
        for (const shared_ptr<IfcObjectDefinition>& part : aggregates->m_RelatedObjects)
            if (part)
                relations.wholeOf.try_emplace(part->m_entity_id,
                                              IdOf(aggregates->m_RelatingObject));
    } else if (auto byType = dynamic_pointer_cast<IfcRelDefinesByType>(entity)) {
        for (const shared_ptr<IfcObject>& object : byType->m_RelatedObjects)
            if (object && byType->m_RelatingType)
                relations.typeOf.try_emplace(object->m_entity_id, byType->m_RelatingType);
    } else if (auto byProperties = dynamic_pointer_cast<IfcRelDefinesByProperties>(entity)) {
        std::vector<shared_ptr<IfcPropertySetDefinition>> sets;
        if (auto one = dynamic_pointer_cast<IfcPropertySetDefinition>(
                byProperties->m_RelatingPropertyDefinition))
            sets.push_back(one);
        else if (auto many = dynamic_pointer_cast<IfcPropertySetDefinitionSet>(
                     byProperties->m_RelatingPropertyDefinition))
            sets = many->m_vec;
        for (const shared_ptr<IfcObjectDefinition>& object : byProperties->m_RelatedObjects) {
            if (!object) continue;
            auto& list = relations.propertySetsOf[object->m_entity_id];
            list.insert(list.end(), sets.begin(), sets.end());
        }
    } else if (auto material = dynamic_pointer_cast<IfcRelAssociatesMaterial>(entity)) {
        for (const shared_ptr<IfcDefinitionSelect>& object : material->m_RelatedObjects)
            if (auto definition = dynamic_pointer_cast<BuildingEntity>(object))
                relations.materialOf.try_emplace(definition->m_entity_id,
                                                 material->m_RelatingMaterial);
    } else if (auto group = dynamic_pointer_cast<IfcRelAssignsToGroup>(entity)) {
        auto system = dynamic_pointer_cast<IfcDistributionSystem>(group->m_RelatingGroup);
        const std::string type = system ? EnumText(ValueText(system->m_PredefinedType)) : "";
        if (!type.empty())
            for (const shared_ptr<IfcObjectDefinition>& object : group->m_RelatedObjects)
                if (object) relations.systemTypeOf.try_emplace(object->m_entity_id, type);
    } else if (auto elements = dynamic_pointer_cast<IfcRelConnectsElements>(entity)) {
        connect(IdOf(elements->m_RelatingElement), IdOf(elements->m_RelatedElement));
    } else if (auto ports = dynamic_pointer_cast<IfcRelConnectsPorts>(entity)) {
        pending.portLinks.emplace_back(IdOf(ports->m_RelatingPort), IdOf(ports->m_RelatedPort));
    } else if (auto portToElement = dynamic_pointer_cast<IfcRelConnectsPortToElement>(entity)) {
        pending.portOwner.try_emplace(IdOf(portToElement->m_RelatingPort),
                                      IdOf(portToElement->m_RelatedElement));
    } else if (auto nests = dynamic_pointer_cast<IfcRelNests>(entity)) {
        for (const shared_ptr<IfcObjectDefinition>& nested : nests->m_RelatedObjects)
            if (dynamic_pointer_cast<IfcPort>(nested))
                pending.portOwner.try_emplace(nested->m_entity_id, IdOf(nests->m_RelatingObject));
    } else if (auto voids = dynamic_pointer_cast<IfcRelVoidsElement>(entity)) {
        pending.openingHost.try_emplace(IdOf(voids->m_RelatedOpeningElement),
                                        IdOf(voids->m_RelatingBuildingElement));
    } else if (auto fills = dynamic_pointer_cast<IfcRelFillsElement>(entity)) {
        pending.openingFillers.emplace_back(IdOf(fills->m_RelatingOpeningElement),
                                            IdOf(fills->m_RelatedBuildingElement));
    } else if (auto covers = dynamic_pointer_cast<IfcRelCoversBldgElements>(entity)) {
        for (const shared_ptr<IfcCovering>& covering : covers->m_RelatedCoverings)
            connect(IdOf(covers->m_RelatingBuildingElement), IdOf(covering));
    }
}

Relations GatherRelations(const BuildingModel& model) {
    Relations relations;
    PendingLinks pending;
    for (const auto& [id, entity] : model.getMapIfcEntities())
        if (entity && std::string_view(entity->className()).starts_with("IfcRel"))
            GatherRelation(entity, relations, pending);
    auto find = [](const std::unordered_map<int, int>& map, int key) {
        const auto it = map.find(key);
        return it == map.end() ? -1 : it->second;
    };
    auto connect = [&](int a, int b) {
        if (a >= 0 && b >= 0 && a != b) relations.connections.emplace_back(a, b);
    };
    for (const auto& [from, to] : pending.portLinks)
        connect(find(pending.portOwner, from), find(pending.portOwner, to));
    for (const auto& [opening, filler] : pending.openingFillers)
        connect(find(pending.openingHost, opening), filler);
    return relations;
}

std::string MessageText(const StatusCallback::Message& message) {
    std::string text;
    if (message.m_entity)
        text = "#" + std::to_string(message.m_entity->m_entity_id) + " " +
               message.m_entity->className() + ": ";
    text += ToUtf8(message.m_message_text);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
        text.pop_back();
    return text;
}

} // namespace

MessageSink::~MessageSink() {
    for (std::string& line : m_warnings.Lines())
        m_messages->warnings.push_back(std::move(line));
    if (m_droppedErrors > 0)
        m_messages->warnings.push_back("(" + std::to_string(m_droppedErrors) +
                                       " further errors left out)");
}

void MessageSink::Attach(StatusCallback& source) {
    source.setMessageCallBack(this, &MessageSink::OnMessage);
    source.setCancelCheck(this, &MessageSink::IsCancelled);
}

void MessageSink::OnMessage(void* self, shared_ptr<StatusCallback::Message> message) {
    auto* sink = static_cast<MessageSink*>(self);
    if (!message) return;
    switch (message->m_message_type) {
    case StatusCallback::MESSAGE_TYPE_PROGRESS_VALUE:
        if (sink->m_forwardProgress && message->m_progress_value >= 0)
            sink->m_progress->Report(sink->m_phase, message->m_progress_value);
        return;
    case StatusCallback::MESSAGE_TYPE_ERROR:
    case StatusCallback::MESSAGE_TYPE_WARNING:
    case StatusCallback::MESSAGE_TYPE_MINOR_WARNING: {
        if (message->m_message_type != StatusCallback::MESSAGE_TYPE_ERROR ||
            sink->m_phase != ImportPhase::Parsing) {
            sink->m_warnings.Add(MessageText(*message));
            return;
        }
        std::vector<std::string>& errors = sink->m_messages->errors;
        if (errors.size() >= kMaxMessagesKept)
            ++sink->m_droppedErrors;
        else
            errors.push_back(MessageText(*message));
        return;
    }
    default:
        return;
    }
}

bool MessageSink::IsCancelled(void* self) {
    return static_cast<MessageSink*>(self)->m_progress->Cancelled();
}

IfcSource::IfcSource(std::unique_ptr<State> state) : m_state(std::move(state)) {}

IfcSource::~IfcSource() = default;

std::unique_ptr<IfcSource> IfcSource::Parse(std::string text, ImportProgress& progress,
                                            SourceMessages& messages, std::string& error) {
    auto state = std::make_unique<State>();
    state->model = make_shared<BuildingModel>();
    {
        ReaderSTEP reader;
        reader.readHeader(text, state->model);
        // The reader checks the argument counts of IFC4 files only: it fits IFC2x3's into its
        // IFC4 classes.
        const bool counted =
            state->model->getIfcSchemaVersion().m_ifc_file_schema_enum == BuildingModel::IFC4;
        WarningTally skipped(kMaxMessagesKept);
        SkipUnreadableEntities(
            text,
            [counted](std::string_view keyword) {
                const std::unique_ptr<BuildingEntity> entity(
                    EntityFactory::createEntityObject(std::string(keyword)));
                if (!entity) return kUnknownEntity;
                return counted ? static_cast<int>(entity->getNumAttributes()) : kAnyArguments;
            },
            skipped);
        messages.warnings = skipped.Lines();

        MessageSink sink(progress, messages, ImportPhase::Parsing);
        sink.ForwardProgress(true);
        sink.Attach(reader);
        sink.Attach(*state->model);
        reader.loadModelFromString(text, state->model);
        state->model->unsetMessageCallBack();
        state->model->unsetCancelCheck();
    }
    if (progress.Cancelled()) return nullptr;
    if (!messages.errors.empty()) {
        error = messages.errors.front();
        if (messages.errors.size() > 1)
            error += " (and " + std::to_string(messages.errors.size() - 1) + " more errors)";
        return nullptr;
    }
    if (!state->model->getIfcProject()) {
        error = "the file holds no IfcProject";
        return nullptr;
    }
    if (const shared_ptr<UnitConverter>& units = state->model->getUnitConverter())
        state->lengthFactor = units->getLengthInMeterFactor();
    state->relations = GatherRelations(*state->model);
    return std::unique_ptr<IfcSource>(new IfcSource(std::move(state)));
}

ModelData IfcSource::Collect() const {
    const BuildingModel& model = *m_state->model;
    const Relations& relations = m_state->relations;
    ModelData data;
    const shared_ptr<IfcProject> project = m_state->model->getIfcProject();
    data.projectName = Text(project->m_Name);
    if (data.projectName.empty()) data.projectName = Text(project->m_LongName);
    data.projectType = Text(project->m_ObjectType);
    data.projectGlobalId = Text(project->m_GlobalId);

    std::unordered_map<int, int> storeyIndex;
    std::unordered_map<int, int> productIndex;
    for (const auto& [id, entity] : model.getMapIfcEntities()) {
        auto product = dynamic_pointer_cast<IfcProduct>(entity);
        if (!product || dynamic_pointer_cast<IfcFeatureElementSubtraction>(product)) continue;
        if (auto storey = dynamic_pointer_cast<IfcBuildingStorey>(product)) {
            StoreyData s{id, Text(storey->m_GlobalId), Text(storey->m_Name), 0, false};
            if (storey->m_Elevation) {
                s.elevation = storey->m_Elevation->m_value * m_state->lengthFactor;
                s.hasElevation = true;
            }
            storeyIndex.emplace(id, static_cast<int>(data.storeys.size()));
            data.storeys.push_back(std::move(s));
        }
        ProductData p;
        p.entityId = id;
        p.ifcClass = product->className();
        p.globalId = Text(product->m_GlobalId);
        p.name = Text(product->m_Name);
        p.objectType = Text(product->m_ObjectType);
        p.predefinedType = PredefinedTypeOf(*product);
        if (auto element = dynamic_pointer_cast<IfcElement>(product)) {
            p.isElement = true;
            p.tag = Text(element->m_Tag);
        }
        std::vector<PropertySetData> sets;
        if (auto type = relations.typeOf.find(id); type != relations.typeOf.end()) {
            p.typeClass = type->second->className();
            p.typeName = Text(type->second->m_Name);
            p.typeGlobalId = Text(type->second->m_GlobalId);
            if (p.predefinedType.empty()) p.predefinedType = PredefinedTypeOf(*type->second);
            for (const shared_ptr<IfcPropertySetDefinition>& set : type->second->m_HasPropertySets)
                if (std::optional<PropertySetData> read = ReadPropertySet(set))
                    MergePropertySet(std::move(*read), sets);
        }
        if (auto own = relations.propertySetsOf.find(id); own != relations.propertySetsOf.end())
            for (const shared_ptr<IfcPropertySetDefinition>& set : own->second)
                if (std::optional<PropertySetData> read = ReadPropertySet(set))
                    MergePropertySet(std::move(*read), sets);
        p.isExternal = CommonFlag(sets, "IsExternal");
        p.loadBearing = CommonFlag(sets, "LoadBearing");
        p.propertySets = std::move(sets);
        if (auto system = relations.systemTypeOf.find(id); system != relations.systemTypeOf.end())
            p.systemDiscipline = DisciplineOfSystem(system->second);
        productIndex.emplace(id, static_cast<int>(data.products.size()));
        data.products.push_back(std::move(p));
    }

    auto lookup = [](const std::unordered_map<int, int>& map, int key) {
        const auto it = map.find(key);
        return it == map.end() ? -1 : it->second;
    };
    for (ProductData& p : data.products) {
        // Up through containment and aggregation to the first storey: a stair flight is in
        // the stair that is in the storey, a space is aggregated into its storey.
        int at = p.entityId;
        for (int step = 0; step < kMaxChain && at >= 0; ++step) {
            if (const int storey = lookup(storeyIndex, at); storey >= 0 && at != p.entityId) {
                p.storey = storey;
                break;
            }
            const int container = lookup(relations.containerOf, at);
            at = container >= 0 ? container : lookup(relations.wholeOf, at);
        }
        const int whole = lookup(productIndex, lookup(relations.wholeOf, p.entityId));
        if (whole >= 0 && data.products[whole].isElement) p.whole = whole;
    }
    for (const auto& [a, b] : relations.connections) {
        const int first = lookup(productIndex, a);
        const int second = lookup(productIndex, b);
        if (first < 0 || second < 0) continue;
        auto add = [](std::vector<int>& list, int other) {
            if (std::find(list.begin(), list.end(), other) == list.end()) list.push_back(other);
        };
        add(data.products[first].connected, second);
        add(data.products[second].connected, first);
    }
    return data;
}

} // namespace obsidra::host::ifc
