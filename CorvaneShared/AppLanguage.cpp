#include "CorvaneShared/AppLanguage.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/LanguageTag.h"

namespace corvane {

namespace {

constexpr std::string_view systemChoice = "system";
constexpr std::string_view fallbackLanguage = "en";
constexpr const char* processLanguagesKey = "AppleLanguages";
constexpr const char* gettextLanguageVariable = "LANGUAGE";

bool contains(const std::vector<std::string>& list, std::string_view value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

bool isCLocale(std::string_view locale) {
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    return name == "C" || name == "POSIX";
}

// Entries gettext cannot use ("C", typos) are skipped rather than ending the list.
std::vector<std::string> tagsOfLanguageList(std::string_view list) {
    std::vector<std::string> tags;
    while (!list.empty()) {
        const std::size_t end = list.find(':');
        if (auto tag = parseLanguageTag(list.substr(0, end))) {
            tags.push_back(languageTagText(*tag));
        }
        list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    }
    return tags;
}

std::string gettextLanguageList(const std::vector<std::string>& languages) {
    std::string list;
    for (const std::string& language : languages) {
        const std::optional<LanguageTag> tag = parseLanguageTag(language);
        if (!tag) {
            continue;
        }
        if (!list.empty()) {
            list += ':';
        }
        list += gettextLanguageName(*tag);
    }
    return list;
}

}  // namespace

AppLanguage::AppLanguage(Sources sources) : sources(std::move(sources)) {}

std::optional<std::string> AppLanguage::environmentValue(const char* name) const {
    const char* value = sources.environment ? sources.environment(name) : nullptr;
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::string AppLanguage::choice() const {
    if (auto forced = environmentValue(languageEnvironmentVariable)) {
        return *forced;
    }
    return sources.shared.string("language").value_or(std::string(systemChoice));
}

std::string AppLanguage::developmentLanguage() const {
    return sources.developmentLocalization.value_or(std::string(fallbackLanguage));
}

std::vector<std::string> AppLanguage::shipped() const {
    std::vector<std::string> candidates{developmentLanguage()};
    candidates.insert(candidates.end(), sources.localizations.begin(), sources.localizations.end());
    // "Base" is a folder of language-neutral resources, not a language, wherever it is named:
    // a bundle that gives it as its development localisation ships no language of that name.
    std::vector<std::string> languages;
    for (std::string& language : candidates) {
        if (language != "Base" && !contains(languages, language)) {
            languages.push_back(std::move(language));
        }
    }
    return languages;
}

std::vector<std::string> AppLanguage::systemLanguages() const {
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        locale = environmentValue(name).value_or("");
        if (!locale.empty()) {
            break;
        }
    }
    std::vector<std::string> english{std::string(fallbackLanguage)};
    if (locale.empty() || isCLocale(locale)) {
        return english;
    }
    // While our own list is in force, LANGUAGE is ours; the user's is kept aside.
    std::optional<std::string> list = environmentValue(inheritedLanguageVariable);
    if (!list) {
        list = environmentValue(gettextLanguageVariable);
    }
    if (list) {
        if (std::vector<std::string> tags = tagsOfLanguageList(*list); !tags.empty()) {
            return tags;
        }
    }
    const std::optional<LanguageTag> tag = parseLanguageTag(locale);
    return tag ? std::vector<std::string>{languageTagText(*tag)} : english;
}

bool AppLanguage::isShippedChoice(const std::string& chosen) const {
    return chosen != systemChoice && contains(shipped(), chosen);
}

std::string AppLanguage::code() const {
    std::string chosen = choice();
    if (isShippedChoice(chosen)) {
        return chosen;
    }
    return preferredLocalization(shipped(), systemLanguages()).value_or(developmentLanguage());
}

std::string AppLanguage::string(std::string_view key) const {
    const std::string language = code();
    if (language == developmentLanguage() || !sources.translation) {
        return std::string(key);
    }
    return sources.translation(language, key).value_or(std::string(key));
}

void AppLanguage::recordLaunchCode() {
    launchCode = code();
}

bool AppLanguage::processIsStale() const {
    return !launchCode.empty() && code() != launchCode;
}

void AppLanguage::applyChoiceToProcessDefaults() const {
    const std::string chosen = choice();
    const std::optional<std::string> inherited = environmentValue(inheritedLanguageVariable);
    if (!isShippedChoice(chosen)) {
        sources.own.remove(processLanguagesKey);
        if (inherited && sources.setEnvironment) {
            sources.setEnvironment(gettextLanguageVariable,
                                   inherited->empty() ? nullptr : inherited->c_str());
            sources.setEnvironment(inheritedLanguageVariable, nullptr);
        }
        return;
    }
    std::vector<std::string> languages{chosen};
    for (std::string& language : systemLanguages()) {
        if (language != chosen) {
            languages.push_back(std::move(language));
        }
    }
    sources.own.set(processLanguagesKey, languages);
    if (!sources.setEnvironment) {
        return;
    }
    if (!inherited) {
        sources.setEnvironment(inheritedLanguageVariable,
                               environmentValue(gettextLanguageVariable).value_or("").c_str());
    }
    sources.setEnvironment(gettextLanguageVariable, gettextLanguageList(languages).c_str());
}

AppLanguage::Sources processLanguageSources(const std::optional<std::filesystem::path>& bundle,
                                            AppLanguage::TranslationLookup translation) {
    std::optional<BundleInfo> info = bundle ? BundleDirectory::readInfo(*bundle) : std::nullopt;
    return {
        .environment = [](const char* name) -> const char* { return std::getenv(name); },
        .setEnvironment =
            [](const char* name, const char* value) {
                if (value != nullptr) {
                    ::setenv(name, value, 1);
                } else {
                    ::unsetenv(name);
                }
            },
        .shared = SharedSettings::store(),
        .own = SharedSettings::standardStore(),
        .developmentLocalization = info ? info->developmentLocalization : std::nullopt,
        .localizations =
            bundle ? BundleDirectory::localizations(*bundle) : std::vector<std::string>{},
        .translation = std::move(translation),
    };
}

}  // namespace corvane
