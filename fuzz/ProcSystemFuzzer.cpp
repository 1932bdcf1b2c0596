// The whole-machine /proc files: stat, meminfo, vmstat, pressure, loadavg, uptime, cpuinfo.
// Every parser sees every input, since a mutated meminfo is as good a stat as any.

#include <cmath>

#include "Platform/Linux/Cpuinfo.h"
#include "Platform/Linux/Loadavg.h"
#include "Platform/Linux/Meminfo.h"
#include "Platform/Linux/MemoryPressure.h"
#include "Platform/Linux/ProcStat.h"
#include "Platform/Linux/Uptime.h"
#include "Platform/Linux/Vmstat.h"
#include "Platform/SystemStatistics.h"
#include "fuzz/FuzzSupport.h"

namespace corvane::fuzz {
namespace {

bool isWholeKibibytes(const std::optional<std::uint64_t>& bytes) {
    return !bytes || *bytes % 1024 == 0;
}

void checkProcStat(std::string_view text) {
    const auto sample = parseProcStat(text);
    require(sample.processorNumbers.size() == sample.processors.size(),
            "stat: one CPU number per processor");
    // Passing the previous sample back as storage must not change the answer.
    const auto again = parseProcStat(text, sample);
    require(again.host.has_value() == sample.host.has_value(), "stat: reparse keeps the host");
    require(again.processorNumbers == sample.processorNumbers, "stat: reparse keeps the CPUs");
    if (const auto times = parseCPUTimes(text)) {
        require(parseCPUTimes(text) == times, "stat: columns parse the same twice");
    }
}

void checkMeminfo(std::string_view text) {
    const auto info = parseMeminfo(text);
    for (const auto* field :
         {&info.memTotal, &info.memAvailable, &info.buffers, &info.cached, &info.sReclaimable,
          &info.sUnreclaim, &info.kernelStack, &info.pageTables, &info.secPageTables, &info.percpu,
          &info.unevictable, &info.zswap, &info.swapTotal, &info.swapFree}) {
        require(isWholeKibibytes(*field), "meminfo: values are whole KiB in bytes");
    }
    const auto vm = parseVmstat(text);
    require(isWholeKibibytes(vm.pagedInBytes) && isWholeKibibytes(vm.pagedOutBytes),
            "vmstat: values are whole KiB in bytes");
}

void checkPressure(std::string_view text) {
    const auto pressure = parseMemoryPressure(text);
    for (const auto& share : {pressure.someAvg10, pressure.fullAvg10}) {
        require(!share || (std::isfinite(*share) && *share >= 0.0 && *share <= 100.0),
                "pressure: a share is a percentage");
    }
    const auto level = rawPressureLevelFrom(pressure);
    require(level.has_value() == (pressure.someAvg10 && pressure.fullAvg10),
            "pressure: a level exactly when both shares are known");
    require(!level || *level == RawPressureLevel::normal || *level == RawPressureLevel::warning ||
                *level == RawPressureLevel::critical,
            "pressure: a level is one of the three");
}

void checkLoadAndUptime(std::string_view text) {
    if (const auto averages = parseLoadavg(text)) {
        for (const double average : *averages) {
            require(std::isfinite(average) && average >= 0.0, "loadavg: finite, not negative");
        }
    }
    if (const auto seconds = parseUptime(text)) {
        require(std::isfinite(*seconds) && *seconds >= 0.0, "uptime: finite, not negative");
    }
}

void checkCpuinfo(std::string_view text) {
    const auto model = parseCpuinfoModelName(text);
    if (!model) {
        return;
    }
    require(!model->empty() && isViewInto(*model, text), "cpuinfo: a non-empty view");
    require(model->find('\n') == std::string_view::npos, "cpuinfo: one line");
    require(model->front() != ' ' && model->front() != '\t' && model->back() != ' ' &&
                model->back() != '\t',
            "cpuinfo: no padding");
}

}  // namespace
}  // namespace corvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane::fuzz;
    const auto text = textOf(data, size);
    checkProcStat(text);
    checkMeminfo(text);
    checkPressure(text);
    checkLoadAndUptime(text);
    checkCpuinfo(text);
    return 0;
}
