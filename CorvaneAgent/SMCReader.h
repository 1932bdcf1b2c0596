#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneAgent/SensorSource.h"
#include "Platform/SMCTransport.h"

namespace corvane {

/// One key's value as the controller returned it: its type and its first `size` bytes.
struct SMCValue {
    std::uint32_t dataType = 0;
    std::array<std::uint8_t, 32> storage{};
    std::size_t size = 0;

    std::span<const std::uint8_t> bytes() const { return {storage.data(), size}; }
};

/// Temperatures, fans and power from a system management controller. Finds its keys once, when
/// created, and reads them on every pass; caches no values. It has no lock: create it on one
/// thread, then make all calls from one sensor pass at a time.
class SMCReader final : public SensorSource {
public:
    /// Discovers the keys over `transport`, on the calling thread: by enumeration, by probing
    /// known keys when enumeration found no temperature key, then the power keys. Absent when
    /// there is no transport (the controller could not be opened).
    static std::unique_ptr<SMCReader> create(std::unique_ptr<SMCTransport> transport);

    /// Plausible temperatures of the CPU and GPU keys (`menuBar`) or of every temperature key
    /// (`full`), in key-list order; nothing for `none`.
    std::vector<TemperatureReading> temperatures(SamplingPlan::SMCScope scope) override;
    /// Every fan reading below 20000 rpm, with its limits when they are plausible.
    std::vector<FanReading> fans() override;
    /// Every power channel found at start that now reads from 0 up to below 1000 watts.
    std::vector<PowerReading> power() override;

    /// The discovered key codes, in discovery order, duplicates kept.
    const std::vector<std::uint32_t>& cpuKeys() const { return cpu; }
    const std::vector<std::uint32_t>& gpuKeys() const { return gpu; }
    const std::vector<std::uint32_t>& otherTemperatureKeys() const { return otherTemperature; }
    const std::vector<std::uint32_t>& fanKeys() const { return fan; }
    const std::vector<std::pair<PowerChannel, std::uint32_t>>& powerKeys() const {
        return powerChannels;
    }

private:
    explicit SMCReader(std::unique_ptr<SMCTransport> transport);

    /// One command with a fresh zeroed output record; absent when the call fails.
    std::optional<SMCKeyData> call(const SMCKeyData& input);
    std::optional<SMCKeyInfo> keyInfo(std::uint32_t key);
    /// Absent when the key is unknown, its size is outside 1 … 32, or the value read fails.
    std::optional<SMCValue> read(std::uint32_t key);
    std::optional<std::uint32_t> keyAt(std::uint32_t index);
    std::optional<double> readNumber(std::uint32_t key);
    std::optional<double> readTemperature(std::uint32_t key);
    std::optional<double> plausibleRPM(std::uint32_t key);
    /// The "#KEY" count when enumeration can use it (1 … 19999).
    std::optional<std::uint32_t> keyCount();

    void discoverByEnumeration();
    void discoverKnownKeys();
    void discoverPowerKeys();
    void appendTemperatures(const std::vector<std::uint32_t>& keys,
                            std::vector<TemperatureReading>& readings);

    std::unique_ptr<SMCTransport> transport;
    std::vector<std::uint32_t> cpu;
    std::vector<std::uint32_t> gpu;
    std::vector<std::uint32_t> otherTemperature;
    std::vector<std::uint32_t> fan;
    std::vector<std::pair<PowerChannel, std::uint32_t>> powerChannels;
};

}  // namespace corvane
