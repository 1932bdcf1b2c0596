#include "Platform/Linux/Loadavg.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::array<double, 3>> parseLoadavg(std::string_view text) {
    auto line = text::takeLine(text);
    std::array<double, 3> averages{};
    for (auto& average : averages) {
        const auto value = parseNumber<double>(text::takeField(line), std::chars_format::fixed);
        if (!value || *value < 0.0) {
            return std::nullopt;
        }
        average = *value;
    }
    return averages;
}

}  // namespace corvane
