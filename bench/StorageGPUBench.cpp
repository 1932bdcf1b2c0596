// The cost of a storage read (statvfs, mountinfo, the label and model lookups) and of a GPU
// read on this machine's real /proc, /sys and /dev.

#include <benchmark/benchmark.h>

#include "Platform/Linux/LinuxGPUStatisticsSource.h"
#include "Platform/Linux/LinuxStorageSource.h"

namespace corvane {
namespace {

void BM_ReadStorage(benchmark::State& state) {
    LinuxStorageSource storage;
    for (auto _ : state) {
        benchmark::DoNotOptimize(storage.readStorage());
    }
}
BENCHMARK(BM_ReadStorage);

void BM_ReadGPUStatistics(benchmark::State& state) {
    LinuxGPUStatisticsSource gpu;
    for (auto _ : state) {
        benchmark::DoNotOptimize(gpu.performanceStatistics());
    }
}
BENCHMARK(BM_ReadGPUStatistics);

}  // namespace
}  // namespace corvane
