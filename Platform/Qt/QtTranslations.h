#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class QTranslator;

namespace corvane {

/// Compiled Qt Linguist translations, each loaded on its first use and kept. Keys are the English
/// texts in the context "Localizable", the one table every text lives in. Main thread only.
class QtTranslations {
public:
    /// Where the compiled translation of `language` ("de", "pt-BR") would be; it need not exist.
    using FileLookup = std::function<std::filesystem::path(std::string_view language)>;

    /// Translations from the files `translationFile` names; an empty lookup: none at all. The
    /// caller knows the layout the files are installed in, so this class needs no bundle.
    explicit QtTranslations(FileLookup translationFile);
    ~QtTranslations();

    QtTranslations(const QtTranslations&) = delete;
    QtTranslations& operator=(const QtTranslations&) = delete;

    /// The translation of `key` into `language`; absent when the language has no translation
    /// file, the file does not load, or it lacks the key.
    std::optional<std::string> translation(std::string_view language, std::string_view key);

private:
    const QTranslator* translator(std::string_view language);

    FileLookup translationFile;
    /// Null for a language whose file did not load, so it is tried only once.
    std::map<std::string, std::unique_ptr<QTranslator>, std::less<>> loaded;
};

}  // namespace corvane
