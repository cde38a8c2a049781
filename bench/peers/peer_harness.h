// What every side-by-side program shares: the scene shapes, the text searched for, the leaf
// that is moved, the timing rules and the report format that run.sh reads.
//
// A program builds the scene through a builder with three calls, in depth-first order:
//   void Open(const char* name, int depth);   a segment (depth 0 is the root, "scene")
//   void Shell(const float* points, long leaf); one triangle, nine floats, in the open segment
//   void Close();
// and then reports one "time" line per operation (milliseconds, the median of kRuns runs after
// one warm-up, or of a single run for what can be done once per scene), one "memory" line and
// "answer" lines that must agree between the programs.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace peers {

enum class Shape { Wide, Deep };

inline constexpr long kWideChildren = 1000000;
inline constexpr int kDeepDepth = 6;
inline constexpr int kDeepFanOut = 10;
inline constexpr const char* kSearchText = "77";
// The same search as a segment pattern: every segment below the root whose name holds the text.
inline constexpr const char* kSearchPattern = "/scene/.../*77*";
// A leaf in the first half of the root's subtrees, so it survives the deletion.
inline constexpr long kMovedLeaf = 12345;
inline constexpr int kRuns = 5;

inline Shape ParseShape(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (argc == 2 && std::strcmp(argv[1], "wide") == 0) return Shape::Wide;
    if (argc == 2 && std::strcmp(argv[1], "deep") == 0) return Shape::Deep;
    std::fprintf(stderr, "usage: %s wide|deep\n", argv[0]);
    std::exit(2);
}

inline long SegmentCount(Shape shape) {
    if (shape == Shape::Wide) return kWideChildren + 1;
    long total = 0, level = 1;
    for (int d = 0; d <= kDeepDepth; ++d, level *= kDeepFanOut)
        total += level;
    return total;
}

inline long LeafCount(Shape shape) {
    if (shape == Shape::Wide) return kWideChildren;
    long level = 1;
    for (int d = 0; d < kDeepDepth; ++d)
        level *= kDeepFanOut;
    return level;
}

// Leaf i's triangle sits at (i mod 1000, i / 1000 mod 1000, 0), so the scene spans 1000 x 1000.
inline void LeafTriangle(long leaf, float* points) {
    const float x = static_cast<float>(leaf % 1000), y = static_cast<float>(leaf / 1000 % 1000);
    const float triangle[9] = {x, y, 0, x + 1, y, 0, x, y + 1, 0};
    std::copy(triangle, triangle + 9, points);
}

namespace detail {

template <typename Builder>
void BuildDeep(Builder& builder, int depth, long index, long& leaf) {
    char name[32];
    std::snprintf(name, sizeof name, "d%d_%ld", depth, index);
    builder.Open(depth == 0 ? "scene" : name, depth);
    if (depth == kDeepDepth) {
        float points[9];
        LeafTriangle(leaf, points);
        builder.Shell(points, leaf++);
    } else {
        for (int c = 0; c < kDeepFanOut; ++c)
            BuildDeep(builder, depth + 1, index * kDeepFanOut + c, leaf);
    }
    builder.Close();
}

} // namespace detail

template <typename Builder>
void BuildScene(Shape shape, Builder& builder) {
    if (shape == Shape::Deep) {
        long leaf = 0;
        detail::BuildDeep(builder, 0, 0, leaf);
        return;
    }
    char name[32];
    float points[9];
    builder.Open("scene", 0);
    for (long i = 0; i < kWideChildren; ++i) {
        std::snprintf(name, sizeof name, "s%ld", i);
        builder.Open(name, 1);
        LeafTriangle(i, points);
        builder.Shell(points, i);
        builder.Close();
    }
    builder.Close();
}

// The translation the r-th move gives the moved leaf: along z, so the scene's box grows in z.
inline float MovedLeafZ(int run) {
    return 10.0f + static_cast<float>(run);
}

inline double NowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

template <typename F>
double TimeOnce(F&& f) {
    const double start = NowMs();
    f();
    return NowMs() - start;
}

// One warm-up run, then the median of kRuns; f gets the run's number (the warm-up is 0).
template <typename F>
double TimeMedian(F&& f) {
    f(0);
    std::vector<double> times;
    for (int r = 1; r <= kRuns; ++r)
        times.push_back(TimeOnce([&] { f(r); }));
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// For an operation so slow on a peer that repeating it would make the run impractical: one run,
// no warm-up; the report names it.
template <typename F>
double TimeSingle(F&& f) {
    return TimeOnce([&] { f(1); });
}

inline long ResidentBytes() {
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * 4096;
}

inline void ReportTime(const char* operation, double ms) {
    std::printf("time %s %.3f\n", operation, ms);
}

inline void ReportMemory(Shape shape, long residentBefore) {
    const long bytes = ResidentBytes() - residentBefore;
    std::printf("memory resident_mb %.1f\n", static_cast<double>(bytes) / (1024.0 * 1024.0));
    std::printf("memory bytes_per_segment %.0f\n",
                static_cast<double>(bytes) / static_cast<double>(SegmentCount(shape)));
}

inline void ReportAnswer(const char* what, long value) {
    std::printf("answer %s %ld\n", what, value);
}

inline void ReportBox(const char* what, const float* min, const float* max) {
    std::printf("box %s %g %g %g %g %g %g\n", what, min[0], min[1], min[2], max[0], max[1], max[2]);
}

inline bool NameMatches(const char* name) {
    return std::strstr(name, kSearchText) != nullptr;
}

} // namespace peers
