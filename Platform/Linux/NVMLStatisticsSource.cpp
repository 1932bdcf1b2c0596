#include "Platform/Linux/NVMLStatisticsSource.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "Platform/Linux/NVMLApi.h"

namespace corvane {

namespace {

// Whole percent as a fraction. Writing the percentage itself would make 1 % read as a whole GPU
// to the monitor, which takes any utilisation up to 1 for a fraction.
double fractionFromWholePercent(unsigned percent) {
    return std::min(percent, 100u) / 100.0;
}

template <typename Function>
bool resolve(void* handle, const char* name, Function*& function) {
    // POSIX guarantees that a dlsym result converts to a function pointer.
    function = reinterpret_cast<Function*>(::dlsym(handle, name));
    return function != nullptr;
}

}  // namespace

struct NVMLStatisticsSource::Library {
    void* handle = nullptr;
    decltype(nvmlInit_v2)* init = nullptr;
    decltype(nvmlShutdown)* shutdown = nullptr;
    decltype(nvmlDeviceGetCount_v2)* deviceCount = nullptr;
    decltype(nvmlDeviceGetHandleByIndex_v2)* deviceByIndex = nullptr;
    decltype(nvmlDeviceGetUtilizationRates)* utilizationRates = nullptr;
    decltype(nvmlDeviceGetMemoryInfo)* memoryInfo = nullptr;

    bool resolveAll() {
        return resolve(handle, "nvmlInit_v2", init) && resolve(handle, "nvmlShutdown", shutdown) &&
               resolve(handle, "nvmlDeviceGetCount_v2", deviceCount) &&
               resolve(handle, "nvmlDeviceGetHandleByIndex_v2", deviceByIndex) &&
               resolve(handle, "nvmlDeviceGetUtilizationRates", utilizationRates) &&
               resolve(handle, "nvmlDeviceGetMemoryInfo", memoryInfo);
    }

    StatisticsDictionary readDevice(nvmlDevice_t device) const {
        auto statistics = StatisticsDictionary::object();
        // Either call may be unsupported on a device (utilisation on a MIG-partitioned one):
        // that figure is left out and another device may supply it.
        nvmlUtilization_t utilization{};
        if (utilizationRates(device, &utilization) == NVML_SUCCESS) {
            statistics["Device Utilization"] = fractionFromWholePercent(utilization.gpu);
        }
        nvmlMemory_t memory{};
        if (memoryInfo(device, &memory) == NVML_SUCCESS) {
            statistics["inUseSysMemoryBytes"] = static_cast<std::uint64_t>(memory.used);
        }
        return statistics;
    }
};

NVMLStatisticsSource::NVMLStatisticsSource(std::string library) : libraryName(std::move(library)) {}

NVMLStatisticsSource::~NVMLStatisticsSource() {
    if (library) {
        library->shutdown();
        ::dlclose(library->handle);
    }
}

NVMLStatisticsSource::Library* NVMLStatisticsSource::loadedLibrary() {
    if (loadTried) {
        return library.get();
    }
    loadTried = true;
    auto loading = std::make_unique<Library>();
    loading->handle = ::dlopen(libraryName.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (loading->handle == nullptr) {
        // Clear the loader's error text, so that nobody later mistakes it for theirs.
        ::dlerror();
        return nullptr;
    }
    if (!loading->resolveAll() || loading->init() != NVML_SUCCESS) {
        ::dlerror();
        ::dlclose(loading->handle);
        return nullptr;
    }
    library = std::move(loading);
    return library.get();
}

StatisticsDictionary NVMLStatisticsSource::performanceStatistics() {
    auto statistics = StatisticsDictionary::object();
    const auto* nvml = loadedLibrary();
    if (nvml == nullptr) {
        return statistics;
    }
    unsigned count = 0;
    if (nvml->deviceCount(&count) != NVML_SUCCESS) {
        return statistics;
    }
    for (unsigned index = 0; index < count; ++index) {
        nvmlDevice_t device = nullptr;
        if (nvml->deviceByIndex(index, &device) != NVML_SUCCESS) {
            continue;
        }
        const auto deviceStatistics = nvml->readDevice(device);
        // insert() keeps a name already present: the lower index's value stands.
        statistics.insert(deviceStatistics.begin(), deviceStatistics.end());
    }
    return statistics;
}

}  // namespace corvane
