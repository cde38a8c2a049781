#include "host/mesh/mesh_reader.h"

#include <algorithm>
#include <assimp/BaseImporter.h>
#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

#include "host/mesh/off_check.h"
#include "host/mesh/ply_header.h"
#include "host/mesh/stated_faces.h"

namespace obsidra::host::mesh {

namespace {

namespace fs = std::filesystem;

// assimp's own reading and post-processing take this share of the progress; turning its
// meshes into ours the rest.
constexpr double kAssimpShare = 0.7;

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

// Remembers a cancel, since assimp asks again after it was told to stop.
class Progress {
public:
    explicit Progress(const MeshProgress& callback) : m_callback(callback) {}
    bool Report(double fraction) {
        fraction = std::clamp(fraction, m_last, 1.0);
        m_last = fraction;
        if (!m_cancelled && m_callback && !m_callback(fraction)) m_cancelled = true;
        return !m_cancelled;
    }
    bool Cancelled() const { return m_cancelled; }

private:
    const MeshProgress& m_callback;
    double m_last = 0;
    bool m_cancelled = false;
};

class AssimpProgress final : public Assimp::ProgressHandler {
public:
    explicit AssimpProgress(Progress& progress) : m_progress(progress) {}
    bool Update(float percentage) override {
        return percentage < 0 ? !m_progress.Cancelled()
                              : m_progress.Report(kAssimpShare * double(percentage));
    }

private:
    Progress& m_progress;
};

MeshReadResult Cancelled() {
    MeshReadResult result;
    result.cancelled = true;
    return result;
}

MeshReadResult Failure(std::string error) {
    MeshReadResult result;
    result.error = std::move(error);
    return result;
}

// assimp reads a file with the one reader that claims its extension. When several claim it (the
// two glTF readers .gltf and .glb, three readers .xml) and none of them takes the content, it tries
// every reader it has on the content, whatever the file is called: a .glb holding an OFF file would
// go to the OFF reader unchecked. Such a file is refused instead.
bool NoClaimantTakes(const std::string& path, const std::string& extension,
                     const Assimp::Importer& importer) {
    std::vector<Assimp::BaseImporter*> claimants;
    for (std::size_t i = 0; i < importer.GetImporterCount(); ++i) {
        std::set<std::string> extensions;
        importer.GetImporter(i)->GetExtensionList(extensions);
        if (extensions.count(extension.substr(1))) claimants.push_back(importer.GetImporter(i));
    }
    return claimants.size() > 1 && std::none_of(claimants.begin(), claimants.end(), [&](auto* r) {
               return r->CanRead(path, importer.GetIOHandler(), true);
           });
}

// Why the file cannot be a mesh file before assimp is asked, or empty.
std::string CheckFile(const std::string& path, const Assimp::Importer& importer) {
    std::error_code code;
    if (fs::is_directory(path, code)) return "cannot open " + path + ": it is a directory";
    std::ifstream in(path, std::ios::binary);
    if (!in) return "cannot open " + path + ": " + std::strerror(errno);
    if (in.peek() == std::ifstream::traits_type::eof()) return path + ": the file is empty";
    const std::string extension = fs::path(path).extension().string();
    if (extension.empty()) return path + ": the file name has no extension to tell its format";
    if (!importer.IsExtensionSupported(Lower(extension)))
        return path + ": " + extension + " is not a mesh format this viewer reads";
    if (Lower(extension) == ".ply")
        if (std::string problem = PlyHeaderProblem(in); !problem.empty())
            return path + ": " + problem;
    if (Lower(extension) == ".off")
        if (std::string problem = OffProblem(in); !problem.empty()) return path + ": " + problem;
    if (NoClaimantTakes(path, Lower(extension), importer))
        return path + ": the file is not what its extension " + extension + " says";
    return {};
}

// glTF states its colours in linear light; the view shows colours as they are stored (sRGB).
float Encoded(float linear) {
    return linear <= 0.0031308f ? 12.92f * linear : 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
}

std::optional<Rgb> DiffuseColour(const aiScene& scene, unsigned materialIndex, bool linear) {
    if (materialIndex >= scene.mNumMaterials) return std::nullopt;
    const aiMaterial& material = *scene.mMaterials[materialIndex];
    // assimp gives a file without materials one of its own, white or grey: no colour of the
    // file's, so the view's default applies.
    if (material.GetName() == aiString(AI_DEFAULT_MATERIAL_NAME)) return std::nullopt;
    aiColor4D colour;
    if (material.Get(AI_MATKEY_COLOR_DIFFUSE, colour) != AI_SUCCESS) return std::nullopt;
    // A black surface that glows (a label, a lamp) shows its glow: the view lights no emission.
    aiColor4D glow;
    if (colour.r + colour.g + colour.b == 0 &&
        material.Get(AI_MATKEY_COLOR_EMISSIVE, glow) == AI_SUCCESS)
        colour = glow;
    if (linear) return Rgb{Encoded(colour.r), Encoded(colour.g), Encoded(colour.b)};
    return Rgb{colour.r, colour.g, colour.b};
}

// Points and lines have no faces; they are left out and counted.
MeshShell ConvertMesh(const aiScene& scene, const aiMesh& mesh, bool linearColours,
                      std::size_t& leftOut) {
    MeshShell shell;
    shell.points.reserve(mesh.mNumVertices);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i)
        shell.points.push_back({mesh.mVertices[i].x, mesh.mVertices[i].y, mesh.mVertices[i].z});
    shell.faces.reserve(std::size_t{mesh.mNumFaces} * 4);
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        const aiFace& face = mesh.mFaces[f];
        if (face.mNumIndices < 3) {
            ++leftOut;
            continue;
        }
        shell.faces.push_back(static_cast<int>(face.mNumIndices));
        for (unsigned i = 0; i < face.mNumIndices; ++i)
            shell.faces.push_back(static_cast<int>(face.mIndices[i]));
        ++shell.faceCount;
    }
    shell.colour = DiffuseColour(scene, mesh.mMaterialIndex, linearColours);
    return shell;
}

