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

/// The compiled Qt Linguist translations of a bundle (see BundleDirectory), each loaded on its
/// first use and kept. Keys are the English texts in the context "Localizable", the one table
/// every text lives in. Main thread only.
class QtTranslations {
public:
    /// Absent `bundle`: no translations at all.
    explicit QtTranslations(std::optional<std::filesystem::path> bundle);
    ~QtTranslations();

    QtTranslations(const QtTranslations&) = delete;
    QtTranslations& operator=(const QtTranslations&) = delete;

    /// The translation of `key` into `language`; absent when the language has no translation
    /// file, the file does not load, or it lacks the key.
    std::optional<std::string> translation(std::string_view language, std::string_view key);

private:
    const QTranslator* translator(std::string_view language);

    std::optional<std::filesystem::path> bundle;
    /// Null for a language whose file did not load, so it is tried only once.
    std::map<std::string, std::unique_ptr<QTranslator>, std::less<>> loaded;
};

}  // namespace corvane
