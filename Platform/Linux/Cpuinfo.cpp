#include "Platform/Linux/Cpuinfo.h"

#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::string_view modelNameKey = "model name";

}  // namespace

std::optional<std::string_view> parseCpuinfoModelName(std::string_view text) {
    while (!text.empty()) {
        const auto line = text::takeLine(text);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        // The kernel pads keys with tabs up to the colon ("model name\t: ...").
        if (text::trim(line.substr(0, colon)) != modelNameKey) {
            continue;
        }
        const auto model = text::trim(line.substr(colon + 1));
        if (model.empty()) {
            return std::nullopt;
        }
        return model;
    }
    return std::nullopt;
}

}  // namespace corvane
