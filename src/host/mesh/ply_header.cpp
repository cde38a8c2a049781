#include "host/mesh/ply_header.h"

#include <array>
#include <sstream>
#include <string_view>

namespace obsidra::host::mesh {

namespace {

constexpr std::array<std::string_view, 16> kTypes = {
    "char", "uchar", "short", "ushort", "int",   "uint",   "float",   "double",
    "int8", "uint8", "int16", "uint16", "int32", "uint32", "float32", "float64"};
// Headers are a few lines; a file whose first 64 KB hold no end is no PLY file of ours.
constexpr std::size_t kMaxHeader = 64 * 1024;

bool IsType(std::string_view word) {
    for (std::string_view type : kTypes)
        if (word == type) return true;
    return false;
}

// What is wrong with one line after the first, or empty.
std::string LineProblem(const std::string& line) {
    std::istringstream words(line);
    std::string keyword, a, b, c, extra;
    words >> keyword;
    if (keyword == "format") {
        words >> a >> b;
        if ((a == "ascii" || a == "binary_little_endian" || a == "binary_big_endian") &&
            b == "1.0" && !(words >> extra))
            return {};
        return "a format this reader does not know";
    }
    if (keyword == "element") {
        long long count = -1;
        if (words >> a >> count && count >= 0 && !(words >> extra)) return {};
        return "an element without a name and a count";
    }
    if (keyword == "property") {
        words >> a;
        if (a == "list") {
            if (words >> b >> c >> extra && IsType(b) && IsType(c) && !(words >> a)) return {};
        } else if (IsType(a) && words >> b && !(words >> extra)) {
            return {};
        }
        return "a property of no known type";
    }
    // Writers put free text in headers ("Created by ..."), which readers pass over.
    return {};
}

} // namespace

std::string PlyHeaderProblem(std::istream& in) {
    std::string line;
    std::size_t read = 0;
    for (int number = 1; std::getline(in, line); ++number) {
        read += line.size() + 1;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        for (char c : line)
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t')
                return "line " + std::to_string(number) + ": a header holds no binary bytes";
        if (number == 1) {
            if (line != "ply") return "not a PLY file: it does not begin with \"ply\"";
            continue;
        }
        if (line == "end_header") return {};
        if (std::string problem = LineProblem(line); !problem.empty())
            return "line " + std::to_string(number) + ": " + problem;
        if (read > kMaxHeader) break;
    }
    return "the header has no end_header line";
}

} // namespace obsidra::host::mesh
