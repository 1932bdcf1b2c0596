#include "Platform/Linux/LinuxSystemStatistics.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "Foundation/DirectoryListing.h"
#include "Platform/Linux/Cpuinfo.h"
#include "Platform/Linux/DevicetreeModel.h"
#include "Platform/Linux/Loadavg.h"
#include "Platform/Linux/Meminfo.h"
#include "Platform/Linux/MemoryMapping.h"
#include "Platform/Linux/MemoryPressure.h"
#include "Platform/Linux/ProcStat.h"
#include "Platform/Linux/Uptime.h"
#include "Platform/Linux/Vmstat.h"
#include "Platform/Linux/ZramMmStat.h"

namespace corvane {

namespace {

constexpr std::string_view zramPrefix = "zram";

std::string pathUnder(const std::filesystem::path& root, const char* relative) {
    return (root / relative).string();
}

}  // namespace

LinuxSystemStatistics::LinuxSystemStatistics(const std::filesystem::path& procRoot,
                                             const std::filesystem::path& sysRoot)
    : statPath(pathUnder(procRoot, "stat")),
      meminfoPath(pathUnder(procRoot, "meminfo")),
      vmstatPath(pathUnder(procRoot, "vmstat")),
      memoryPressurePath(pathUnder(procRoot, "pressure/memory")),
      loadavgPath(pathUnder(procRoot, "loadavg")),
      uptimePath(pathUnder(procRoot, "uptime")),
      cpuinfoPath(pathUnder(procRoot, "cpuinfo")),
      devicetreeModelPath(pathUnder(sysRoot, "firmware/devicetree/base/model")),
      blockDirectory(pathUnder(sysRoot, "block")),
      thermalZones(sysRoot) {}

void LinuxSystemStatistics::readCPULoad(CPULoadSample& sample) {
    const auto text = reader.read(statPath.c_str());
    if (!text) {
        sample.host.reset();
        sample.processors.clear();
        return;
    }
    sample = parseProcStat(*text, std::move(sample.processors));
}

std::optional<std::array<double, 3>> LinuxSystemStatistics::loadAverages() {
    const auto text = reader.read(loadavgPath.c_str());
    if (!text) {
        return std::nullopt;
    }
    return parseLoadavg(*text);
}

MemorySample LinuxSystemStatistics::readMemory() {
    const auto meminfoText = reader.read(meminfoPath.c_str());
    if (!meminfoText) {
        return {};
    }
    // Parsed before the next read reuses the buffer the text lives in.
    const auto meminfo = parseMeminfo(*meminfoText);
    MemorySample sample;
    sample.swap = swapUsageFrom(meminfo);
    const auto vmstatText = reader.read(vmstatPath.c_str());
    if (!vmstatText) {
        return sample;
    }
    const auto vmstat = parseVmstat(*vmstatText);
    sample.vm = vmStatisticsFrom(meminfo, vmstat, readZramBytes());
    return sample;
}

std::uint64_t LinuxSystemStatistics::readZramBytes() {
    if (++memoryReadsSinceZramScan >= zramRescanInterval) {
        findZramDevices();
    }
    std::uint64_t total = 0;
    for (const auto& path : zramStatPaths) {
        const auto text = reader.read(path.c_str());
        const auto used = text ? parseZramMemUsedTotal(*text) : std::nullopt;
        if (!used) {
            // The device went away (zramctl --reset, hot_remove): list them again next time.
            memoryReadsSinceZramScan = zramRescanInterval;
            continue;
        }
        total = *used > UINT64_MAX - total ? UINT64_MAX : total + *used;
    }
    return total;
}

void LinuxSystemStatistics::findZramDevices() {
    memoryReadsSinceZramScan = 0;
    std::size_t found = 0;
    DirectoryListing listing(blockDirectory.c_str());
    while (const auto name = listing.next()) {
        if (!name->starts_with(zramPrefix)) {
            continue;
        }
        if (found == zramStatPaths.size()) {
            zramStatPaths.emplace_back();
        }
        // Rewritten in place, so an unchanged device list costs no allocation.
        auto& path = zramStatPaths[found++];
        path.assign(blockDirectory).append("/").append(*name).append("/mm_stat");
    }
    zramStatPaths.resize(found);
    // Directory order is arbitrary; a sorted list makes the reads repeatable.
    std::sort(zramStatPaths.begin(), zramStatPaths.end());
}

std::optional<std::int32_t> LinuxSystemStatistics::memoryPressureLevel() {
    const auto text = reader.read(memoryPressurePath.c_str());
    if (!text) {
        return std::nullopt;
    }
    return rawPressureLevelFrom(parseMemoryPressure(*text));
}

std::optional<double> LinuxSystemStatistics::uptimeSeconds() {
    const auto text = reader.read(uptimePath.c_str());
    if (!text) {
        return std::nullopt;
    }
    return parseUptime(*text);
}

std::optional<std::uint64_t> LinuxSystemStatistics::physicalMemoryBytes() {
    const auto text = reader.read(meminfoPath.c_str());
    if (!text) {
        return std::nullopt;
    }
    return parseMeminfo(*text).memTotal;
}

std::optional<std::string> LinuxSystemStatistics::processorBrand() {
    if (const auto cpuinfo = reader.read(cpuinfoPath.c_str())) {
        if (const auto model = parseCpuinfoModelName(*cpuinfo)) {
            return std::string(*model);
        }
    }
    // arm64 kernels name no model in cpuinfo; the board's device tree does.
    if (const auto devicetree = reader.read(devicetreeModelPath.c_str())) {
        if (const auto model = parseDevicetreeModel(*devicetree)) {
            return std::string(*model);
        }
    }
    return std::nullopt;
}

std::optional<ThermalState> LinuxSystemStatistics::thermalState() {
    return thermalZones.readState(reader);
}

}  // namespace corvane
