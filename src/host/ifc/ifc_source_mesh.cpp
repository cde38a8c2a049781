// Meshing with IFC++'s geometry converter, product by product, so that an import can report
// its progress and stop when cancelled.
#include <chrono>
#include <condition_variable>
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
#include <mutex>
#include <thread>
#include <unordered_map>

#include "host/ifc/ifc_mesh_plan.h"
#include "host/ifc/ifc_mesh_stream.h"
#include "host/ifc/ifc_source_state.h"
#include "host/ifc/ifc_worker_processes.h"

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

// Meshes chunks of products with one converter and its caches: one per process.
class ChunkMesher {
public:
    ChunkMesher(shared_ptr<BuildingModel> model, const Relations& relations,
                ImportProgress& progress)
        : m_model(std::move(model)), m_converter(m_model), m_progress(progress),
          m_materials(relations, *m_converter.getRepresentationConverter()->getStylesConverter()) {}
    ~ChunkMesher() {
        // The converter made itself the model's message target; the model outlives it.
        m_model->setMessageTarget(nullptr);
    }

    // Openings are cut while each product is meshed; the parts of an element with openings (a
    // window's panels) afterwards, once the element is meshed too, as IFC++'s own converter
    // does. The chunk holds them all.
    void Mesh(ModelData& data, const std::vector<int>& chunk, SourceMessages& messages) {
        MessageSink sink(m_progress, messages, ImportPhase::Meshing);
        sink.Attach(m_converter);
        const auto& entities = m_model->getMapIfcEntities();
        std::map<int, shared_ptr<ProductShapeData>>& shapes = m_converter.getShapeInputData();
        for (int index : chunk) {
            const ProductData& p = data.products[index];
            const auto entity = entities.find(p.entityId);
            if (entity == entities.end()) continue;
            auto shape = make_shared<ProductShapeData>(p.entityId);
            shape->m_ifc_object_definition =
                dynamic_pointer_cast<IfcObjectDefinition>(entity->second);
            try {
                m_converter.convertIfcProductShape(shape);
            } catch (...) {
                messages.warnings.push_back("#" + std::to_string(p.entityId) + " " + p.ifcClass +
                                            ": " + ExceptionText(std::current_exception()));
            }
            shapes[p.entityId] = shape;
        }
        // In the order of entity ids, as IFC++ cuts them.
        std::vector<int> ids;
        for (int index : chunk)
            ids.push_back(data.products[index].entityId);
        std::sort(ids.begin(), ids.end());
        for (int id : ids) {
            const auto shape = shapes.find(id);
            if (shape == shapes.end() || !shape->second) continue;
            try {
                m_converter.subtractOpeningsInRelatedObjects(shape->second);
            } catch (...) {
                messages.warnings.push_back("#" + std::to_string(id) + ": " +
                                            ExceptionText(std::current_exception()));
            }
        }
        for (int index : chunk) {
            ProductData& p = data.products[index];
            const auto shape = shapes.find(p.entityId);
            if (shape == shapes.end() || !shape->second) continue;
            const carve::math::Matrix placement = shape->second->getTransform();
            for (int row = 0; row < 4; ++row)
                for (int column = 0; column < 4; ++column)
                    p.transform[row * 4 + column] = placement.m[row][column];
            TakeMeshes(*shape->second, m_materials.Of(p.entityId), p);
        }
        m_converter.unsetMessageCallBack();
        m_converter.unsetCancelCheck();
    }

    // Shapes stay until the end: freeing them chunk by chunk leaves malloc a heap so broken up
    // that meshing takes half as long again.
    void ClearCaches() {
        m_converter.getShapeInputData().clear();
        m_converter.getRepresentationConverter()->getProfileCache()->clearProfileCache();
    }

private:
    shared_ptr<BuildingModel> m_model;
    GeometryConverter m_converter;
    ImportProgress& m_progress;
    MaterialColours m_materials;
};

// Products per chunk: small enough that the first ones show soon and that the processes end
// close together, large enough that a frame's overhead stays small.
std::size_t ChunkSize(std::size_t products) {
    return std::clamp<std::size_t>(products / 64, 8, 128);
}

int WorkerCount(const MeshOptions& options, std::size_t chunks) {
    const int wanted = options.workers > 0
                           ? options.workers
                           : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    return static_cast<int>(std::min<std::size_t>(wanted, chunks));
}

// What the children send, gathered by a reading thread per child; the importing thread takes
// it between its own chunks.
class Arrivals {
public:
    Arrivals(const std::vector<std::vector<int>>& chunks, ModelData& data)
        : m_chunks(chunks), m_data(data) {}
    ~Arrivals() { Join(); }

    // The frames are decoded on the reading threads, each into the products of its own chunk,
    // which no other thread touches until the chunk is handed over.
    void Listen(const std::vector<int>& readEnds) {
        m_open = static_cast<int>(readEnds.size());
        for (int fd : readEnds)
            m_readers.emplace_back([this, fd] {
                std::string frame;
                std::vector<std::string> warnings;
                int chunk = -1;
                while (ReadFrame(fd, frame) &&
                       DecodeMeshed(frame, m_chunks, m_data, chunk, warnings)) {
                    const std::lock_guard lock(m_mutex);
                    m_arrived.push_back(chunk);
                    m_warnings.insert(m_warnings.end(), std::make_move_iterator(warnings.begin()),
                                      std::make_move_iterator(warnings.end()));
                    warnings.clear();
                    m_changed.notify_all();
                }
                const std::lock_guard lock(m_mutex);
                --m_open;
                m_changed.notify_all();
            });
    }

