#include "Platform/Linux/DevicetreeModel.h"

#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::string_view> parseDevicetreeModel(std::string_view text) {
    // A string property ends at its first NUL; some firmware pads with more.
    const auto model = text::trim(text.substr(0, text.find('\0')));
    if (model.empty()) {
        return std::nullopt;
    }
    return model;
}

}  // namespace corvane
