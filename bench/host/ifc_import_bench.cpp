// Importing the sample buildings, against IFC++'s own parse and mesh of the same files; and
// the peak memory of each, measured in a child process of its own.
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ifcpp/geometry/Carve/GeometryConverter.h>
#include <ifcpp/model/BuildingModel.h>
#include <ifcpp/reader/ReaderSTEP.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <obsidra/hc.h>

#include "host/ifc/ifc_importer.h"
#include "process_cpu.h"

namespace {

namespace fs = std::filesystem;
using obsidra::host::ifc::ImportIfcFile;

// Smallest to largest; the last is the one the import's speed goal is measured on.
constexpr const char* kSamples[] = {
    "IfcOpenHouse_IFC4.ifc", "EnEff_BoilerGasRadiatorDHW_IFC4.ifc",
    "Duplex_A_IFC2x3.ifc",   "AC20-FZK-Haus.ifc",
    "Office_A_20110811.ifc", "Tekla_Carwash_MiniProject_IFC2x3.ifc",
};

fs::path SamplesDir() {
    if (const char* dir = std::getenv("OBSIDRA_IFC_SAMPLES")) return dir;
    return OBSIDRA_IFC_SAMPLES;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return std::move(text).str();
}

// What the import is measured against: the file read, parsed and meshed by IFC++ alone.
std::size_t ParseAndMesh(const fs::path& path) {
    std::string text = ReadFile(path);
    auto model = std::make_shared<BuildingModel>();
    ReaderSTEP reader;
    reader.loadModelFromString(text, model);
    GeometryConverter converter(model);
    converter.convertGeometry();
    return converter.getShapeInputData().size();
}

std::size_t Import(const fs::path& path) {
    HC_Reset_System();
    const auto result = ImportIfcFile(path.string());
    if (!result.building) std::abort();
    return result.building->Components().size();
}

// Reading, parsing and meshing on range(0) processes, wall time. Counters: CPU time on every
// process and thread; the wall time until meshing began; and, since on a busy machine the
// scheduler shares the cores among sessions whatever their processes, the wall time the
// critical path would take on idle cores: the importing thread's CPU time, or the parse's plus
// a child's share of the meshing, whichever is longer.
void BM_PrepareIfc(benchmark::State& state, const fs::path& path) {
    using Clock = std::chrono::steady_clock;
    const int workers = static_cast<int>(state.range(0));
    double cpu = 0, parsed = 0, critical = 0;
    for (auto _ : state) {
        const double cpuStart = ProcessCpuSeconds();
        const double childrenStart = ChildrenCpuSeconds();
        const double threadStart = ThreadCpuSeconds();
        const Clock::time_point start = Clock::now();
        Clock::time_point meshing{};
        double parseCpu = 0;
        const auto prepared = obsidra::host::ifc::PrepareIfcFile(
            path.string(),
            [&](obsidra::host::ifc::ImportPhase phase, double) {
                if (phase == obsidra::host::ifc::ImportPhase::Meshing &&
                    meshing == Clock::time_point{}) {
                    meshing = Clock::now();
                    parseCpu = ThreadCpuSeconds() - threadStart;
                }
                return true;
            },
            {workers, {}});
        if (!prepared.model) state.SkipWithError("not prepared");
        const double children = ChildrenCpuSeconds() - childrenStart;
        const double importing = ThreadCpuSeconds() - threadStart;
        cpu += ProcessCpuSeconds() - cpuStart;
        parsed += std::chrono::duration<double>(meshing - start).count();
        critical +=
            workers > 1 ? std::max(importing, parseCpu + children / (workers - 1)) : importing;
    }
    const double n = double(state.iterations());
    state.counters["cpu_ms"] = cpu / n * 1e3;
    state.counters["parse_ms"] = parsed / n * 1e3;
    state.counters["idle_cores_ms"] = critical / n * 1e3;
}

void BM_IfcPlusPlusParseAndMesh(benchmark::State& state, const fs::path& path) {
    for (auto _ : state)
        benchmark::DoNotOptimize(ParseAndMesh(path));
}

void BM_ImportIfc(benchmark::State& state, const fs::path& path) {
    std::size_t components = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(components = Import(path));
    state.counters["components"] = static_cast<double>(components);
}

// The resident set of this process now, in MiB.
double ResidentMiB() {
    std::ifstream statm("/proc/self/statm");
    double pages = 0;
    statm >> pages >> pages;
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

// The child's peak resident set, in MiB, which includes what the benchmark process held when
// it forked (reported as base_MiB).
template <typename Job>
void BM_PeakMemory(benchmark::State& state, const fs::path& path, Job job) {
    double peak = 0;
    double base = 0;
    for (auto _ : state) {
        base = ResidentMiB();
        const pid_t child = fork();
        if (child == 0) {
            job(path);
            _exit(0);
        }
        int status = 0;
        rusage usage{};
        wait4(child, &status, 0, &usage);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) state.SkipWithError("child failed");
        peak = usage.ru_maxrss / 1024.0;
    }
    state.counters["peak_MiB"] = peak;
    state.counters["base_MiB"] = base;
}

} // namespace

int main(int argc, char** argv) {
    const fs::path dir = SamplesDir();
    bool any = false;
    for (const char* name : kSamples) {
        const fs::path path = dir / name;
        if (!fs::exists(path)) continue;
        any = true;
        const std::string stem = path.stem().string();
        benchmark::RegisterBenchmark(("BM_IfcPlusPlusParseAndMesh/" + stem).c_str(),
                                     BM_IfcPlusPlusParseAndMesh, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_ImportIfc/" + stem).c_str(), BM_ImportIfc, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BM_PrepareIfc/" + stem).c_str(), BM_PrepareIfc, path)
            ->ArgName("workers")
            ->Arg(1)
            ->Arg(2)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(
            ("BM_PeakMemory/IfcPlusPlus/" + stem).c_str(),
            [](benchmark::State& s, const fs::path& p) { BM_PeakMemory(s, p, ParseAndMesh); }, path)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(
            ("BM_PeakMemory/Import/" + stem).c_str(),
            [](benchmark::State& s, const fs::path& p) { BM_PeakMemory(s, p, Import); }, path)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
    if (!any)
        std::fprintf(stderr,
                     "bench_host_ifc: no sample files in %s (set OBSIDRA_IFC_SAMPLES); "
                     "nothing to measure\n",
                     dir.string().c_str());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
