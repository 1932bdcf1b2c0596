#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "Foundation/FileDescriptor.h"

namespace corvane {

/// What replaceFileContents appends to the file's name for its temporary file (the X's become
/// random characters), so callers that bound name lengths can count it.
inline constexpr std::string_view replacementTemporarySuffix = ".tmp-XXXXXX";

/// Writes all of `bytes` to `fd`, retrying after signals; false on any other failure.
bool writeAll(int fd, std::string_view bytes);

/// Writes `contents` to a temporary file beside `path` with `permissions`, flushes it to disk
/// and renames it over `path`, so a reader sees either the old file or the new one, never a
/// part of it, and a crash leaves one of the two. The open new file on success (its status is
/// the file's now); absent, with `path` untouched and no temporary file left, on failure. The
/// folder must exist. Any thread.
std::optional<FileDescriptor> replaceFileContents(const std::filesystem::path& path,
                                                  std::string_view contents, mode_t permissions);

}  // namespace corvane
