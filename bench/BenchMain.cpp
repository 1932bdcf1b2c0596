// corvane-bench's main: Google Benchmark's own report, then every figure that has a floor
// beside that floor and their ratio, so that a regression shows at a glance. Figures are
// processor time (per process for the process scan), which a busy machine disturbs less than
// wall time; a figure whose benchmark or floor did not run (--benchmark_filter) is left out.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

struct FloorPair {
    const char* label;
    const char* figure;
    const char* floor;
    /// A counter of both runs to compare instead of the processor time per iteration.
    const char* counter = nullptr;
};

const std::vector<FloorPair> floorPairs = {
    {"one refresh, the monitor", "BM_MonitorRefresh", "BM_FloorRefresh"},
    {"one refresh, the providers", "BM_ProviderRefresh", "BM_FloorRefresh"},
    {"CPU load", "BM_ProviderReadCPULoad", "BM_FloorStat"},
    {"memory", "BM_ProviderReadMemory", "BM_FloorMemory"},
    {"memory pressure", "BM_ProviderMemoryPressureLevel", "BM_FloorPressure"},
    {"load averages", "BM_ProviderLoadAverages", "BM_FloorLoadavg"},
    {"uptime", "BM_ProviderUptimeSeconds", "BM_FloorUptime"},
    {"process scan per process, real /proc", "BM_ProcessScanRealProc", "BM_ProcessFloorRealProc",
     "per_process"},
    {"process scan per process, 2,000 generated", "BM_ProcessScanGenerated2000",
     "BM_ProcessFloorGenerated2000", "per_process"},
    {"  without kept descriptors, real /proc", "BM_ProcessScanOpenReadCloseRealProc",
     "BM_ProcessFloorRealProc", "per_process"},
    {"  without kept descriptors, 2,000 generated", "BM_ProcessScanOpenReadCloseGenerated2000",
     "BM_ProcessFloorGenerated2000", "per_process"},
    {"listing /proc per process, getdents64 vs readdir", "BM_PidListingGetdents64RealProc",
     "BM_PidListingReaddirRealProc", "per_process"},
};

class FloorTableReporter final : public benchmark::ConsoleReporter {
public:
    // Coloured only on a terminal, as Google Benchmark's own main does by default.
    FloorTableReporter() : ConsoleReporter(::isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_None) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            // With repetitions the median stands for the benchmark.
            const bool isMedian =
                run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (run.run_type == Run::RT_Iteration || isMedian) {
                runsByName[run.run_name.function_name] = run;
            }
        }
    }

    void Finalize() override {
        ConsoleReporter::Finalize();
        std::printf("\n%-50s %12s %12s %7s\n", "figure beside its floor (processor time)", "figure",
                    "floor", "ratio");
        for (const FloorPair& pair : floorPairs) {
            const auto figure = secondsOf(pair.figure, pair.counter);
            const auto floor = secondsOf(pair.floor, pair.counter);
            if (!figure || !floor || *floor <= 0) {
                continue;
            }
            std::printf("%-50s %9.2f us %9.2f us %7.2f\n", pair.label, *figure * 1e6, *floor * 1e6,
                        *figure / *floor);
        }
        std::fflush(stdout);
    }

private:
    std::optional<double> secondsOf(const std::string& name, const char* counter) const {
        const auto found = runsByName.find(name);
        if (found == runsByName.end()) {
            return std::nullopt;
        }
        const Run& run = found->second;
        if (counter != nullptr) {
            const auto value = run.counters.find(counter);
            return value == run.counters.end() ? std::nullopt
                                               : std::optional<double>(value->second.value);
        }
        return run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }

    std::map<std::string, Run> runsByName;
};

}  // namespace
}  // namespace corvane

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    corvane::FloorTableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
