// Meshing with IFC++'s geometry converter, product by product, so that an import can report
// its progress and stop when cancelled.
#include <ifcpp/IFC4/include/IfcMaterial.h>
#include <ifcpp/IFC4/include/IfcMaterialConstituent.h>
#include <ifcpp/IFC4/include/IfcMaterialConstituentSet.h>
#include <ifcpp/IFC4/include/IfcMaterialDefinitionRepresentation.h>
#include <ifcpp/IFC4/include/IfcMaterialLayer.h>
#include <ifcpp/IFC4/include/IfcMaterialLayerSet.h>
#include <ifcpp/IFC4/include/IfcMaterialLayerSetUsage.h>
#include <ifcpp/IFC4/include/IfcMaterialList.h>
#include <ifcpp/IFC4/include/IfcMaterialProfile.h>
#include <ifcpp/IFC4/include/IfcMaterialProfileSet.h>
#include <ifcpp/IFC4/include/IfcMaterialProfileSetUsage.h>
#include <ifcpp/IFC4/include/IfcStyledItem.h>
#include <ifcpp/IFC4/include/IfcTypeObject.h>
#include <ifcpp/geometry/Carve/GeometryConverter.h>
#include <map>
#include <unordered_map>

#include "host/ifc/ifc_source_state.h"

namespace obsidra::host::ifc {

namespace {

// IFC++ sets carve's tolerance from the model's unit this way before it meshes a model.
constexpr double kCarveEpsilonInMetres = 1.5e-05;

std::optional<Rgba> SurfaceColour(const std::vector<shared_ptr<AppearanceData>>& appearances) {
    for (const shared_ptr<AppearanceData>& appearance : appearances) {
        if (!appearance) continue;
        if (appearance->m_apply_to_geometry_type != AppearanceData::GEOM_TYPE_SURFACE &&
            appearance->m_apply_to_geometry_type != AppearanceData::GEOM_TYPE_ANY)
            continue;
        const vec4& diffuse = appearance->m_color_diffuse;
        // IFC++ keeps opacity (1 opaque) in its "transparency".
        return Rgba{static_cast<float>(diffuse.r()), static_cast<float>(diffuse.g()),
                    static_cast<float>(diffuse.b()),
                    static_cast<float>(std::clamp(appearance->m_transparency, 0.0, 1.0))};
    }
    return std::nullopt;
}

// The first material that a material association names, whatever the association's form.
shared_ptr<IfcMaterial> FirstMaterial(const shared_ptr<IfcMaterialSelect>& select) {
    if (auto material = dynamic_pointer_cast<IfcMaterial>(select)) return material;
    if (auto usage = dynamic_pointer_cast<IfcMaterialLayerSetUsage>(select))
        return FirstMaterial(usage->m_ForLayerSet);
    if (auto layers = dynamic_pointer_cast<IfcMaterialLayerSet>(select)) {
        for (const shared_ptr<IfcMaterialLayer>& layer : layers->m_MaterialLayers)
            if (layer && layer->m_Material) return layer->m_Material;
    }
    if (auto layer = dynamic_pointer_cast<IfcMaterialLayer>(select)) return layer->m_Material;
    if (auto list = dynamic_pointer_cast<IfcMaterialList>(select)) {
        for (const shared_ptr<IfcMaterial>& material : list->m_Materials)
            if (material) return material;
    }
    if (auto usage = dynamic_pointer_cast<IfcMaterialProfileSetUsage>(select))
        return FirstMaterial(usage->m_ForProfileSet);
    if (auto profiles = dynamic_pointer_cast<IfcMaterialProfileSet>(select)) {
        for (const shared_ptr<IfcMaterialProfile>& profile : profiles->m_MaterialProfiles)
            if (profile && profile->m_Material) return profile->m_Material;
    }
    if (auto constituents = dynamic_pointer_cast<IfcMaterialConstituentSet>(select)) {
        for (const shared_ptr<IfcMaterialConstituent>& part : constituents->m_MaterialConstituents)
            if (part && part->m_Material) return part->m_Material;
    }
    return nullptr;
}

class MaterialColours {
public:
    MaterialColours(const Relations& relations, StylesConverter& styles)
        : m_relations(relations), m_styles(styles) {}

