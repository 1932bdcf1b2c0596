#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "Platform/SMCTransport.h"

namespace corvane {

/// One key of a recorded controller table.
struct RecordedSMCKey {
    std::uint32_t key = 0;
    std::uint32_t dataType = 0;
    /// The size the controller reports: the number of bytes unless the table overrides it.
    std::uint32_t dataSize = 0;
    /// At most 32 bytes.
    std::vector<std::uint8_t> bytes;
};

/// Why a table was refused, naming the entry at fault.
struct RecordedSMCTableError {
    std::string message;
};

/// A controller that answers from a recorded key table, for tests, demonstrations and machines
/// without one. Cannot fail once loaded. One call at a time.
class RecordedSMCTable final : public SMCTransport {
public:
    /// Answers commands 9, 5 and 8 as a controller does: an unknown key, an index past the end
    /// or another command fails (nonzero). The array order is the index order, and "#KEY" is
    /// answered only when the table lists it.
    int call(const SMCRecord& input, SMCRecord& output) override;

private:
    friend std::variant<RecordedSMCTable, RecordedSMCTableError> parseRecordedSMCTable(
        std::string_view json);

    std::vector<RecordedSMCKey> keys;
    std::unordered_map<std::uint32_t, std::size_t> positions;
};

/// Parses a table: a JSON array of {"key": "TC0P", "type": "sp78", "bytes": "2d80"} with an
/// optional "size" overriding the reported data size. Keys and types are four bytes, the bytes
/// hexadecimal, at most 32 of them; a key may appear once.
[[nodiscard]] std::variant<RecordedSMCTable, RecordedSMCTableError> parseRecordedSMCTable(
    std::string_view json);

/// Reads and parses the table in `file`.
[[nodiscard]] std::variant<RecordedSMCTable, RecordedSMCTableError> loadRecordedSMCTable(
    const std::filesystem::path& file);

}  // namespace corvane
