// What opening a file costs the viewer, in its two steps: reading on the worker thread and
// writing into the database on the window's. A generated mesh of OBSIDRA_BENCH_TRIANGLES
// triangles (a million by default) as binary STL and PLY, against assimp reading it alone; and
// the sample buildings with the most products (Tekla Carwash) and the most bytes (Office_A),
// against IFC++ parsing and meshing them alone, with the time to the first picture of each.
#include <assimp/Importer.hpp>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ifcpp/geometry/Carve/GeometryConverter.h>
#include <ifcpp/model/BuildingModel.h>
#include <ifcpp/reader/ReaderSTEP.h>
#include <mutex>
#include <sstream>
#include <thread>
#include <unistd.h>

#include <obsidra/hc.h>

#include "../host/process_cpu.h"
#include "host/viewer/scene_reader.h"

namespace {

namespace fs = std::filesystem;
using obsidra::host::viewer::PreviewPart;
using obsidra::host::viewer::ReadSceneFile;

const fs::path kBuildings[] = {
    fs::path(OBSIDRA_IFC_SAMPLES) / "Tekla_Carwash_MiniProject_IFC2x3.ifc",
    fs::path(OBSIDRA_IFC_SAMPLES) / "Office_A_20110811.ifc",
};

// A square grid of side n in the plane z = 0, two triangles a cell.
struct Grid {
    explicit Grid(long triangles) : n(static_cast<int>(std::ceil(std::sqrt(triangles / 2.0)))) {}
    int n;
    int Vertices() const { return (n + 1) * (n + 1); }
    long Triangles() const { return 2L * n * n; }
    template <typename Emit>
    void ForEachTriangle(Emit emit) const {
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                const int corner = y * (n + 1) + x;
                emit(corner, corner + 1, corner + n + 2);
                emit(corner, corner + n + 2, corner + n + 1);
            }
    }
    void Point(int index, float out[3]) const {
        out[0] = float(index % (n + 1));
        out[1] = float(index / (n + 1));
        out[2] = 0;
    }
};

