#include "Platform/Linux/CompiledTranslations.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace corvane {

namespace {

// The file layout is Qt's: 16 magic bytes, then blocks of a one-byte tag, a 32-bit big-endian
// length and that many bytes. The hash block is a sorted table of (hash, message offset) pairs;
// each message is a run of tagged fields ending in an end tag.
constexpr std::array<unsigned char, 16> magic = {0x3c, 0xb8, 0x64, 0x18, 0xca, 0xef, 0x9c, 0x95,
                                                 0xcd, 0x21, 0x1c, 0xbf, 0x60, 0xa1, 0xbd, 0xdd};

enum BlockTag : unsigned char {
    contextsTag = 0x2f,
    hashesTag = 0x42,
    messagesTag = 0x69,
    numerusRulesTag = 0x88,
    dependenciesTag = 0x96,
};

enum MessageTag : unsigned char {
    endTag = 1,
    translationTag = 3,
    obsoleteTag = 5,
    sourceTextTag = 6,
    contextTag = 7,
    commentTag = 8,
};

// The plural rules' byte code, which Qt checks when it loads a file; a file it refuses for bad
// rules must not load here either.
constexpr unsigned char ruleEqual = 0x01;
constexpr unsigned char ruleBetween = 0x04;
constexpr unsigned char ruleOperatorMask = 0x07;
constexpr unsigned char ruleAnd = 0xfd;
constexpr unsigned char ruleOr = 0xfe;
constexpr unsigned char ruleNew = 0xff;

std::uint32_t read32(std::string_view bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i]));
    };
    return byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
}

std::uint16_t read16(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[at]) << 8 |
                                      static_cast<unsigned char>(bytes[at + 1]));
}

bool areValidNumerusRules(std::string_view rules) {
    if (rules.empty()) {
        return true;
    }
    std::size_t at = 0;
    for (;;) {
        const auto opcode = static_cast<unsigned char>(rules[at]);
        const unsigned char operation = opcode & ruleOperatorMask;
        if ((opcode & 0x80) != 0 || operation < ruleEqual || operation > ruleBetween) {
            return false;
        }
        const std::size_t operands = operation == ruleBetween ? 2 : 1;
        if (rules.size() - at - 1 < operands) {
            return false;
        }
        at += 1 + operands;
        if (at == rules.size()) {
            return true;
        }
        const auto joiner = static_cast<unsigned char>(rules[at]);
        if (joiner != ruleAnd && joiner != ruleOr && joiner != ruleNew) {
            return false;
        }
        if (++at == rules.size()) {
            return false;
        }
    }
}

// The ELF hash the hash table is keyed with; 0 is kept for "no hash".
std::uint32_t elfHash(std::string_view text) {
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = (hash << 4) + static_cast<unsigned char>(c);
        const std::uint32_t high = hash & 0xf0000000;
        if (high != 0) {
            hash ^= high >> 24;
        }
        hash &= ~high;
    }
    return hash == 0 ? 1 : hash;
}

// Names in the file may carry the C string's terminator in their length.
bool matches(std::string_view stored, std::string_view wanted) {
    if (!stored.empty() && stored.back() == '\0') {
        stored.remove_suffix(1);
    }
    return stored == wanted;
}

std::string_view untilNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

void appendUTF8(std::string& out, std::uint32_t codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xc0 | codePoint >> 6);
        out += static_cast<char>(0x80 | (codePoint & 0x3f));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xe0 | codePoint >> 12);
        out += static_cast<char>(0x80 | (codePoint >> 6 & 0x3f));
        out += static_cast<char>(0x80 | (codePoint & 0x3f));
    } else {
        out += static_cast<char>(0xf0 | codePoint >> 18);
        out += static_cast<char>(0x80 | (codePoint >> 12 & 0x3f));
        out += static_cast<char>(0x80 | (codePoint >> 6 & 0x3f));
        out += static_cast<char>(0x80 | (codePoint & 0x3f));
    }
}

