#include "host/mesh/stated_faces.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include "host/mesh/json_reader.h"

namespace obsidra::host::mesh {

namespace {

std::string LowerExtension(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

// A binary STL is an 80-byte header, a little-endian triangle count and 50 bytes a triangle.
// An ASCII file may begin with "solid" too, so only a size that fits the count makes it binary.
std::optional<StatedFaces> StlFaces(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    unsigned char header[84];
    if (!in.read(reinterpret_cast<char*>(header), sizeof header)) return std::nullopt;
    const std::uint32_t count = header[80] | header[81] << 8 | header[82] << 16 |
                                static_cast<std::uint32_t>(header[83]) << 24;
    std::error_code code;
    const auto size = std::filesystem::file_size(path, code);
    if (code || size != 84 + 50 * std::uintmax_t{count}) return std::nullopt;
    return StatedFaces{count, "its header"};
}

// The "element face N" line of a PLY header, ASCII or binary alike.
std::optional<StatedFaces> PlyFaces(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string line;
    for (int lines = 0; lines < 1000 && std::getline(in, line); ++lines) {
        std::istringstream words(line);
        std::string word, element;
        long long count = -1;
        words >> word;
        if (word == "end_header") break;
        if (word == "element" && words >> element >> count && element == "face" && count >= 0)
            return StatedFaces{static_cast<std::size_t>(count), "its header"};
    }
    return std::nullopt;
}

// The triangles of a glTF mesh as its primitives' accessors count them: lists, strips and fans.
std::size_t MeshTriangles(const JsonValue& root, const JsonValue& mesh) {
    const JsonValue* accessors = root.Member("accessors");
    const JsonValue* primitives = mesh.Member("primitives");
    if (!accessors || !primitives) return 0;
    std::size_t triangles = 0;
    for (const JsonValue& primitive : primitives->items) {
        const JsonValue* modeValue = primitive.Member("mode");
        const std::size_t mode = modeValue ? modeValue->Count().value_or(0) : 4;
        const JsonValue* attributes = primitive.Member("attributes");
        const JsonValue* indices = primitive.Member("indices");
        const JsonValue* accessor = accessors->Item(indices      ? indices
                                                    : attributes ? attributes->Member("POSITION")
                                                                 : nullptr);
        const JsonValue* countValue = accessor ? accessor->Member("count") : nullptr;
        const std::size_t count = countValue ? countValue->Count().value_or(0) : 0;
        if (mode == 4) triangles += count / 3;
        if ((mode == 5 || mode == 6) && count >= 3) triangles += count - 2;
    }
    return triangles;
}

// The JSON of a glTF file: the whole of a .gltf, the first chunk of a binary .glb.
std::optional<std::string> GltfJson(const std::string& path, bool binary) {
    std::ifstream in(path, std::ios::binary);
    std::error_code code;
    const auto size = std::filesystem::file_size(path, code);
    if (!in || code) return std::nullopt;
    std::uintmax_t length = size;
    if (binary) {
        unsigned char header[20];
        if (!in.read(reinterpret_cast<char*>(header), sizeof header)) return std::nullopt;
        if (std::string_view(reinterpret_cast<char*>(header), 4) != "glTF" ||
            std::string_view(reinterpret_cast<char*>(header) + 16, 4) != "JSON")
            return std::nullopt;
        // The first chunk's length, little-endian, after the magic, the version and the size.
        length = header[12] | header[13] << 8 | header[14] << 16 |
                 static_cast<std::uint32_t>(header[15]) << 24;
        if (length > size - sizeof header) return std::nullopt;
    }
    std::string json(static_cast<std::size_t>(length), '\0');
    if (!in.read(json.data(), static_cast<std::streamsize>(length))) return std::nullopt;
    return json;
}

// Every mesh once, placed or not, however often: as assimp reads them.
std::optional<StatedFaces> GltfFaces(const std::string& path, bool binary) {
    const std::optional<std::string> json = GltfJson(path, binary);
    const std::optional<JsonValue> root = json ? ParseJson(*json) : std::nullopt;
    const JsonValue* meshes = root ? root->Member("meshes") : nullptr;
    if (!meshes) return std::nullopt;
    std::size_t triangles = 0;
    for (const JsonValue& mesh : meshes->items)
        triangles += MeshTriangles(*root, mesh);
    return StatedFaces{triangles, "its JSON"};
}

} // namespace

std::optional<StatedFaces> ReadStatedFaces(const std::string& path) {
    const std::string extension = LowerExtension(path);
    if (extension == ".stl") return StlFaces(path);
    if (extension == ".ply") return PlyFaces(path);
    if (extension == ".gltf" || extension == ".glb") return GltfFaces(path, extension == ".glb");
    return std::nullopt;
}

} // namespace obsidra::host::mesh
