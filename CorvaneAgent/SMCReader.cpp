#include "CorvaneAgent/SMCReader.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "CorvaneAgent/SMCDecoder.h"
#include "CorvaneAgent/SensorBounds.h"

namespace corvane {

namespace {

using SMCDecoder::floatType;
using SMCDecoder::fpe2Type;
using SMCDecoder::keyCode;
using SMCDecoder::keyString;
using SMCDecoder::sp78Type;

constexpr std::uint32_t keyCountKey = keyCode("#KEY");
// A count of 0, or of 20000 and more, means the controller cannot be enumerated.
constexpr std::uint32_t largestKeyCount = 19999;
constexpr std::size_t largestDataSize = 32;

// The known-key probe: prefix outermost, fourth character innermost, 10 × 11 × 62 candidates.
constexpr std::array<std::string_view, 10> knownPrefixes = {"Tp", "Te", "Tg", "Tf", "TC",
                                                            "TN", "TB", "Ts", "Ta", "Tm"};
constexpr std::string_view knownThirdCharacters = "0123456789M";
constexpr std::string_view knownFourthCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool isTemperatureType(std::uint32_t dataType) {
    return dataType == floatType || dataType == sp78Type;
}

bool isFanType(std::uint32_t dataType) {
    return dataType == floatType || dataType == fpe2Type;
}

bool isFanSpeedKey(std::string_view text) {
    return text.starts_with('F') && text.ends_with("Ac");
}

}  // namespace

SMCReader::SMCReader(std::unique_ptr<SMCTransport> transport) : transport(std::move(transport)) {}

std::unique_ptr<SMCReader> SMCReader::create(std::unique_ptr<SMCTransport> transport) {
    if (!transport) {
        return nullptr;
    }
    std::unique_ptr<SMCReader> reader(new SMCReader(std::move(transport)));
    reader->discoverByEnumeration();
    if (reader->cpu.empty() && reader->gpu.empty() && reader->otherTemperature.empty()) {
        reader->discoverKnownKeys();
    }
    reader->discoverPowerKeys();
    return reader;
}

std::optional<SMCKeyData> SMCReader::call(const SMCKeyData& input) {
    SMCRecord output{};
    if (transport->call(encodeSMCKeyData(input), output) != 0) {
        return std::nullopt;
    }
    return decodeSMCKeyData(output);
}

std::optional<SMCKeyInfo> SMCReader::keyInfo(std::uint32_t key) {
    SMCKeyData input;
    input.key = key;
    input.data8 = SMCCommand::readKeyInfo;
    const auto output = call(input);
    if (!output) {
        return std::nullopt;
    }
    return output->keyInfo;
}

std::optional<SMCValue> SMCReader::read(std::uint32_t key) {
    const auto info = keyInfo(key);
    if (!info || info->dataSize < 1 || info->dataSize > largestDataSize) {
        return std::nullopt;
    }
    SMCKeyData input;
    input.key = key;
    // Only the size goes back in: the controller wants to know how many bytes to return.
    input.keyInfo.dataSize = info->dataSize;
    input.data8 = SMCCommand::readBytes;
    const auto output = call(input);
    if (!output) {
        return std::nullopt;
    }
    SMCValue value;
    value.dataType = info->dataType;
    value.size = info->dataSize;
    std::copy_n(output->bytes.begin(), value.size, value.storage.begin());
    return value;
}

std::optional<std::uint32_t> SMCReader::keyAt(std::uint32_t index) {
    SMCKeyData input;
    input.data32 = index;
    input.data8 = SMCCommand::keyAtIndex;
    const auto output = call(input);
    if (!output) {
        return std::nullopt;
    }
    return output->key;
}

std::optional<double> SMCReader::readNumber(std::uint32_t key) {
    const auto value = read(key);
    if (!value) {
        return std::nullopt;
    }
    return SMCDecoder::number(value->dataType, value->bytes());
}

std::optional<double> SMCReader::readTemperature(std::uint32_t key) {
    const auto value = read(key);
    if (!value) {
        return std::nullopt;
    }
    return SMCDecoder::temperature(value->dataType, value->bytes());
}

std::optional<double> SMCReader::plausibleRPM(std::uint32_t key) {
    const auto rpm = readNumber(key);
    if (!rpm || !SensorBounds::isPlausibleFanLimit(*rpm)) {
        return std::nullopt;
    }
    return rpm;
}

std::optional<std::uint32_t> SMCReader::keyCount() {
    const auto value = read(keyCountKey);
    if (!value || value->size < 4) {
        return std::nullopt;
    }
    const auto bytes = value->bytes();
    const auto count = static_cast<std::uint32_t>(bytes[0]) << 24 |
                       static_cast<std::uint32_t>(bytes[1]) << 16 |
                       static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    if (count < 1 || count > largestKeyCount) {
        return std::nullopt;
    }
    return count;
}

void SMCReader::discoverByEnumeration() {
    const auto count = keyCount();
    if (!count) {
        return;
    }
    for (std::uint32_t index = 0; index < *count; ++index) {
        const auto key = keyAt(index);
        if (!key) {
            continue;
        }
        const auto text = keyString(*key);
        const auto info = keyInfo(*key);
        if (!info) {
            continue;
        }
        if (isFanSpeedKey(text) && isFanType(info->dataType)) {
            fan.push_back(*key);
        } else if (text.starts_with('T') && isTemperatureType(info->dataType)) {
            // "Tf" lands among the other keys here but among the CPU keys in the known-key
            // probe; the difference is deliberate and decides which scope reads it.
            if (!SMCDecoder::isMenuBarTemperatureKey(text)) {
                otherTemperature.push_back(*key);
            } else if (text.starts_with("Tg")) {
                gpu.push_back(*key);
            } else {
                cpu.push_back(*key);
            }
        }
    }
}

void SMCReader::discoverKnownKeys() {
    for (const auto prefix : knownPrefixes) {
        for (const char third : knownThirdCharacters) {
            for (const char fourth : knownFourthCharacters) {
                const auto key = keyCode(prefix) << 16 | static_cast<std::uint32_t>(third) << 8 |
                                 static_cast<std::uint32_t>(fourth);
                const auto info = keyInfo(key);
                if (!info || !isTemperatureType(info->dataType) || !readTemperature(key)) {
                    continue;
                }
                if (prefix == "Tg") {
                    gpu.push_back(key);
                } else if (prefix == "Tp" || prefix == "Te" || prefix == "Tf") {
                    cpu.push_back(key);
                } else {
                    otherTemperature.push_back(key);
                }
            }
        }
    }
    for (char digit = '0'; digit <= '9'; ++digit) {
        const auto key = keyCode(std::string{'F', digit, 'A', 'c'});
        const auto info = keyInfo(key);
        if (info && isFanType(info->dataType) && readNumber(key)) {
            fan.push_back(key);
        }
    }
}

void SMCReader::discoverPowerKeys() {
    for (const auto channel : allPowerChannels) {
        const auto code = keyCode(corvane::key(channel));
        const auto info = keyInfo(code);
        if (info && info->dataType == floatType && readNumber(code)) {
            powerChannels.emplace_back(channel, code);
        }
    }
}

void SMCReader::appendTemperatures(const std::vector<std::uint32_t>& keys,
                                   std::vector<TemperatureReading>& readings) {
    for (const auto key : keys) {
        const auto celsius = readTemperature(key);
        if (!celsius) {
            continue;
        }
        auto text = keyString(key);
        const auto category = SMCDecoder::category(text);
        readings.push_back({std::move(text), category, *celsius});
    }
}

std::vector<TemperatureReading> SMCReader::temperatures(SamplingPlan::SMCScope scope) {
    std::vector<TemperatureReading> readings;
    if (scope == SamplingPlan::SMCScope::none) {
        return readings;
    }
    appendTemperatures(cpu, readings);
    appendTemperatures(gpu, readings);
    if (scope == SamplingPlan::SMCScope::full) {
        appendTemperatures(otherTemperature, readings);
    }
    return readings;
}

std::vector<FanReading> SMCReader::fans() {
    std::vector<FanReading> readings;
    for (std::size_t index = 0; index < fan.size(); ++index) {
        const auto rpm = readNumber(fan[index]);
        if (!rpm || !SensorBounds::isPlausibleFanSpeed(*rpm)) {
            continue;
        }
        // The limits follow the fan's place in the list, not the digit in its key: both
        // discovery passes add fans in ascending digit order, so the two agree on a machine
        // whose fans are numbered from 0 without gaps.
        const auto number = std::to_string(index);
        FanReading reading;
        reading.key = keyString(fan[index]);
        reading.index = static_cast<int>(index);
        reading.rpm = *rpm;
        reading.minimumRPM = plausibleRPM(keyCode("F" + number + "Mn"));
        reading.maximumRPM = plausibleRPM(keyCode("F" + number + "Mx"));
        readings.push_back(std::move(reading));
    }
    return readings;
}

std::vector<PowerReading> SMCReader::power() {
    std::vector<PowerReading> readings;
    for (const auto& [channel, key] : powerChannels) {
        const auto watts = readNumber(key);
        if (watts && SensorBounds::isPlausibleWatts(*watts)) {
            readings.push_back({channel, *watts});
        }
    }
    return readings;
}

}  // namespace corvane
