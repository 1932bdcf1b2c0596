#include "Platform/Linux/ProcStat.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

// Columns in the order the kernel prints them (Documentation/filesystems/proc.rst). Linux 2.4
// printed only the first four; iowait, irq and softirq came with 2.6, steal with 2.6.11.
constexpr std::array<std::uint64_t CPUTimes::*, 8> columnOrder = {
    &CPUTimes::user,   &CPUTimes::nice, &CPUTimes::system,  &CPUTimes::idle,
    &CPUTimes::iowait, &CPUTimes::irq,  &CPUTimes::softirq, &CPUTimes::steal,
};
constexpr std::size_t requiredColumns = 4;

constexpr std::string_view cpuLabel = "cpu";

bool isDecimalDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool isCPULabel(std::string_view label) {
    return label.starts_with(cpuLabel);
}

bool isHostLabel(std::string_view label) {
    return label == cpuLabel;
}

bool isProcessorLabel(std::string_view label) {
    return isCPULabel(label) && isDecimalDigits(label.substr(cpuLabel.size()));
}

}  // namespace

std::optional<CPUTimes> parseCPUTimes(std::string_view columns) {
    CPUTimes times;
    std::size_t parsed = 0;
    for (auto member : columnOrder) {
        const auto field = text::takeField(columns);
        if (field.empty()) {
            break;
        }
        const auto value = parseNumber<std::uint64_t>(field);
        if (!value) {
            return std::nullopt;
        }
        times.*member = *value;
        ++parsed;
    }
    if (parsed < requiredColumns) {
        return std::nullopt;
    }
    return times;
}

HostCPULoad hostCPULoadFrom(const CPUTimes& times) {
    const auto wide = processorLoadFrom(times);
    // Keeping the low 32 bits is the point: the reader subtracts two records modulo 2^32.
    return HostCPULoad{
        .user = static_cast<std::uint32_t>(wide.user),
        .system = static_cast<std::uint32_t>(wide.system),
        .idle = static_cast<std::uint32_t>(wide.idle),
        .nice = static_cast<std::uint32_t>(wide.nice),
    };
}

ProcessorLoad processorLoadFrom(const CPUTimes& times) {
    // Interrupt and stolen time is time the CPU was not available to idle or to user code, so
    // it counts as system time; I/O wait is idle time with a request outstanding.
    return ProcessorLoad{
        .user = times.user,
        .system = times.system + times.irq + times.softirq + times.steal,
        .idle = times.idle + times.iowait,
        .nice = times.nice,
    };
}

CPULoadSample parseProcStat(std::string_view text, CPULoadSample storage) {
    CPULoadSample sample = std::move(storage);
    sample.host.reset();
    sample.processors.clear();
    sample.processorNumbers.clear();
    bool inCPULines = false;
    while (!text.empty()) {
        auto line = text::takeLine(text);
        const auto label = text::takeField(line);
        if (!isCPULabel(label)) {
            if (inCPULines) {
                break;
            }
            continue;
        }
        inCPULines = true;
        const auto times = parseCPUTimes(line);
        if (!times) {
            continue;
        }
        if (isHostLabel(label)) {
            sample.host = hostCPULoadFrom(*times);
        } else if (isProcessorLabel(label)) {
            const auto number = parseNumber<std::uint32_t>(label.substr(cpuLabel.size()));
            if (!number) {
                continue;
            }
            sample.processors.push_back(processorLoadFrom(*times));
            sample.processorNumbers.push_back(*number);
        }
    }
    return sample;
}

}  // namespace corvane