bool SharesNoVertex(const aiScene& scene) {
    std::size_t vertices = 0, corners = 0;
    for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
        const aiMesh& mesh = *scene.mMeshes[m];
        vertices += mesh.mNumVertices;
        for (unsigned f = 0; f < mesh.mNumFaces; ++f)
            corners += mesh.mFaces[f].mNumIndices;
    }
    return vertices > 0 && vertices >= corners;
}

std::optional<std::array<float, 16>> RowVectorMatrix(const aiMatrix4x4& m) {
    if (m.IsIdentity()) return std::nullopt;
    // assimp's matrices act on column vectors; the scene's on row vectors.
    return std::array<float, 16>{m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
                                 m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
}

void ConvertNodes(const aiNode& root, MeshScene& out) {
    std::vector<std::pair<const aiNode*, int>> pending{{&root, -1}};
    while (!pending.empty()) {
        auto [node, parent] = pending.back();
        pending.pop_back();
        const int index = static_cast<int>(out.nodes.size());
        MeshNode& converted = out.nodes.emplace_back();
        converted.name = node->mName.C_Str();
        converted.parent = parent;
        converted.matrix = RowVectorMatrix(node->mTransformation);
        converted.shells.assign(node->mMeshes, node->mMeshes + node->mNumMeshes);
        for (unsigned i = node->mNumChildren; i-- > 0;)
            pending.emplace_back(node->mChildren[i], index);
    }
}

bool HasYUp(const std::string& extension) {
    return extension != ".stl" && extension != ".3mf";
}

// The root's matrix followed by the turn from +Y up to +Z up: (x, y, z) becomes (x, -z, y).
void TurnYUpToZUp(MeshNode& root) {
    std::array<float, 16> m =
        root.matrix.value_or(std::array<float, 16>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    for (int row = 0; row < 4; ++row) {
        float* r = &m[static_cast<std::size_t>(row) * 4];
        const float y = r[1], z = r[2];
        r[1] = -z;
        r[2] = y;
    }
    root.matrix = m;
}

std::string Thousands(std::size_t n) {
    std::string digits = std::to_string(n);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), ",");
    return digits;
}

} // namespace

