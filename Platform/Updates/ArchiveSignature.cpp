#include "Platform/Updates/ArchiveSignature.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Foundation/FileDescriptor.h"

namespace corvane::ArchiveSignature {

namespace {

// Feeds and hand-edited bundle info carry line breaks and blanks inside long base64 texts.
constexpr const char* ignoredInBase64 = " \t\r\n";

std::string describeSize(std::uint64_t bytes) {
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text, std::size_t expectedBytes) {
    if (sodium_init() < 0) {
        return std::nullopt;
    }
    std::string decoded(expectedBytes + 1, '\0');
    std::size_t length = 0;
    const char* end = nullptr;
    if (sodium_base642bin(reinterpret_cast<unsigned char*>(decoded.data()), decoded.size(),
                          text.data(), text.size(), ignoredInBase64, &length, &end,
                          sodium_base64_VARIANT_ORIGINAL) != 0 ||
        end != text.data() + text.size() || length != expectedBytes) {
        return std::nullopt;
    }
    decoded.resize(length);
    return decoded;
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
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return UpdateFailure{"the downloaded update cannot be read: " +
                             std::string(std::strerror(errno))};
    }
    const auto actual = static_cast<std::uint64_t>(status.st_size);
    if (actual != expectedLength) {
        return UpdateFailure{"the downloaded update is " + describeSize(actual) +
                             (actual < expectedLength ? " (truncated)" : " (too long)") +
                             " where the feed states " + describeSize(expectedLength)};
    }
    std::string bytes(actual, '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            // The file shrank under us, or the disk failed: either way it is not what was sized.
            return UpdateFailure{"the downloaded update changed while it was read"};
        }
        done += static_cast<std::size_t>(count);
    }
    // A file that grew after the size check would be longer than stated.
    char extra = 0;
    if (::read(file.get(), &extra, 1) != 0) {
        return UpdateFailure{"the downloaded update changed while it was read"};
    }
    return bytes;
}

std::optional<UpdateFailure> verify(std::string_view archive, std::string_view signatureBase64,
                                    std::string_view publicKeyBase64) {
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
