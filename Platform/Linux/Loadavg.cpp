#include "Platform/Linux/Loadavg.h"

#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::array<double, 3>> parseLoadavg(std::string_view text) {
    auto line = text::takeLine(text);
    std::array<double, 3> averages{};
    for (auto& average : averages) {
        const auto value = text::parseDecimal(text::takeField(line));
        if (!value || *value < 0.0) {
            return std::nullopt;
        }
        average = *value;
    }
    return averages;
}

}  // namespace corvane
