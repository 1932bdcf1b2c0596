#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/PerformanceLevels.h"

namespace corvane {

/// A CPU list as sysfs prints CPU masks ("0-7,16\n"): the CPU numbers in ascending order
/// without repeats; empty for an empty mask ("\n"). Absent for anything else, including a
/// reversed range or a CPU number above `maxCPUNumber`.
[[nodiscard]] std::optional<std::vector<std::uint32_t>> parseCPUList(std::string_view text);

/// The largest CPU number a list may name: far above any machine (the kernel's NR_CPUS tops out
/// at 8192), low enough that "0-4294967295" cannot take the process's memory.
inline constexpr std::uint32_t maxCPUNumber = 65535;

/// The levels of an Intel hybrid processor from the CPU lists of its core PMUs, fastest first:
/// cpu_core ("Performance"), cpu_atom ("Efficiency"), cpu_lowpower ("Low Power"); absent lists
/// are PMUs the processor lacks. Only CPUs in `online` count, and a PMU with none is left out.
/// No levels (absent count) when fewer than two PMUs have online CPUs.
[[nodiscard]] PerformanceLevels hybridPerformanceLevels(
    const std::vector<std::optional<std::vector<std::uint32_t>>>& pmuCPUs,
    const std::vector<std::uint32_t>& online);

/// The levels of a processor whose online CPUs report their capacity (cpu_capacity, relative to
/// the fastest at 1024): one level per distinct capacity, the highest first. Two levels are
/// "Performance" and "Efficiency", three "Prime", "Performance" and "Efficiency"; four or more go
/// unnamed. No levels when all CPUs have one capacity (or none is given).
[[nodiscard]] PerformanceLevels capacityPerformanceLevels(
    const std::vector<std::uint64_t>& capacities);

/// The processor's performance levels under the sysfs root `sysRoot`: the hybrid PMUs
/// (devices/cpu_core/cpus, devices/cpu_atom/cpus, devices/cpu_lowpower/cpus) when there are any,
/// else devices/system/cpu/cpuN/cpu_capacity; only the CPUs in devices/system/cpu/online count.
/// Reads a handful of files once; call it once per process. Any thread.
[[nodiscard]] PerformanceLevels readPerformanceLevels(const std::filesystem::path& sysRoot);

}  // namespace corvane
