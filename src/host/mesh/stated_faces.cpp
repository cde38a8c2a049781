#include "host/mesh/stated_faces.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>

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

} // namespace

std::optional<StatedFaces> ReadStatedFaces(const std::string& path) {
    const std::string extension = LowerExtension(path);
    if (extension == ".stl") return StlFaces(path);
    if (extension == ".ply") return PlyFaces(path);
    return std::nullopt;
}

} // namespace obsidra::host::mesh
