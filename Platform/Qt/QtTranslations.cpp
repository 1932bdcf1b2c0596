#include "Platform/Qt/QtTranslations.h"

#include <QString>
#include <QTranslator>

#include <system_error>
#include <utility>

namespace corvane {

namespace {

// The name of the default table of texts; every .ts file keeps its messages in this context.
constexpr const char* textContext = "Localizable";

}  // namespace

QtTranslations::QtTranslations(FileLookup translationFile)
    : translationFile(std::move(translationFile)) {}

QtTranslations::~QtTranslations() = default;

const QTranslator* QtTranslations::translator(std::string_view language) {
    if (auto found = loaded.find(language); found != loaded.end()) {
        return found->second.get();
    }
    std::unique_ptr<QTranslator> translator;
    const auto file = translationFile ? translationFile(language) : std::filesystem::path();
    std::error_code error;
    // QTranslator::load falls back to shorter names ("corvane_pt_BR" to "corvane_pt"), which
    // would answer one language with another's texts; only the exact file counts.
    if (!file.empty() && std::filesystem::is_regular_file(file, error)) {
        translator = std::make_unique<QTranslator>();
        if (!translator->load(QString::fromStdString(file.string()))) {
            translator.reset();
        }
    }
    return loaded.emplace(std::string(language), std::move(translator)).first->second.get();
}

std::optional<std::string> QtTranslations::translation(std::string_view language,
                                                       std::string_view key) {
    const QTranslator* table = translator(language);
    if (table == nullptr) {
        return std::nullopt;
    }
    const std::string source(key);
    const QString text = table->translate(textContext, source.c_str());
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text.toStdString();
}

}  // namespace corvane