// Big-endian UTF-16 of an even length to UTF-8.
std::string utf8FromUTF16BigEndian(std::string_view units) {
    std::string out;
    out.reserve(units.size() + units.size() / 2);
    const std::size_t count = units.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t unit = read16(units, 2 * i);
        const bool isHigh = unit >= 0xd800 && unit <= 0xdbff;
        const bool isLow = unit >= 0xdc00 && unit <= 0xdfff;
        if (isHigh && i + 1 < count) {
            const std::uint32_t next = read16(units, 2 * (i + 1));
            if (next >= 0xdc00 && next <= 0xdfff) {
                appendUTF8(out, 0x10000 + ((unit - 0xd800) << 10) + (next - 0xdc00));
                ++i;
                continue;
            }
        }
        if (isHigh || isLow) {
            out += '?';
            continue;
        }
        appendUTF8(out, unit);
    }
    return out;
}

// At most `limit` + 1 bytes, so that a longer file is known to be too long whatever fstat says.
std::optional<std::string> readBounded(const std::filesystem::path& path, std::size_t limit) {
    // Non-blocking so that a FIFO put where a translation belongs cannot hang the start.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return std::nullopt;
    }
    struct stat status {};
    std::optional<std::string> content;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        std::string bytes(limit + 1, '\0');
        std::size_t filled = 0;
        bool failed = false;
        while (filled < bytes.size()) {
            const ssize_t got = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                failed = true;
                break;
            }
            if (got == 0) {
                break;
            }
            filled += static_cast<std::size_t>(got);
        }
        if (!failed) {
            bytes.resize(filled);
            content = std::move(bytes);
        }
    }
    ::close(descriptor);
    return content;
}

}  // namespace

std::optional<CompiledTranslationFile> CompiledTranslationFile::fromBytes(std::string bytes) {
    if (bytes.size() > maximumBytes || bytes.size() < magic.size() ||
        std::memcmp(bytes.data(), magic.data(), magic.size()) != 0) {
        return std::nullopt;
    }
    CompiledTranslationFile file(std::move(bytes));
    const std::string_view data = file.bytes;
    Block numerusRules;
    std::size_t at = magic.size();
    // As Qt reads it: blocks while more than a block header's worth is left, up to a zero tag
    // or an empty block, which end the file.
    while (data.size() - at > 5) {
        const auto tag = static_cast<unsigned char>(data[at]);
        const std::uint32_t size = read32(data, at + 1);
        at += 5;
        if (tag == 0 || size == 0) {
            break;
        }
        if (size > data.size() - at) {
            return std::nullopt;
        }
        const Block block{at, size};
        switch (tag) {
            case contextsTag: file.contexts = block; break;
            case hashesTag: file.hashes = block; break;
            case messagesTag: file.messages = block; break;
            case numerusRulesTag: numerusRules = block; break;
            // Qt would load the named files beside this one; none of ours has any, and a
            // translation that needs others it cannot read is better not loaded at all.
            case dependenciesTag: return std::nullopt;
            default: break;
        }
        at += size;
    }
    if (!areValidNumerusRules(data.substr(numerusRules.offset, numerusRules.size))) {
        return std::nullopt;
    }
    return file;
}

std::optional<CompiledTranslationFile> CompiledTranslationFile::fromFile(
    const std::filesystem::path& path) {
    auto bytes = readBounded(path, maximumBytes);
    return bytes ? fromBytes(std::move(*bytes)) : std::nullopt;
}

bool CompiledTranslationFile::hasContext(std::string_view context) const {
    const std::string_view table = std::string_view(bytes).substr(contexts.offset, contexts.size);
    if (table.size() < 2) {
        return false;
    }
    const std::size_t buckets = read16(table, 0);
    if (buckets == 0) {
        return false;
    }
    const std::size_t bucket = 2 + 2 * (elfHash(context) % buckets);
    if (bucket + 2 > table.size()) {
        return false;
    }
    const std::size_t entry = read16(table, bucket);
    if (entry == 0) {
        return false;
    }
    // The bucket's names follow the buckets as length-prefixed strings, ended by a zero length.
    for (std::size_t at = 2 + 2 * buckets + 2 * entry; at < table.size();) {
        const std::size_t length = static_cast<unsigned char>(table[at++]);
        if (length == 0 || length > table.size() - at) {
            return false;
        }
        if (matches(table.substr(at, length), context)) {
            return true;
        }
        at += length;
    }
    return false;
}

