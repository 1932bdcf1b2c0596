#include "Platform/Updates/ArchiveSignature.h"

#include <sodium.h>

namespace corvane::ArchiveSignature {

namespace {

// Blanks and line breaks, which ArchiveChecks::decodeBase64 passes over too.
constexpr const char* ignoredInBase64 = " \t\r\n";

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text, std::size_t expectedBytes) {
    return ArchiveChecks::decodeBase64(text, expectedBytes);
}

std::string encodeBase64(std::string_view bytes) {
    std::string text(sodium_base64_ENCODED_LEN(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(),
                      reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                      sodium_base64_VARIANT_ORIGINAL);
    // The encoded length counts the terminating NUL.
    text.pop_back();
    return text;
}

std::optional<std::string> decodePublicKey(std::string_view base64) {
    return decodeBase64(base64, publicKeyBytes);
}

std::variant<std::string, UpdateFailure> readExactly(const std::filesystem::path& path,
                                                     std::uint64_t expectedLength) {
    return ArchiveChecks::readExactly(path, expectedLength);
}

std::optional<UpdateFailure> verify(std::string_view archive, std::string_view signatureBase64,
                                    std::string_view publicKeyBase64) {
    if (sodium_init() < 0) {
        return UpdateFailure{"the signature library cannot start"};
    }
    const std::optional<std::string> key = decodePublicKey(publicKeyBase64);
    if (!key) {
        return UpdateFailure{"the update key of the installed bundle is not an Ed25519 key"};
    }
    if (signatureBase64.find_first_not_of(ignoredInBase64) == std::string_view::npos) {
        return UpdateFailure{"the update is not signed"};
    }
    const std::optional<std::string> signature = decodeBase64(signatureBase64, signatureBytes);
    if (!signature) {
        return UpdateFailure{"the update's signature is not an Ed25519 signature"};
    }
    if (crypto_sign_verify_detached(reinterpret_cast<const unsigned char*>(signature->data()),
                                    reinterpret_cast<const unsigned char*>(archive.data()),
                                    archive.size(),
                                    reinterpret_cast<const unsigned char*>(key->data())) != 0) {
        return UpdateFailure{"the update's signature does not match its archive and key"};
    }
    return std::nullopt;
}

}  // namespace corvane::ArchiveSignature
