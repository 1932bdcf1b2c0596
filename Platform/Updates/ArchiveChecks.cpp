#include "Platform/Updates/ArchiveChecks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Foundation/FileDescriptor.h"

namespace corvane::ArchiveChecks {

namespace {

constexpr unsigned notBase64 = 0xFF;

unsigned base64Value(char c) {
    if (c >= 'A' && c <= 'Z') {
        return static_cast<unsigned>(c - 'A');
    }
    if (c >= 'a' && c <= 'z') {
        return static_cast<unsigned>(c - 'a') + 26;
    }
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0') + 52;
    }
    if (c == '+') {
        return 62;
    }
    if (c == '/') {
        return 63;
    }
    return notBase64;
}

// Feeds and hand-edited bundle info carry line breaks and blanks inside long base64 texts. A
// NUL is passed over as well: libsodium's decoder, which verifies the signatures, looks the
// character up with strchr and so finds the terminator; a key this check accepts must be one
// the verifier accepts too.
bool isIgnored(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\0';
}

std::string describeSize(std::uint64_t bytes) {
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text, std::size_t expectedBytes) {
    std::string decoded;
    decoded.reserve(expectedBytes);
    std::size_t position = 0;
    // The bits read but not yet written out, and how many there are (fewer than eight).
    unsigned pending = 0;
    unsigned pendingBits = 0;
    for (; position < text.size(); ++position) {
        const char c = text[position];
        const unsigned value = base64Value(c);
        if (value == notBase64) {
            if (isIgnored(c)) {
                continue;
            }
            break;
        }
        pending = ((pending << 6) | value) & 0xFFF;
        pendingBits += 6;
        if (pendingBits >= 8) {
            pendingBits -= 8;
            if (decoded.size() == expectedBytes) {
                return std::nullopt;
            }
            decoded.push_back(static_cast<char>((pending >> pendingBits) & 0xFF));
        }
    }
    // A last character may only carry bits of the last byte, never a byte of its own, and
    // its unused bits are zero: one text for one byte string.
    if (pendingBits > 4 || (pending & ((1u << pendingBits) - 1)) != 0) {
        return std::nullopt;
    }
    // Two leftover bits ask for one '=', four for two.
    for (unsigned padding = pendingBits / 2; padding > 0; ++position) {
        if (position == text.size()) {
            return std::nullopt;
        }
        if (text[position] == '=') {
            --padding;
        } else if (!isIgnored(text[position])) {
            return std::nullopt;
        }
    }
    while (position < text.size() && isIgnored(text[position])) {
        ++position;
    }
    if (position != text.size() || decoded.size() != expectedBytes) {
        return std::nullopt;
    }
    return decoded;
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

}  // namespace corvane::ArchiveChecks
