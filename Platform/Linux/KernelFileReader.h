#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"

namespace corvane {

/// Reads whole procfs and sysfs files into one buffer it owns and reuses, so that reading the
/// same files on every refresh allocates nothing once the buffer has grown to fit them.
/// Not thread-safe: one reader per thread.
class KernelFileReader {
public:
    /// The default limit: far above any file read on a refresh (a /proc/stat of a few thousand
    /// CPUs), low enough that a runaway file cannot take the process's memory.
    static constexpr std::size_t defaultLimitBytes = 4 * 1024 * 1024;

    /// `limit`: the most bytes one read returns (at least 1).
    explicit KernelFileReader(std::size_t limit = defaultLimitBytes);

    /// The file's content up to `limit` bytes; a longer file is cut after its last complete line
    /// within the limit. Absent when the file cannot be opened or read (missing, EACCES,
    /// EOPNOTSUPP as /proc/pressure answers with PSI disabled, EAGAIN) or reads empty. The view
    /// stays valid until the next call.
    [[nodiscard]] std::optional<std::string_view> read(const char* path);

    /// The file as one decimal integer, as sysfs attributes hold a reading or a setting: blanks
    /// and the line end around it are allowed. Absent when the file cannot be read or holds
    /// anything else, or the value does not fit in `Integer`.
    template <std::integral Integer>
    [[nodiscard]] std::optional<Integer> readNumber(const char* path) {
        const std::optional<std::string_view> text = read(path);
        return text ? parseNumber<Integer>(text::trim(*text)) : std::nullopt;
    }

private:
    /// Doubles the buffer up to the limit, keeping its first `used` bytes; false at the limit.
    bool grow(std::size_t used);

    std::size_t limitBytes;
    std::unique_ptr<char[]> buffer;
    std::size_t capacity = 0;
};

}  // namespace corvane
