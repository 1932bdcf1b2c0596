#include "Platform/Linux/Mountinfo.h"

#include <utility>

#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

// Ends the optional fields ("shared:1", "master:2", ...), of which there may be any number.
constexpr std::string_view optionalFieldsEnd = "-";

constexpr bool isOctalDigit(char c) {
    return c >= '0' && c <= '7';
}

// Advances `line` past `count` fields whose values do not matter here.
void skipFields(std::string_view& line, int count) {
    for (int i = 0; i < count; ++i) {
        static_cast<void>(text::takeField(line));
    }
}

// A line has: mount ID, parent ID, major:minor, root, mount point, mount options, optional
// fields, "-", file system type, mount source, super options.
std::optional<RootMount> parseRootLine(std::string_view line) {
    skipFields(line, 2);  // mount ID, parent ID
    const auto device = parseDeviceNumber(text::takeField(line));
    skipFields(line, 1);  // root of the mount within its file system
    const auto mountPoint = text::takeField(line);
    if (!device || mountPoint != "/") {
        return std::nullopt;
    }
    skipFields(line, 1);  // mount options
    while (true) {
        const auto field = text::takeField(line);
        if (field.empty()) {
            return std::nullopt;
        }
        if (field == optionalFieldsEnd) {
            break;
        }
    }
    skipFields(line, 1);  // file system type
    const auto source = text::takeField(line);
    if (source.empty()) {
        return std::nullopt;
    }
    return RootMount{*device, decodeMountinfoEscapes(source)};
}

}  // namespace

std::optional<RootMount> parseRootMount(std::string_view text) {
    std::optional<RootMount> root;
    while (!text.empty()) {
        if (auto mount = parseRootLine(text::takeLine(text))) {
            root = std::move(mount);
        }
    }
    return root;
}

std::string decodeMountinfoEscapes(std::string_view field) {
    std::string decoded;
    decoded.reserve(field.size());
    while (!field.empty()) {
        if (field.size() >= 4 && field[0] == '\\' && isOctalDigit(field[1]) &&
            isOctalDigit(field[2]) && isOctalDigit(field[3])) {
            decoded.push_back(
                static_cast<char>((field[1] - '0') * 64 + (field[2] - '0') * 8 + (field[3] - '0')));
            field.remove_prefix(4);
            continue;
        }
        decoded.push_back(field.front());
        field.remove_prefix(1);
    }
    return decoded;
}

}  // namespace corvane
