#include "Platform/Linux/ProcPidStat.h"

#include <array>
#include <limits>

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

// Fields as proc(5) numbers them, from 1 (pid). The text after the name's ')' starts at field 3.
constexpr std::size_t firstFieldAfterName = 3;
constexpr std::size_t utimeField = 14;
constexpr std::size_t stimeField = 15;
constexpr std::size_t startTimeField = 22;
constexpr std::size_t rssField = 24;

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

struct UTF8Step {
    std::size_t length = 0;
    bool valid = false;
};

// The UTF-8 sequence at the start of `bytes` (not empty). An invalid one is its longest prefix
// that could still have begun a valid sequence, at least one byte: each such piece becomes one
// U+FFFD, the replacement Unicode recommends and Qt and browsers use, so the name reads the
// same everywhere it is shown.
UTF8Step stepUTF8(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) {
        return {1, true};
    }
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : low;    // overlong forms
        high = lead == 0xED ? 0x9F : high;  // UTF-16 surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : low;    // overlong forms
        high = lead == 0xF4 ? 0x8F : high;  // beyond U+10FFFF
    } else {
        return {1, false};
    }
    for (std::size_t index = 1; index < length; ++index) {
        if (index >= bytes.size()) {
            return {index, false};
        }
        const auto byte = static_cast<unsigned char>(bytes[index]);
        if (byte < low || byte > high) {
            return {index, false};
        }
        low = 0x80;
        high = 0xBF;
    }
    return {length, true};
}

}  // namespace

std::optional<ProcPidStat> parseProcPidStat(std::string_view text) {
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    auto rest = text.substr(close + 1);
    auto line = text::takeLine(rest);
    // Only taken apart up to rss: priority and nice between them may be negative, and nothing
    // after rss is needed.
    std::array<std::string_view, rssField + 1> fields{};
    for (auto field = firstFieldAfterName; field <= rssField; ++field) {
        fields[field] = text::takeField(line);
    }
    const auto utime = parseNumber<std::uint64_t>(fields[utimeField]);
    const auto stime = parseNumber<std::uint64_t>(fields[stimeField]);
    const auto startTime = parseNumber<std::uint64_t>(fields[startTimeField]);
    const auto rssPages = parseNumber<std::uint64_t>(fields[rssField]);
    if (!utime || !stime || !startTime || !rssPages) {
        return std::nullopt;
    }
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    return ProcPidStat{
        .comm = text.substr(open + 1, close - open - 1),
        .cpuTicks = *utime > largest - *stime ? largest : *utime + *stime,
        .startTime = *startTime,
        .residentPages = *rssPages,
    };
}

std::string processName(std::string_view comm, std::int32_t pid) {
    if (comm.empty()) {
        return "PID " + std::to_string(pid);
    }
    std::string name;
    name.reserve(comm.size());
    while (!comm.empty()) {
        const auto step = stepUTF8(comm);
        name.append(step.valid ? comm.substr(0, step.length) : replacementCharacter);
        comm.remove_prefix(step.length);
    }
    return name;
}

}  // namespace corvane
