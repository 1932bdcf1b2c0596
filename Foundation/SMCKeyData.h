#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The parameter record a system management controller exchanges, input and output alike. Both
// sides of the SMCTransport interface speak it (the reader encodes requests and decodes
// answers, each transport the reverse), so it sits below both. The wire form is encoded byte by
// byte so that the layout is the controller's, never what a compiler chose for the struct.
namespace corvane {

/// One record as it travels to and from the controller.
using SMCRecord = std::array<std::uint8_t, 80>;

/// The commands the agent issues, as written to `SMCKeyData::data8`.
namespace SMCCommand {
inline constexpr std::uint8_t readKeyInfo = 9;
inline constexpr std::uint8_t readBytes = 5;
inline constexpr std::uint8_t keyAtIndex = 8;
}  // namespace SMCCommand

/// The controller's firmware version; carried, never used.
struct SMCVersion {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint8_t build = 0;
    std::uint8_t reserved = 0;
    std::uint16_t release = 0;

    friend constexpr bool operator==(const SMCVersion&, const SMCVersion&) = default;
};

/// The controller's power limits; carried, never used.
struct SMCPowerLimit {
    std::uint16_t version = 0;
    std::uint16_t length = 0;
    std::uint32_t cpu = 0;
    std::uint32_t gpu = 0;
    std::uint32_t memory = 0;

    friend constexpr bool operator==(const SMCPowerLimit&, const SMCPowerLimit&) = default;
};

/// What the controller says about a key: how many value bytes it has and their type.
struct SMCKeyInfo {
    std::uint32_t dataSize = 0;
    /// A four-character code such as "sp78", first character in the most significant byte.
    std::uint32_t dataType = 0;
    /// Attribute bits, returned but not interpreted.
    std::uint8_t attributes = 0;

    friend constexpr bool operator==(const SMCKeyInfo&, const SMCKeyInfo&) = default;
};

/// The record's fields. Every field the agent does not set is zero.
struct SMCKeyData {
    /// The key's four-character code (input); the key found at an index (output of command 8).
    std::uint32_t key = 0;
    SMCVersion version;
    SMCPowerLimit powerLimit;
    SMCKeyInfo keyInfo;
    /// The controller's own result and status bytes; success is judged by the call's return
    /// code, so these are never examined.
    std::uint8_t result = 0;
    std::uint8_t status = 0;
    /// The command.
    std::uint8_t data8 = 0;
    /// The command's argument: the key index for command 8.
    std::uint32_t data32 = 0;
    std::array<std::uint8_t, 32> bytes{};

