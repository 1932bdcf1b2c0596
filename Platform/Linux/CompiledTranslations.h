#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

/// One compiled Qt Linguist translation file (.qm, as lrelease writes it), answered the way
/// QTranslator::translate answers with no disambiguation and no plural count. Every offset and
/// length in the file is checked against the bytes actually there, so a damaged or hostile file
/// answers nothing rather than reading past its end.
class CompiledTranslationFile {
public:
    /// Larger files do not load: ours are a few kilobytes, and the whole file is kept in memory.
    static constexpr std::size_t maximumBytes = 4 * 1024 * 1024;

    /// The file's bytes as a table; absent when they are not a .qm file Qt would load (wrong
    /// magic, a block running past the end, invalid plural rules), when they are larger than
    /// maximumBytes, or when they name other files they depend on (none of ours do).
    [[nodiscard]] static std::optional<CompiledTranslationFile> fromBytes(std::string bytes);

    /// The file at `path` read with at most maximumBytes + 1 bytes taken, whatever its size
    /// claims; absent when it is not a regular file, cannot be read, or does not load.
    [[nodiscard]] static std::optional<CompiledTranslationFile> fromFile(
        const std::filesystem::path& path);

    /// The translation of `source` in `context`, converted from the file's UTF-16 to UTF-8 (an
    /// unpaired surrogate becomes '?', as Qt converts it). Absent when the file lacks the text
    /// or its translation is empty; `source` and `context` end at a NUL byte as C strings do.
    [[nodiscard]] std::optional<std::string> translation(std::string_view context,
                                                         std::string_view source) const;

private:
    /// Where one block lies in `bytes`; empty when the file has no such block.
    struct Block {
        std::size_t offset = 0;
        std::size_t size = 0;
    };

    explicit CompiledTranslationFile(std::string bytes) : bytes(std::move(bytes)) {}

    [[nodiscard]] bool hasContext(std::string_view context) const;
    [[nodiscard]] std::optional<std::string_view> messageTranslation(std::size_t offset,
                                                                     std::string_view context,
                                                                     std::string_view source) const;

    std::string bytes;
    Block contexts;
    Block hashes;
    Block messages;
};

/// Compiled translations, each language's file loaded on its first use and kept. Keys are the
/// English texts in the context "Localizable", the one table every text lives in. Main thread
/// only.
class CompiledTranslations {
public:
    /// Where the compiled translation of `language` ("de", "pt-BR") would be; it need not exist.
    using FileLookup = std::function<std::filesystem::path(std::string_view language)>;

    /// Translations from the files `translationFile` names; an empty lookup: none at all. The
    /// caller knows the layout the files are installed in, so this class needs no bundle.
    explicit CompiledTranslations(FileLookup translationFile);

    CompiledTranslations(const CompiledTranslations&) = delete;
    CompiledTranslations& operator=(const CompiledTranslations&) = delete;

    /// The translation of `key` into `language`; absent when the language has no translation
    /// file, the file does not load, or it lacks the key.
    std::optional<std::string> translation(std::string_view language, std::string_view key);
    /// `translation` as a function, for a language's lookup; it must not outlive this.
    std::function<std::optional<std::string>(std::string_view, std::string_view)> lookup() {
        return [this](std::string_view language, std::string_view key) {
            return translation(language, key);
        };
    }

private:
    const CompiledTranslationFile* table(std::string_view language);

    FileLookup translationFile;
    /// Absent for a language whose file did not load, so it is tried only once.
    std::map<std::string, std::optional<CompiledTranslationFile>, std::less<>> loaded;
};

}  // namespace corvane