    // The chunks arrived since the last call, after waiting up to wait for one; empty when
    // none came. open tells whether any child may still send.
    std::vector<int> Take(std::chrono::milliseconds wait, std::vector<std::string>& warnings,
                          bool& open) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, wait, [this] { return !m_arrived.empty() || m_open == 0; });
        open = m_open > 0;
        warnings.insert(warnings.end(), std::make_move_iterator(m_warnings.begin()),
                        std::make_move_iterator(m_warnings.end()));
        m_warnings.clear();
        return std::exchange(m_arrived, {});
    }

    void Join() {
        for (std::thread& reader : m_readers)
            reader.join();
        m_readers.clear();
    }

private:
    const std::vector<std::vector<int>>& m_chunks;
    ModelData& m_data;
    std::vector<std::thread> m_readers;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<int> m_arrived;
    std::vector<std::string> m_warnings;
    int m_open = 0;
};

} // namespace

// Meshing runs on several processes rather than threads: IFC++'s converters share caches
// without locks unless it is built for OpenMP, and carve's boolean operations count on a plain
// static. Each child has its own copy of the parsed model and its own converter; chunks go to
// whichever process is free, so that a chunk full of openings does not hold up the rest.
bool IfcSource::Mesh(ModelData& data, ImportProgress& progress, SourceMessages& messages,
                     const MeshOptions& options) {
    carve::setEpsilon(kCarveEpsilonInMetres * m_state->lengthFactor);
    const std::vector<std::vector<int>> chunks =
        PlanMeshChunks(data, ChunkSize(data.products.size()));
    SharedCounter next;
    std::vector<char> done(chunks.size(), 0);
    std::size_t doneCount = 0;
    std::vector<std::string> told;
    auto deliver = [&](int chunk) {
        done[chunk] = 1;
        ++doneCount;
        if (options.meshed) options.meshed(data, chunks[chunk]);
    };
    auto report = [&] {
        return progress.Report(ImportPhase::Meshing,
                               0.95 * double(doneCount) / double(chunks.size()));
    };

    // Declared before the arrivals, so that the children are killed before their readers are
    // joined when meshing ends early.
    WorkerProcesses children;
    Arrivals arrivals(chunks, data);
    const int workers = WorkerCount(options, chunks.size());
    if (workers > 1 && next.Shared()) {
        const shared_ptr<BuildingModel> model = m_state->model;
        const Relations& relations = m_state->relations;
        children.Start(workers - 1, [&](int writeEnd) {
            ImportProgress quiet(nullptr);
            ChunkMesher mesher(model, relations, quiet);
            std::string frame;
            for (int chunk = next.Next(); chunk < static_cast<int>(chunks.size());
                 chunk = next.Next()) {
                SourceMessages chunkMessages;
                mesher.Mesh(data, chunks[chunk], chunkMessages);
                EncodeMeshed(data, chunk, chunks[chunk], chunkMessages.warnings, frame);
                if (!WriteFrame(writeEnd, frame)) return 1;
                for (int index : chunks[chunk])
                    data.products[index].meshes = {};
            }
            return 0;
        });
    }
    struct Stop {
        WorkerProcesses& children;
        Arrivals& arrivals;
        ~Stop() {
            children.Kill();
            arrivals.Join();
        }
    } stop{children, arrivals};
    arrivals.Listen(children.ReadEnds());

    ChunkMesher mesher(m_state->model, m_state->relations, progress);
    // The importing process's warnings join the children's, to be counted together.
    auto meshHere = [&](int chunk) {
        SourceMessages chunkMessages;
        mesher.Mesh(data, chunks[chunk], chunkMessages);
        told.insert(told.end(), std::make_move_iterator(chunkMessages.warnings.begin()),
                    std::make_move_iterator(chunkMessages.warnings.end()));
        deliver(chunk);
    };
    auto takeArrived = [&](std::chrono::milliseconds wait) {
        bool open = false;
        for (int chunk : arrivals.Take(wait, told, open))
            deliver(chunk);
        return open;
    };
    using Clock = std::chrono::steady_clock;
    Clock::duration longestChunk{};
    for (int chunk = next.Next(); chunk < static_cast<int>(chunks.size()); chunk = next.Next()) {
        const Clock::time_point start = Clock::now();
        meshHere(chunk);
        longestChunk = std::max(longestChunk, Clock::now() - start);
        takeArrived(std::chrono::milliseconds(0));
        if (!report()) return false;
    }
    // A child that sends nothing for far longer than any chunk took here is stuck (a lock held
    // by another thread of the parent when it forked, say): it is ended, and its chunks are
    // meshed below.
    const Clock::duration patience =
        std::max<Clock::duration>(std::chrono::seconds(5), 20 * longestChunk);
    Clock::time_point lastNews = Clock::now();
    for (std::size_t before = doneCount; takeArrived(std::chrono::milliseconds(50));
         before = doneCount) {
        if (!report()) return false;
        if (doneCount != before)
            lastNews = Clock::now();
        else if (Clock::now() - lastNews > patience)
            children.Kill();
    }
    arrivals.Join();
    children.Wait();
    // Chunks that a child took but never sent (it failed or was stuck) are meshed here.
    for (std::size_t chunk = 0; chunk < chunks.size(); ++chunk) {
        if (done[chunk]) continue;
        meshHere(static_cast<int>(chunk));
        if (!report()) return false;
    }
    mesher.ClearCaches();
    WarningTally tally(kMaxMessagesKept);
    for (std::string& warning : told)
        tally.Add(std::move(warning));
    for (std::string& line : tally.Lines())
        messages.warnings.push_back(std::move(line));

    for (StoreyData& storey : data.storeys)
        if (!storey.hasElevation)
            for (const ProductData& p : data.products)
                if (p.entityId == storey.entityId) storey.elevation = p.transform[14];
    return progress.Report(ImportPhase::Meshing, 1.0);
}

} // namespace obsidra::host::ifc
