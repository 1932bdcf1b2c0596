#include "Platform/Linux/BlockDevice.h"

#include <limits>

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

std::optional<unsigned> hexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<unsigned>(c - 'a' + 10);
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<unsigned>(c - 'A' + 10);
    }
    return std::nullopt;
}

}  // namespace

std::optional<DeviceNumber> parseDeviceNumber(std::string_view text) {
    text = text::trim(text);
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto major = parseNumber<unsigned>(text.substr(0, colon));
    const auto minor = parseNumber<unsigned>(text.substr(colon + 1));
    if (!major || !minor) {
        return std::nullopt;
    }
    return DeviceNumber{*major, *minor};
}

std::optional<std::string_view> parseDiskModel(std::string_view text) {
    const auto model = text::trim(text);
    if (model.empty()) {
        return std::nullopt;
    }
    return model;
}

std::string decodeUdevLabel(std::string_view linkName) {
    std::string label;
    label.reserve(linkName.size());
    while (!linkName.empty()) {
        if (linkName.size() >= 4 && linkName.starts_with("\\x")) {
            const auto high = hexDigitValue(linkName[2]);
            const auto low = hexDigitValue(linkName[3]);
            if (high && low) {
                label.push_back(static_cast<char>(*high * 16 + *low));
                linkName.remove_prefix(4);
                continue;
            }
        }
        label.push_back(linkName.front());
        linkName.remove_prefix(1);
    }
    return label;
}

}  // namespace corvane
