#pragma once

// Writes compiled translation files (.qm) field by field, so tests can make the unusual files
// lrelease never writes for our sources: colliding hashes, comments, plural forms, damage.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane::testing {

inline constexpr unsigned char qmMagic[16] = {0x3c, 0xb8, 0x64, 0x18, 0xca, 0xef, 0x9c, 0x95,
                                              0xcd, 0x21, 0x1c, 0xbf, 0x60, 0xa1, 0xbd, 0xdd};

inline std::string bigEndian32(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
            static_cast<char>(value >> 8), static_cast<char>(value)};
}

/// The key lrelease files a message under (the ELF hash of source text and comment).
inline std::uint32_t qmHash(std::string_view text) {
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

/// UTF-16 code units as the file stores translations (big-endian).
inline std::string utf16BigEndian(std::u16string_view units) {
    std::string bytes;
    for (const char16_t unit : units) {
        bytes += static_cast<char>(unit >> 8);
        bytes += static_cast<char>(unit & 0xff);
    }
    return bytes;
}

class QmFileBuilder {
public:
    /// One message: its fields in order, each a tag and its content (written with a length);
    /// the end tag is added unless `withEnd` is false.
    struct Message {
        std::uint32_t hash;
        std::vector<std::pair<unsigned char, std::string>> fields;
        bool withEnd = true;
    };

    /// The usual message: translation, source text and context, as lrelease writes it.
    static Message message(std::string_view source, std::u16string_view translation,
                           std::string_view context = "Localizable") {
        return {qmHash(source),
                {{3, utf16BigEndian(translation)},
                 {6, std::string(source)},
                 {7, std::string(context)}}};
    }

    QmFileBuilder& add(Message message) {
        messages.push_back(std::move(message));
        return *this;
    }

    /// A raw block (tag, content) written after the messages.
    QmFileBuilder& block(unsigned char tag, std::string content) {
        extraBlocks.emplace_back(tag, std::move(content));
        return *this;
    }

    [[nodiscard]] std::string bytes() const {
        std::string messageBlock;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;
        for (const Message& message : messages) {
            entries.emplace_back(message.hash, static_cast<std::uint32_t>(messageBlock.size()));
            for (const auto& [tag, content] : message.fields) {
                messageBlock += static_cast<char>(tag);
                messageBlock += bigEndian32(static_cast<std::uint32_t>(content.size()));
                messageBlock += content;
            }
            if (message.withEnd) {
                messageBlock += '\x01';
            }
        }
        // Sorted by hash, and by offset among equal hashes, as lrelease sorts them.
        std::stable_sort(entries.begin(), entries.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::string hashBlock;
        for (const auto& [hash, offset] : entries) {
            hashBlock += bigEndian32(hash) + bigEndian32(offset);
        }
        std::string file(reinterpret_cast<const char*>(qmMagic), sizeof qmMagic);
        const auto append = [&](unsigned char tag, const std::string& content) {
            file += static_cast<char>(tag);
            file += bigEndian32(static_cast<std::uint32_t>(content.size()));
            file += content;
        };
        append(0x42, hashBlock);
        append(0x69, messageBlock);
        for (const auto& [tag, content] : extraBlocks) {
            append(tag, content);
        }
        return file;
    }

private:
    std::vector<Message> messages;
    std::vector<std::pair<unsigned char, std::string>> extraBlocks;
};

}  // namespace corvane::testing
