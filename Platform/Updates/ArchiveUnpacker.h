#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "Platform/Updates/ArchiveSignature.h"

namespace corvane {

/// Unpacks a verified update archive (tar, compressed with xz, gzip, bzip2 or zstd, or zip)
/// with libarchive, refusing anything that could write outside the destination: absolute
/// paths, "..", links that point outside, hard links, devices and other special files, and
/// archives that would unpack to more than the limits below. Owners are never restored and
/// set-id bits are dropped. Any thread.
namespace ArchiveUnpacker {

/// The most an archive may unpack to, in bytes of regular files, and in entries.
inline constexpr std::uint64_t maximumUnpackedBytes = 2ull << 30;
inline constexpr std::uint64_t maximumEntries = 100'000;

/// Unpacks the archive `bytes` into the existing, empty `folder`. On a failure part of the
/// archive may already be there: the caller removes the folder.
std::optional<UpdateFailure> unpack(std::string_view bytes, const std::filesystem::path& folder);

/// The one relative path an entry named `name` may be written to, or absent when the name is
/// empty, absolute, or climbs with "..". "./" prefixes and repeated separators are dropped.
std::optional<std::filesystem::path> safeEntryPath(std::string_view name);

/// Whether a symbolic link at the relative `entry` pointing to `target` stays inside the
/// folder it is unpacked to.
bool isInwardLink(const std::filesystem::path& entry, std::string_view target);

}  // namespace ArchiveUnpacker

}  // namespace corvane
