#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Platform/Updates/UpdateFailure.h"

namespace corvane {

/// What the updater checks of an update's key and archive without cryptography: the form of
/// base64 keys and signatures, and the length of the download. Needs neither libsodium nor
/// libarchive, so the agent can check its bundle's key at start without loading them (the
/// signature itself is checked by the archive module, see ArchiveModule). Nothing throws; any
/// thread.
namespace ArchiveChecks {

/// The size of an Ed25519 public key and of a signature, in bytes.
inline constexpr std::size_t publicKeyBytes = 32;
inline constexpr std::size_t signatureBytes = 64;

/// The bytes of `text`, standard padded base64 in which blanks and line breaks are ignored,
/// when they are exactly `expectedBytes` long; absent otherwise. As strict as libsodium's
/// decoder, which the release tool encodes with: unused bits must be zero, the padding must be
/// there and nothing but blanks may follow it.
std::optional<std::string> decodeBase64(std::string_view text, std::size_t expectedBytes);

/// The decoded key when `base64` (the bundle's SUPublicEDKey) is one; absent otherwise.
std::optional<std::string> decodePublicKey(std::string_view base64);

/// The whole archive at `path` when it is exactly `expectedLength` bytes long, read once so
/// that what is verified is what gets unpacked; a failure that says whether the file is
/// missing, shorter or longer than stated.
std::variant<std::string, UpdateFailure> readExactly(const std::filesystem::path& path,
                                                     std::uint64_t expectedLength);

}  // namespace ArchiveChecks

}  // namespace corvane