    // The colour of the material of the product, or of its type object.
    std::optional<Rgba> Of(int productId) {
        if (std::optional<Rgba> own = OfDefinition(productId)) return own;
        const auto type = m_relations.typeOf.find(productId);
        if (type == m_relations.typeOf.end()) return std::nullopt;
        return OfDefinition(type->second->m_entity_id);
    }

private:
    std::optional<Rgba> OfDefinition(int id) {
        const auto association = m_relations.materialOf.find(id);
        if (association == m_relations.materialOf.end()) return std::nullopt;
        const shared_ptr<IfcMaterial> material = FirstMaterial(association->second);
        if (!material) return std::nullopt;
        const auto [cached, added] = m_cache.try_emplace(material->m_entity_id);
        if (added) {
            // A material whose style IFC++ cannot read just gives no colour.
            try {
                cached->second = OfMaterial(*material);
            } catch (...) {
                cached->second = std::nullopt;
            }
        }
        return cached->second;
    }

    std::optional<Rgba> OfMaterial(IfcMaterial& material) {
        std::vector<shared_ptr<AppearanceData>> appearances;
        for (const weak_ptr<IfcMaterialDefinitionRepresentation>& weak :
             material.m_HasRepresentation_inverse) {
            const shared_ptr<IfcMaterialDefinitionRepresentation> representation = weak.lock();
            if (!representation) continue;
            for (const shared_ptr<IfcRepresentation>& styled : representation->m_Representations)
                if (styled)
                    for (const shared_ptr<IfcRepresentationItem>& item : styled->m_Items)
                        if (auto styledItem = dynamic_pointer_cast<IfcStyledItem>(item))
                            m_styles.convertIfcStyledItem(styledItem, appearances);
        }
        return SurfaceColour(appearances);
    }

    const Relations& m_relations;
    StylesConverter& m_styles;
    std::unordered_map<int, std::optional<Rgba>> m_cache;
};

// Body representations first; the others (a bounding box, a fall-back body, a surface) only
// for products that have nothing better, so that no product is drawn twice over.
int RepresentationRank(const std::wstring& identifier) {
    if (identifier.empty() || identifier == L"Body") return 0;
    if (identifier == L"Body-FallBack" || identifier == L"Facetation") return 1;
    if (identifier == L"Axis" || identifier == L"FootPrint" || identifier == L"Annotation")
        return 3;
    return 2;
}

bool HasFaces(const ItemShapeData& item) {
    auto any = [](const std::vector<shared_ptr<carve::mesh::MeshSet<3>>>& sets) {
        for (const auto& set : sets)
            if (set)
                for (const carve::mesh::Mesh<3>* mesh : set->meshes)
                    if (mesh && !mesh->faces.empty()) return true;
        return false;
    };
    return any(item.m_meshsets) || any(item.m_meshsets_open);
}

void AppendMeshSet(const carve::mesh::MeshSet<3>& set, MeshPart& part) {
    if (set.vertex_storage.empty()) return;
    const carve::mesh::Vertex<3>* first = set.vertex_storage.data();
    const int base = static_cast<int>(part.points.size());
    for (const carve::mesh::Vertex<3>& vertex : set.vertex_storage)
        part.points.push_back({static_cast<float>(vertex.v.x), static_cast<float>(vertex.v.y),
                               static_cast<float>(vertex.v.z)});
    for (const carve::mesh::Mesh<3>* mesh : set.meshes) {
        if (!mesh) continue;
        for (const carve::mesh::Face<3>* face : mesh->faces) {
            if (!face || face->n_edges < 3 || !face->edge) continue;
            part.faces.push_back(static_cast<int>(face->n_edges));
            const carve::mesh::Edge<3>* edge = face->edge;
            for (std::size_t i = 0; i < face->n_edges; ++i, edge = edge->next)
                part.faces.push_back(base + static_cast<int>(edge->vert - first));
        }
    }
}

void TakeMeshes(ProductShapeData& shape, std::optional<Rgba> materialColour, ProductData& p) {
    int best = 4;
    for (const shared_ptr<RepresentationData>& representation : shape.m_vec_representations)
        if (representation)
            for (const shared_ptr<ItemShapeData>& item : representation->m_vec_item_data)
                if (item && HasFaces(*item))
                    best = std::min(
                        best, RepresentationRank(representation->m_representation_identifier));
    if (best > 3) return;
    const std::optional<Rgba> productColour = SurfaceColour(shape.getAppearances());
    for (const shared_ptr<RepresentationData>& representation : shape.m_vec_representations) {
        if (!representation ||
            RepresentationRank(representation->m_representation_identifier) != best)
            continue;
        const std::optional<Rgba> representationColour =
            SurfaceColour(representation->m_vec_representation_appearances);
        for (const shared_ptr<ItemShapeData>& item : representation->m_vec_item_data) {
            if (!item || !HasFaces(*item)) continue;
            std::optional<Rgba> colour = SurfaceColour(item->m_vec_item_appearances);
            if (!colour) colour = representationColour;
            if (!colour) colour = productColour;
            if (!colour) colour = materialColour;
            auto part = std::find_if(p.meshes.begin(), p.meshes.end(), [&](const MeshPart& m) {
                return m.coloured == colour.has_value() && (!colour || m.colour == *colour);
            });
            if (part == p.meshes.end()) {
                p.meshes.push_back({colour.value_or(Rgba{}), colour.has_value(), {}, {}});
                part = p.meshes.end() - 1;
            }
            for (const auto& set : item->m_meshsets)
                if (set) AppendMeshSet(*set, *part);
            for (const auto& set : item->m_meshsets_open)
                if (set) AppendMeshSet(*set, *part);
        }
    }
    std::erase_if(p.meshes, [](const MeshPart& m) { return m.faces.empty(); });
}

std::string ExceptionText(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const carve::exception& e) {
        return e.str();
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "unknown failure";
    }
}

} // namespace