MeshReadResult ReadMeshFile(const std::string& path, const MeshReadOptions& options) {
    Progress progress(options.progress);
    Assimp::Importer importer;
    if (std::string problem = CheckFile(path, importer); !problem.empty())
        return Failure(std::move(problem));
    if (!progress.Report(0)) return Cancelled();

    // The scene keeps positions only; without normals, colours and texture coordinates,
    // identical vertices can be joined, so that the faces around a vertex share it.
    importer.SetPropertyInteger(AI_CONFIG_PP_RVC_FLAGS,
                                aiComponent_NORMALS | aiComponent_TANGENTS_AND_BITANGENTS |
                                    aiComponent_COLORS | aiComponent_TEXCOORDS);
    importer.SetProgressHandler(new AssimpProgress(progress)); // the importer owns it
    unsigned flags = aiProcess_RemoveComponent;
    if (options.flatten) flags |= aiProcess_PreTransformVertices;
    const aiScene* scene = importer.ReadFile(path, flags);
    // Joining costs several times the read, so only files that share no vertex at all (STL,
    // OBJ as assimp reads them) pay for it.
    if (scene && !progress.Cancelled() && SharesNoVertex(*scene))
        scene = importer.ApplyPostProcessing(aiProcess_JoinIdenticalVertices);
    if (progress.Cancelled()) return Cancelled();
    if (!scene) return Failure(path + ": " + importer.GetErrorString());
    if ((scene->mFlags & AI_SCENE_FLAGS_INCOMPLETE) || !scene->mRootNode)
        return Failure(path + ": the file holds no complete scene");

    MeshScene out;
    std::size_t leftOut = 0;
    out.shells.reserve(scene->mNumMeshes);
    const std::string extension = Lower(fs::path(path).extension().string());
    const bool linearColours = extension == ".gltf" || extension == ".glb";
    for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
        out.shells.push_back(ConvertMesh(*scene, *scene->mMeshes[m], linearColours, leftOut));
        if (!progress.Report(kAssimpShare + (1 - kAssimpShare) * (m + 1) / scene->mNumMeshes))
            return Cancelled();
    }
    if (options.flatten) {
        // assimp leaves one child of the root per mesh, each already in world coordinates.
        MeshNode& root = out.nodes.emplace_back();
        root.name = scene->mRootNode->mName.C_Str();
        for (std::size_t m = 0; m < out.shells.size(); ++m)
            root.shells.push_back(m);
    } else {
        ConvertNodes(*scene->mRootNode, out);
    }
    if (options.zUp && HasYUp(extension)) TurnYUpToZUp(out.nodes.front());
    const std::size_t faces = out.FaceCount();
    if (faces == 0) return Failure(path + ": the file holds no faces");
    if (leftOut)
        out.warnings.push_back(path + ": " + Thousands(leftOut) +
                               " points and lines left out; the scene holds faces only");
    if (auto stated = ReadStatedFaces(path); stated && stated->count > faces)
        out.warnings.push_back(path + ": " + Thousands(stated->count - faces) + " of the " +
                               Thousands(stated->count) + " faces " + stated->source +
                               " states were lost");
    progress.Report(1);
    MeshReadResult result;
    result.scene = std::move(out);
    return result;
}

std::vector<std::string> MeshExtensions() {
    Assimp::Importer importer;
    std::string list;
    importer.GetExtensionList(list);
    std::vector<std::string> extensions;
    for (std::size_t at = 0; at < list.size();) {
        const std::size_t end = std::min(list.find(';', at), list.size());
        std::string_view entry(list.data() + at, end - at);
        if (entry.starts_with("*.")) entry.remove_prefix(2);
        if (!entry.empty()) extensions.push_back(Lower(entry));
        at = end + 1;
    }
    return extensions;
}

bool IsMeshExtension(std::string_view extension) {
    return Assimp::Importer().IsExtensionSupported("." + Lower(extension));
}

} // namespace obsidra::host::mesh