    friend constexpr bool operator==(const SMCKeyData&, const SMCKeyData&) = default;
};

/// Where each field starts in an `SMCRecord`.
namespace SMCKeyDataOffset {
inline constexpr std::size_t key = 0;
inline constexpr std::size_t versionMajor = 4;
inline constexpr std::size_t versionMinor = 5;
inline constexpr std::size_t versionBuild = 6;
inline constexpr std::size_t versionReserved = 7;
inline constexpr std::size_t versionRelease = 8;
inline constexpr std::size_t powerLimitVersion = 12;
inline constexpr std::size_t powerLimitLength = 14;
inline constexpr std::size_t powerLimitCPU = 16;
inline constexpr std::size_t powerLimitGPU = 20;
inline constexpr std::size_t powerLimitMemory = 24;
inline constexpr std::size_t keyInfoDataSize = 28;
inline constexpr std::size_t keyInfoDataType = 32;
inline constexpr std::size_t keyInfoAttributes = 36;
inline constexpr std::size_t result = 40;
inline constexpr std::size_t status = 41;
inline constexpr std::size_t data8 = 42;
inline constexpr std::size_t data32 = 44;
inline constexpr std::size_t bytes = 48;

// Each field follows the one before it; the gaps are the padding the controller's C layout
// puts before a field to align it to its own width (two bytes before the power limits, three
// explicit bytes after the attributes, one before data32).
static_assert(versionMajor == key + 4 && versionMinor == versionMajor + 1 &&
              versionBuild == versionMinor + 1 && versionReserved == versionBuild + 1 &&
              versionRelease == versionReserved + 1);
static_assert(powerLimitVersion == versionRelease + 2 + 2);
static_assert(powerLimitLength == powerLimitVersion + 2 && powerLimitCPU == powerLimitLength + 2 &&
              powerLimitGPU == powerLimitCPU + 4 && powerLimitMemory == powerLimitGPU + 4);
static_assert(keyInfoDataSize == powerLimitMemory + 4 && keyInfoDataType == keyInfoDataSize + 4 &&
              keyInfoAttributes == keyInfoDataType + 4);
static_assert(result == keyInfoAttributes + 1 + 3);
static_assert(status == result + 1 && data8 == status + 1);
static_assert(data32 == data8 + 1 + 1 && data32 % 4 == 0);
static_assert(bytes == data32 + 4);
static_assert(bytes + std::tuple_size_v<decltype(SMCKeyData::bytes)> ==
              std::tuple_size_v<SMCRecord>);
static_assert(std::tuple_size_v<SMCRecord> == 80);
}  // namespace SMCKeyDataOffset

namespace detail {

constexpr void putU16(SMCRecord& record, std::size_t offset, std::uint16_t value) {
    record[offset] = static_cast<std::uint8_t>(value);
    record[offset + 1] = static_cast<std::uint8_t>(value >> 8);
}

constexpr void putU32(SMCRecord& record, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        record[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

constexpr std::uint16_t getU16(const SMCRecord& record, std::size_t offset) {
    return static_cast<std::uint16_t>(record[offset] | (record[offset + 1] << 8));
}

constexpr std::uint32_t getU32(const SMCRecord& record, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= static_cast<std::uint32_t>(record[offset + i]) << (8 * i);
    }
    return value;
}

}  // namespace detail

/// The wire form of `data`: multi-byte integers little-endian, padding zero.
[[nodiscard]] constexpr SMCRecord encodeSMCKeyData(const SMCKeyData& data) {
    namespace at = SMCKeyDataOffset;
    SMCRecord record{};
    detail::putU32(record, at::key, data.key);
    record[at::versionMajor] = data.version.major;
    record[at::versionMinor] = data.version.minor;
    record[at::versionBuild] = data.version.build;
    record[at::versionReserved] = data.version.reserved;
    detail::putU16(record, at::versionRelease, data.version.release);
    detail::putU16(record, at::powerLimitVersion, data.powerLimit.version);
    detail::putU16(record, at::powerLimitLength, data.powerLimit.length);
    detail::putU32(record, at::powerLimitCPU, data.powerLimit.cpu);
    detail::putU32(record, at::powerLimitGPU, data.powerLimit.gpu);
    detail::putU32(record, at::powerLimitMemory, data.powerLimit.memory);
    detail::putU32(record, at::keyInfoDataSize, data.keyInfo.dataSize);
    detail::putU32(record, at::keyInfoDataType, data.keyInfo.dataType);
    record[at::keyInfoAttributes] = data.keyInfo.attributes;
    record[at::result] = data.result;
    record[at::status] = data.status;
    record[at::data8] = data.data8;
    detail::putU32(record, at::data32, data.data32);
    for (std::size_t i = 0; i < data.bytes.size(); ++i) {
        record[at::bytes + i] = data.bytes[i];
    }
    return record;
}

/// The fields of a wire record; padding is ignored.
[[nodiscard]] constexpr SMCKeyData decodeSMCKeyData(const SMCRecord& record) {
    namespace at = SMCKeyDataOffset;
    SMCKeyData data;
    data.key = detail::getU32(record, at::key);
    data.version.major = record[at::versionMajor];
    data.version.minor = record[at::versionMinor];
    data.version.build = record[at::versionBuild];
    data.version.reserved = record[at::versionReserved];
    data.version.release = detail::getU16(record, at::versionRelease);
    data.powerLimit.version = detail::getU16(record, at::powerLimitVersion);
    data.powerLimit.length = detail::getU16(record, at::powerLimitLength);
    data.powerLimit.cpu = detail::getU32(record, at::powerLimitCPU);
    data.powerLimit.gpu = detail::getU32(record, at::powerLimitGPU);
    data.powerLimit.memory = detail::getU32(record, at::powerLimitMemory);
    data.keyInfo.dataSize = detail::getU32(record, at::keyInfoDataSize);
    data.keyInfo.dataType = detail::getU32(record, at::keyInfoDataType);
    data.keyInfo.attributes = record[at::keyInfoAttributes];
    data.result = record[at::result];
    data.status = record[at::status];
    data.data8 = record[at::data8];
    data.data32 = detail::getU32(record, at::data32);
    for (std::size_t i = 0; i < data.bytes.size(); ++i) {
        data.bytes[i] = record[at::bytes + i];
    }
    return data;
}

}  // namespace corvane