std::optional<std::string_view> CompiledTranslationFile::messageTranslation(
    std::size_t offset, std::string_view context, std::string_view source) const {
    const std::string_view message = std::string_view(bytes).substr(messages.offset, messages.size);
    std::optional<std::string_view> translated;
    std::size_t at = offset;
    // Each field but the end tag carries a 32-bit length; one that runs past the messages
    // block makes the message unreadable, so it matches nothing.
    const auto field = [&]() -> std::optional<std::string_view> {
        if (message.size() - at < 4) {
            return std::nullopt;
        }
        const std::uint32_t length = read32(message, at);
        at += 4;
        if (length > message.size() - at) {
            return std::nullopt;
        }
        const std::string_view content = message.substr(at, length);
        at += length;
        return content;
    };
    while (at < message.size()) {
        switch (static_cast<unsigned char>(message[at++])) {
            case endTag: return translated;
            case translationTag: {
                const auto text = field();
                // Odd lengths (and the all-ones length of a null text) are not UTF-16.
                if (!text || text->size() % 2 != 0) {
                    return std::nullopt;
                }
                // The first translation is the singular form; the others are plurals.
                if (!translated) {
                    translated = text;
                }
                break;
            }
            case obsoleteTag:
                if (message.size() - at < 4) {
                    return std::nullopt;
                }
                at += 4;
                break;
            case sourceTextTag: {
                const auto text = field();
                if (!text || !matches(*text, source)) {
                    return std::nullopt;
                }
                break;
            }
            case contextTag: {
                const auto text = field();
                if (!text || !matches(*text, context)) {
                    return std::nullopt;
                }
                break;
            }
            case commentTag: {
                // The lookup has no disambiguation, which only an empty comment matches.
                const auto text = field();
                if (!text || (!text->empty() && text->front() != '\0')) {
                    return std::nullopt;
                }
                break;
            }
            default: return std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::string> CompiledTranslationFile::translation(std::string_view context,
                                                                std::string_view source) const {
    context = untilNul(context);
    source = untilNul(source);
    if (contexts.size != 0 && !hasContext(context)) {
        return std::nullopt;
    }
    const std::string_view table = std::string_view(bytes).substr(hashes.offset, hashes.size);
    const auto count = static_cast<std::ptrdiff_t>(table.size() / 8);
    if (count == 0) {
        return std::nullopt;
    }
    const std::uint32_t hash = elfHash(source);
    const auto hashAt = [&](std::ptrdiff_t index) {
        return read32(table, static_cast<std::size_t>(index) * 8);
    };
    // Qt's search, step for step, so that even an unsorted table answers as it does there.
    std::ptrdiff_t low = 0;
    std::ptrdiff_t high = count - 1;
    while (low <= high) {
        const std::ptrdiff_t middle = low + (high - low) / 2;
        const std::uint32_t found = hashAt(middle);
        if (found == hash) {
            low = middle;
            break;
        }
        if (found < hash) {
            low = middle + 1;
        } else {
            high = middle - 1;
        }
    }
    if (low > high) {
        return std::nullopt;
    }
    while (low != 0 && hashAt(low) == hashAt(low - 1)) {
        --low;
    }
    // Texts whose hashes collide share a run of entries; the message itself says which it is.
    for (std::ptrdiff_t index = low; index < count && hashAt(index) == hash; ++index) {
        const std::uint32_t offset = read32(table, static_cast<std::size_t>(index) * 8 + 4);
        if (offset > messages.size) {
            continue;
        }
        if (const auto text = messageTranslation(offset, context, source)) {
            if (text->empty()) {
                return std::nullopt;
            }
            return utf8FromUTF16BigEndian(*text);
        }
    }
    return std::nullopt;
}

CompiledTranslations::CompiledTranslations(FileLookup translationFile)
    : translationFile(std::move(translationFile)) {}

const CompiledTranslationFile* CompiledTranslations::table(std::string_view language) {
    auto found = loaded.find(language);
    if (found == loaded.end()) {
        // Only the exact file counts: a fallback from "pt-BR" to "pt" would answer one
        // language with another's texts.
        const auto file = translationFile ? translationFile(language) : std::filesystem::path();
        found = loaded
                    .emplace(std::string(language),
                             file.empty() ? std::nullopt : CompiledTranslationFile::fromFile(file))
                    .first;
    }
    return found->second ? &*found->second : nullptr;
}

std::optional<std::string> CompiledTranslations::translation(std::string_view language,
                                                             std::string_view key) {
    static constexpr std::string_view textContext = "Localizable";
    const CompiledTranslationFile* file = table(language);
    return file ? file->translation(textContext, key) : std::nullopt;
}

}  // namespace corvane
