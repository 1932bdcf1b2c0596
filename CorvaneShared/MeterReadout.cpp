#include "CorvaneShared/MeterReadout.h"

#include <array>
#include <cstddef>
#include <utility>

namespace corvane {

namespace {

template <typename Readout, std::size_t N>
std::optional<Readout> match(const std::array<std::pair<std::string_view, Readout>, N>& table,
                             std::string_view raw) {
    for (const auto& [name, readout] : table) {
        if (name == raw) {
            return readout;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<CPUReadout> cpuReadoutFromRaw(std::string_view raw) {
    static constexpr std::array<std::pair<std::string_view, CPUReadout>, 4> table{{
        {"off", CPUReadout::off},
        {"usage", CPUReadout::usage},
        {"temperature", CPUReadout::temperature},
        {"power", CPUReadout::power},
    }};
    return match(table, raw);
}

std::optional<MemoryReadout> memoryReadoutFromRaw(std::string_view raw) {
    static constexpr std::array<std::pair<std::string_view, MemoryReadout>, 4> table{{
        {"off", MemoryReadout::off},
        {"usage", MemoryReadout::usage},
        {"pressure", MemoryReadout::pressure},
        {"swap", MemoryReadout::swap},
    }};
    return match(table, raw);
}

std::optional<StorageReadout> storageReadoutFromRaw(std::string_view raw) {
    static constexpr std::array<std::pair<std::string_view, StorageReadout>, 3> table{{
        {"off", StorageReadout::off},
        {"usage", StorageReadout::usage},
        {"free", StorageReadout::free},
    }};
    return match(table, raw);
}

std::optional<SensorsReadout> sensorsReadoutFromRaw(std::string_view raw) {
    static constexpr std::array<std::pair<std::string_view, SensorsReadout>, 5> table{{
        {"off", SensorsReadout::off},
        {"power", SensorsReadout::power},
        {"hottest", SensorsReadout::hottest},
        {"gpu", SensorsReadout::gpu},
        {"fan", SensorsReadout::fan},
    }};
    return match(table, raw);
}

}  // namespace corvane
