#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "Platform/Updates/ArchiveChecks.h"
#include "Platform/Updates/UpdateFailure.h"

namespace corvane {

/// Checks of a downloaded update archive before anything in it is unpacked. Ed25519 through
/// libsodium; nothing throws; any thread. The agent reaches verify() through the archive
/// module (ArchiveModule), which keeps libsodium out of its start.
namespace ArchiveSignature {

/// The size of an Ed25519 public key and of a signature, in bytes.
inline constexpr std::size_t publicKeyBytes = ArchiveChecks::publicKeyBytes;
inline constexpr std::size_t signatureBytes = ArchiveChecks::signatureBytes;

/// The bytes of `text`, standard base64 in which blanks and line breaks are ignored, when
/// they are exactly `expectedBytes` long; absent otherwise (ArchiveChecks::decodeBase64).
std::optional<std::string> decodeBase64(std::string_view text, std::size_t expectedBytes);
/// `bytes` as standard base64, padded, on one line.
std::string encodeBase64(std::string_view bytes);

/// The decoded key when `base64` (the bundle's SUPublicEDKey) is one; absent otherwise.
std::optional<std::string> decodePublicKey(std::string_view base64);

/// The whole archive at `path` when it is exactly `expectedLength` bytes long, read once so
/// that what is verified is what gets unpacked; a failure that says whether the file is
/// missing, shorter or longer than stated.
std::variant<std::string, UpdateFailure> readExactly(const std::filesystem::path& path,
                                                     std::uint64_t expectedLength);

/// Absent when `signatureBase64` is a valid Ed25519 signature of `archive` by the key
/// `publicKeyBase64`; the reason otherwise (no signature, malformed, not by that key).
std::optional<UpdateFailure> verify(std::string_view archive, std::string_view signatureBase64,
                                    std::string_view publicKeyBase64);

}  // namespace ArchiveSignature

}  // namespace corvane