template <typename T>
void Put(std::ofstream& out, T value) {
    out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

void WriteStl(const Grid& grid, const fs::path& path) {
    std::ofstream out(path, std::ios::binary);
    out << std::string(80, ' ');
    Put(out, static_cast<std::uint32_t>(grid.Triangles()));
    grid.ForEachTriangle([&](int a, int b, int c) {
        for (float normal : {0.f, 0.f, 1.f})
            Put(out, normal);
        for (int corner : {a, b, c}) {
            float point[3];
            grid.Point(corner, point);
            out.write(reinterpret_cast<const char*>(point), sizeof point);
        }
        Put(out, std::uint16_t{0});
    });
}

void WritePly(const Grid& grid, const fs::path& path) {
    std::ofstream out(path, std::ios::binary);
    out << "ply\nformat binary_little_endian 1.0\nelement vertex " << grid.Vertices()
        << "\nproperty float x\nproperty float y\nproperty float z\nelement face "
        << grid.Triangles() << "\nproperty list uchar int vertex_indices\nend_header\n";
    for (int i = 0; i < grid.Vertices(); ++i) {
        float point[3];
        grid.Point(i, point);
        out.write(reinterpret_cast<const char*>(point), sizeof point);
    }
    grid.ForEachTriangle([&](int a, int b, int c) {
        Put(out, std::uint8_t{3});
        for (int corner : {a, b, c})
            Put(out, corner);
    });
}

void BM_AssimpAlone(benchmark::State& state, const fs::path& path) {
    for (auto _ : state) {
        Assimp::Importer importer;
        benchmark::DoNotOptimize(importer.ReadFile(path.string(), 0));
    }
}

void BM_IfcPlusPlusParseAndMesh(benchmark::State& state, const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    for (auto _ : state) {
        std::string copy = text.str();
        auto model = std::make_shared<BuildingModel>();
        ReaderSTEP reader;
        reader.loadModelFromString(copy, model);
        GeometryConverter converter(model);
        converter.convertGeometry();
        benchmark::DoNotOptimize(converter.getShapeInputData().size());
    }
}

// The worker's step.
void BM_ViewerRead(benchmark::State& state, const fs::path& path) {
    for (auto _ : state) {
        auto read = ReadSceneFile(path.string());
        if (!read.scene) state.SkipWithError(read.error.c_str());
    }
}

// The window's step, measured alone.
void BM_ViewerWrite(benchmark::State& state, const fs::path& path) {
    for (auto _ : state) {
        state.PauseTiming();
        HC_Reset_System();
        auto read = ReadSceneFile(path.string());
        const HC_KEY segment = HC_Create_Segment("/model/file");
        std::string error;
        state.ResumeTiming();
        if (!read.scene || !read.scene->Write(segment, error)) state.SkipWithError("not written");
    }
}

// Opening a building as the viewer does: read on a worker thread whose previews this thread
// writes into a scratch segment as they come, then the file's own scene written in their place.
// Counters: the first preview in the scene and the whole load, wall time; CPU time of the load
// on every process and thread; and the reading thread's CPU time until its first preview, which
// is the first picture's wall time on idle cores (the scheduler shares a busy machine's cores
// among sessions, whatever their processes).
void BM_ViewerLoad(benchmark::State& state, const fs::path& path) {
    using Clock = std::chrono::steady_clock;
    double first = 0, whole = 0, cpu = 0, firstCpu = 0;
    for (auto _ : state) {
        HC_Reset_System();
        const HC_KEY preview = HC_Create_Segment("/model/preview");
        const HC_KEY file = HC_Create_Segment("/model/file");
        const Clock::time_point start = Clock::now();
        const double cpuStart = ProcessCpuSeconds();
        auto since = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };

        std::mutex mutex;
        std::condition_variable ready;
        std::vector<std::unique_ptr<PreviewPart>> parts;
        bool read = false;
        obsidra::host::viewer::SceneReadResult result;
        double readerCpu = -1;
        std::thread reader([&] {
            const double readerStart = ThreadCpuSeconds();
            result = ReadSceneFile(path.string(), {}, [&](std::unique_ptr<PreviewPart> part) {
                const std::lock_guard lock(mutex);
                if (readerCpu < 0) readerCpu = ThreadCpuSeconds() - readerStart;
                parts.push_back(std::move(part));
                ready.notify_one();
            });
            const std::lock_guard lock(mutex);
            read = true;
            ready.notify_one();
        });
        double shown = -1;
        for (bool end = false; !end;) {
            std::unique_lock lock(mutex);
            ready.wait(lock, [&] { return !parts.empty() || read; });
            std::vector<std::unique_ptr<PreviewPart>> taken = std::exchange(parts, {});
            end = read && taken.empty();
            lock.unlock();
            for (const auto& part : taken)
                part->Write(preview);
            if (shown < 0 && !taken.empty()) shown = since();
        }
        reader.join();
        HC_Delete_By_Key(preview);
        std::string error;
        if (!result.scene || !result.scene->Write(file, error)) state.SkipWithError("not loaded");
        first += shown;
        firstCpu += readerCpu;
        whole += since();
        cpu += ProcessCpuSeconds() - cpuStart;
    }
    const double n = double(state.iterations());
    state.counters["first_picture_ms"] = first / n * 1e3;
    state.counters["whole_ms"] = whole / n * 1e3;
    state.counters["cpu_ms"] = cpu / n * 1e3;
    state.counters["first_picture_cpu_ms"] = firstCpu / n * 1e3;
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const char* size = std::getenv("OBSIDRA_BENCH_TRIANGLES");
    const Grid grid(size ? std::atol(size) : 1'000'000);
    const fs::path dir = fs::temp_directory_path() / ("obsidra_bench_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path stl = dir / "grid.stl";
    const fs::path ply = dir / "grid.ply";
    WriteStl(grid, stl);
    WritePly(grid, ply);

    for (const fs::path& path : {stl, ply, kBuildings[0], kBuildings[1]}) {
        const std::string name = path.filename().string();
        const bool building = path.extension() == ".ifc";
        benchmark::RegisterBenchmark(
            ("BM_" + std::string(building ? "IfcPlusPlusParseAndMesh" : "AssimpAlone") + "/" + name)
                .c_str(),
            building ? BM_IfcPlusPlusParseAndMesh : BM_AssimpAlone, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_ViewerRead/" + name).c_str(), BM_ViewerRead, path)
            ->Unit(benchmark::kMillisecond);
        // Each iteration reads the file again untimed: a few are enough.
        benchmark::RegisterBenchmark(("BM_ViewerWrite/" + name).c_str(), BM_ViewerWrite, path)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(5);
        if (building)
            benchmark::RegisterBenchmark(("BM_ViewerLoad/" + name).c_str(), BM_ViewerLoad, path)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
    }
    benchmark::AddCustomContext("triangles", std::to_string(grid.Triangles()));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    fs::remove_all(dir);
    return 0;
}