bool IfcSource::Mesh(ModelData& data, ImportProgress& progress, SourceMessages& messages) {
    MessageSink sink(progress, messages, ImportPhase::Meshing);
    shared_ptr<BuildingModel> model = m_state->model;
    GeometryConverter converter(model);
    // The converter makes itself the model's message target; the model outlives it.
    struct Detach {
        BuildingModel& model;
        ~Detach() { model.setMessageTarget(nullptr); }
    } detach{*model};
    sink.Attach(converter);
    carve::setEpsilon(kCarveEpsilonInMetres * m_state->lengthFactor);

    const auto& entities = model->getMapIfcEntities();
    std::map<int, shared_ptr<ProductShapeData>>& shapes = converter.getShapeInputData();
    const std::size_t count = data.products.size();
    // Openings are cut while each product is meshed; parts of an element with openings (a
    // window's panels) are cut afterwards, as IFC++'s own converter does.
    for (std::size_t i = 0; i < count; ++i) {
        const ProductData& p = data.products[i];
        const auto entity = entities.find(p.entityId);
        if (entity == entities.end()) continue;
        auto shape = make_shared<ProductShapeData>(p.entityId);
        shape->m_ifc_object_definition = dynamic_pointer_cast<IfcObjectDefinition>(entity->second);
        try {
            converter.convertIfcProductShape(shape);
        } catch (...) {
            messages.warnings.push_back("#" + std::to_string(p.entityId) + " " + p.ifcClass + ": " +
                                        ExceptionText(std::current_exception()));
        }
        shapes[p.entityId] = shape;
        if (i % 16 == 0 && !progress.Report(ImportPhase::Meshing, 0.9 * double(i) / count))
            return false;
    }
    for (auto& [id, shape] : shapes) {
        try {
            converter.subtractOpeningsInRelatedObjects(shape);
        } catch (...) {
            messages.warnings.push_back("#" + std::to_string(id) + ": " +
                                        ExceptionText(std::current_exception()));
        }
    }
    if (!progress.Report(ImportPhase::Meshing, 0.95)) return false;

    MaterialColours materials(m_state->relations,
                              *converter.getRepresentationConverter()->getStylesConverter());
    std::unordered_map<int, double> placementHeights;
    for (ProductData& p : data.products) {
        const auto shape = shapes.find(p.entityId);
        if (shape == shapes.end() || !shape->second) continue;
        const carve::math::Matrix placement = shape->second->getTransform();
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                p.transform[row * 4 + column] = placement.m[row][column];
        placementHeights.emplace(p.entityId, placement.m[3][2]);
        TakeMeshes(*shape->second, materials.Of(p.entityId), p);
    }
    for (StoreyData& storey : data.storeys)
        if (!storey.hasElevation)
            if (const auto height = placementHeights.find(storey.entityId);
                height != placementHeights.end())
                storey.elevation = height->second;
    converter.getRepresentationConverter()->getProfileCache()->clearProfileCache();
    return progress.Report(ImportPhase::Meshing, 1.0);
}

} // namespace obsidra::host::ifc
