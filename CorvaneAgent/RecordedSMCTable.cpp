#include "CorvaneAgent/RecordedSMCTable.h"

#include <algorithm>
#include <limits>
#include <optional>

#include <nlohmann/json.hpp>

#include "CorvaneAgent/SMCDecoder.h"
#include "Foundation/BoundedFileRead.h"

namespace corvane {

namespace {

using TableResult = std::variant<RecordedSMCTable, RecordedSMCTableError>;

// Distinct failures, as a controller's driver would return them; the reader only tells zero
// from the rest.
constexpr int unknownKey = 1;
constexpr int indexPastEnd = 2;
constexpr int unsupportedCommand = 3;

constexpr std::size_t largestValueBytes = 32;
// A controller lists a few thousand keys at most, which take a few hundred kilobytes as a table.
constexpr std::size_t largestTableBytes = 4 * 1024 * 1024;

std::optional<std::uint8_t> hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<std::uint8_t>(c - '0');
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<std::uint8_t>(c - 'a' + 10);
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<std::uint8_t>(c - 'A' + 10);
    }
    return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> parseHexBytes(std::string_view text) {
    if (text.size() % 2 != 0) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const auto high = hexDigit(text[i]);
        const auto low = hexDigit(text[i + 1]);
        if (!high || !low) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
    }
    return bytes;
}

std::optional<std::uint32_t> fourByteCode(const nlohmann::json& entry, const char* member) {
    const auto found = entry.find(member);
    if (found == entry.end() || !found->is_string()) {
        return std::nullopt;
    }
    const auto& text = found->get_ref<const std::string&>();
    if (text.size() != 4) {
        return std::nullopt;
    }
    return SMCDecoder::keyCode(text);
}

// "entry 3" or, once the key is known to be text, "entry 3 "TC0P"".
std::string entryName(std::size_t index, const nlohmann::json& entry) {
    auto name = "entry " + std::to_string(index);
    const auto key = entry.find("key");
    if (key != entry.end() && key->is_string()) {
        name += " " + key->dump();
    }
    return name;
}

RecordedSMCTableError entryError(std::size_t index, const nlohmann::json& entry,
                                 std::string_view problem) {
    return {entryName(index, entry) + ": " + std::string(problem)};
}

std::variant<RecordedSMCKey, RecordedSMCTableError> parseEntry(std::size_t index,
                                                               const nlohmann::json& entry) {
    if (!entry.is_object()) {
        return RecordedSMCTableError{"entry " + std::to_string(index) + " is not an object"};
    }
    RecordedSMCKey parsed;
    const auto key = fourByteCode(entry, "key");
    if (!key) {
        return entryError(index, entry, "\"key\" must be a string of four bytes");
    }
    parsed.key = *key;
    const auto type = fourByteCode(entry, "type");
    if (!type) {
        return entryError(index, entry, "\"type\" must be a string of four bytes");
    }
    parsed.dataType = *type;
    const auto hex = entry.find("bytes");
    const auto bytes = hex != entry.end() && hex->is_string()
                           ? parseHexBytes(hex->get_ref<const std::string&>())
                           : std::nullopt;
    if (!bytes) {
        return entryError(index, entry, "\"bytes\" must be a string of hexadecimal digit pairs");
    }
    if (bytes->size() > largestValueBytes) {
        return entryError(index, entry, "\"bytes\" holds more than 32 bytes");
    }
    parsed.bytes = *bytes;
    parsed.dataSize = static_cast<std::uint32_t>(bytes->size());
    if (const auto size = entry.find("size"); size != entry.end()) {
        if (!size->is_number_unsigned() ||
            size->get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
            return entryError(index, entry, "\"size\" must be a whole number from 0 to 2^32 - 1");
        }
        parsed.dataSize = size->get<std::uint32_t>();
    }
    return parsed;
}

}  // namespace

int RecordedSMCTable::call(const SMCRecord& input, SMCRecord& output) {
    const auto request = decodeSMCKeyData(input);
    const auto find = [this](std::uint32_t key) -> const RecordedSMCKey* {
        const auto found = positions.find(key);
        return found == positions.end() ? nullptr : &keys[found->second];
    };
    SMCKeyData answer;
    switch (request.data8) {
        case SMCCommand::readKeyInfo: {
            const auto* entry = find(request.key);
            if (!entry) {
                return unknownKey;
            }
            answer.key = entry->key;
            answer.keyInfo.dataSize = entry->dataSize;
            answer.keyInfo.dataType = entry->dataType;
            break;
        }
        case SMCCommand::readBytes: {
            const auto* entry = find(request.key);
            if (!entry) {
                return unknownKey;
            }
            answer.key = entry->key;
            const auto count = std::min<std::size_t>(entry->bytes.size(), request.keyInfo.dataSize);
            std::copy_n(entry->bytes.begin(), count, answer.bytes.begin());
            break;
        }
        case SMCCommand::keyAtIndex:
            if (request.data32 >= keys.size()) {
                return indexPastEnd;
            }
            answer.key = keys[request.data32].key;
            break;
        default: return unsupportedCommand;
    }
    output = encodeSMCKeyData(answer);
    return 0;
}

TableResult parseRecordedSMCTable(std::string_view json) {
    const auto document = nlohmann::json::parse(json, nullptr, false);
    if (document.is_discarded()) {
        return RecordedSMCTableError{"the table is not valid JSON"};
    }
    if (!document.is_array()) {
        return RecordedSMCTableError{"the table is not a JSON array of keys"};
    }
    RecordedSMCTable table;
    table.keys.reserve(document.size());
    for (std::size_t index = 0; index < document.size(); ++index) {
        auto parsed = parseEntry(index, document[index]);
        if (auto* error = std::get_if<RecordedSMCTableError>(&parsed)) {
            return std::move(*error);
        }
        auto& key = std::get<RecordedSMCKey>(parsed);
        const auto [previous, added] = table.positions.emplace(key.key, index);
        if (!added) {
            return entryError(
                index, document[index],
                "the key is listed before, as entry " + std::to_string(previous->second));
        }
        table.keys.push_back(std::move(key));
    }
    return table;
}

TableResult loadRecordedSMCTable(const std::filesystem::path& file) {
    const auto content = readFileAtMost(file, largestTableBytes);
    if (const auto* failure = std::get_if<FileReadFailure>(&content)) {
        return RecordedSMCTableError{*failure == FileReadFailure::tooLarge
                                         ? file.string() + ": larger than any controller table (" +
                                               std::to_string(largestTableBytes / 1024 / 1024) +
                                               " MiB)"
                                         : "cannot read " + file.string()};
    }
    auto result = parseRecordedSMCTable(std::get<std::string>(content));
    if (auto* error = std::get_if<RecordedSMCTableError>(&result)) {
        error->message = file.string() + ": " + error->message;
    }
    return result;
}

}  // namespace corvane
