#include "Platform/Linux/Uptime.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<double> parseUptime(std::string_view text) {
    auto line = text::takeLine(text);
    const auto seconds = parseNumber<double>(text::takeField(line), std::chars_format::fixed);
    if (!seconds || *seconds < 0.0) {
        return std::nullopt;
    }
    return seconds;
}

}  // namespace corvane
