#include "host/mesh/off_check.h"

#include <charconv>
#include <sstream>
#include <string_view>

namespace obsidra::host::mesh {

namespace {

// The next line that holds something (a comment counts as nothing where comments are allowed),
// or false at the end; its number counts every line.
bool NextLine(std::istream& in, std::string& line, int& number, bool comments = false) {
    while (std::getline(in, line)) {
        ++number;
        const std::size_t first = line.find_first_not_of(" \t\r");
        if (first != std::string::npos && !(comments && line[first] == '#')) return true;
    }
    return false;
}

bool Whole(const std::string& word, unsigned long long& value) {
    const char* end = word.data() + word.size();
    const auto [next, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && next == end;
}

bool Real(const std::string& word) {
    double value = 0;
    const char* end = word.data() + word.size();
    const auto [next, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && next == end;
}

std::string At(int line, const std::string& problem) {
    return "line " + std::to_string(line) + ": " + problem;
}

} // namespace

std::string OffProblem(std::istream& in) {
    std::string line, word;
    int number = 0;
    if (!NextLine(in, line, number, true)) return "no OFF header";
    std::istringstream words(line);
    words >> word;
    if (word == "OFF" && !(words >> word)) {
        if (!NextLine(in, line, number, true)) return "no vertex and face counts";
        words.clear();
        words.str(line);
        words >> word;
    }
    unsigned long long vertices = 0, faces = 0;
    if (!Whole(word, vertices) || !(words >> word) || !Whole(word, faces))
        return At(number, "no vertex and face counts");
    for (unsigned long long v = 0; v < vertices; ++v) {
        if (!NextLine(in, line, number)) return "fewer vertices than its header states";
        std::istringstream coordinates(line);
        std::string x, y, z;
        if (!(coordinates >> x >> y >> z) || !Real(x) || !Real(y) || !Real(z))
            return At(number, "a vertex without three coordinates");
    }
    for (unsigned long long f = 0; f < faces; ++f) {
        if (!NextLine(in, line, number)) return {}; // assimp keeps the faces there are
        std::istringstream indices(line);
        unsigned long long corners = 0, corner = 0;
        if (!(indices >> word) || !Whole(word, corners) || corners == 0 || corners > 9)
            return At(number, "a face without a corner count from 1 to 9");
        for (unsigned long long c = 0; c < corners; ++c)
            if (!(indices >> word) || !Whole(word, corner) || corner >= vertices)
                return At(number, "a face corner that is not one of the vertices");
    }
    return {};
}

} // namespace obsidra::host::mesh
