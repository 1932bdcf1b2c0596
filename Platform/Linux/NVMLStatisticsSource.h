#pragma once

#include <memory>
#include <string>

#include "Platform/GPUStatisticsSource.h"

namespace corvane {

/// The statistics of NVIDIA GPUs through NVML, loaded with dlopen on the first read; without the
/// library, or when NVML cannot start (no driver, no device), every read is empty. Main thread.
class NVMLStatisticsSource final : public GPUStatisticsSource {
public:
    /// The soname the NVIDIA driver installs; the unversioned name comes only with its
    /// development files.
    static constexpr const char* defaultLibrary = "libnvidia-ml.so.1";

    /// `library`: a name for the dynamic loader to search, or a path.
    explicit NVMLStatisticsSource(std::string library = defaultLibrary);
    ~NVMLStatisticsSource() override;
    NVMLStatisticsSource(const NVMLStatisticsSource&) = delete;
    NVMLStatisticsSource& operator=(const NVMLStatisticsSource&) = delete;

    /// Each device's utilisation (as a fraction, under "Device Utilization") and memory in use
    /// (bytes, under "inUseSysMemoryBytes"), the lowest device index winning.
    StatisticsDictionary performanceStatistics() override;

private:
    struct Library;

    /// Loads the library and starts NVML, once: a library that is missing or will not start is
    /// not asked again.
    Library* loadedLibrary();

    std::string libraryName;
    std::unique_ptr<Library> library;
    bool loadTried = false;
};

}  // namespace corvane
