#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"

namespace corvane {

/// The interface language: which of the shipped languages is in force, the translation of the
/// English text keys into it, and the process's own language list. Reads its sources afresh on
/// every call, so a choice made in the companion application shows in the next text; the only
/// state is the language the process was launched with. Main thread only.
class AppLanguage {
public:
    /// Sets a variable of the process environment; a null value removes it.
    using EnvironmentSetter = std::function<void(const char* name, const char* value)>;
    /// The translation of an English key into a shipped language; absent when that language
    /// has no translation file or the file lacks the key.
    using TranslationLookup =
        std::function<std::optional<std::string>(std::string_view language, std::string_view key)>;

    /// What the language is decided from. The stores outlive the AppLanguage.
    struct Sources {
        /// The process environment: CORVANE_LANGUAGE and the POSIX locale variables.
        SharedSettings::EnvironmentLookup environment;
        EnvironmentSetter setEnvironment;
        /// The shared suite, which holds the user's choice under "language".
        SettingsStore& shared;
        /// The agent's own store, which holds the process's language list ("AppleLanguages").
        SettingsStore& own;
        /// The language the keys are written in; absent reads as "en".
        std::optional<std::string> developmentLocalization;
        /// The languages the bundle has translations for, in the bundle's order.
        std::vector<std::string> localizations;
        TranslationLookup translation;
    };

    /// Forces the interface language, even when empty; the stored choice is then ignored.
    static constexpr const char* languageEnvironmentVariable = "CORVANE_LANGUAGE";
    /// Holds the LANGUAGE value this process inherited while one of its own is in force, so
    /// that the user's list survives a relaunch that inherits ours (empty: there was none).
    static constexpr const char* inheritedLanguageVariable = "CORVANE_INHERITED_LANGUAGE";

    explicit AppLanguage(Sources sources);

    /// CORVANE_LANGUAGE when set, else the stored "language" text, else "system".
    std::string choice() const;
    /// The development language first, then the bundle's localisations, without any "Base"
    /// (not even as the development language) and without repeats (the first occurrence stays).
    std::vector<std::string> shipped() const;
    /// The user's languages, most preferred first, as BCP 47 tags: from LANGUAGE (a
    /// colon-separated list), else the locale of LC_ALL, LC_MESSAGES or LANG (the first that is
    /// set and not empty). ["en"] when none is set or the locale is "C" or "POSIX", which, as
    /// in gettext, also silences LANGUAGE.
    std::vector<std::string> systemLanguages() const;
    /// The language in force: the choice when it is shipped, else the best shipped match for
    /// the system languages (see preferredLocalization), else the development language.
    std::string code() const;
    /// The translation of the English text `key` into `code()`; the key itself for the
    /// development language and whenever there is no translation.
    std::string string(std::string_view key) const;

    /// Remembers `code()` as the language this process started with. Called once at start,
    /// before anything asks `processIsStale`.
    void recordLaunchCode();
    /// The code recorded at launch; empty until then.
    const std::string& launchedCode() const { return launchCode; }
    /// Whether the language in force is no longer the one the process started with; false
    /// until the launch code is recorded.
    bool processIsStale() const;

    /// Puts the choice into the process's own language list. A shipped choice stores
    /// "AppleLanguages" = [choice, then the system languages without it] in the own store and
    /// sets LANGUAGE to that list, so that Qt and gettext texts of this process (read when the
    /// application object is created) and of a relaunch follow it. "system" or an unshipped
    /// choice removes "AppleLanguages" and gives LANGUAGE back its inherited value. Changes the
    /// environment: call it before other threads start or right before relaunching.
    void applyChoiceToProcessDefaults() const;

private:
    std::string developmentLanguage() const;
    bool isShippedChoice(const std::string& chosen) const;
    std::optional<std::string> environmentValue(const char* name) const;

    Sources sources;
    std::string launchCode;
};

/// The sources of this process: its environment, the shared and the agent's own settings
/// stores, and the bundle at `bundle` (absent: English only) with `translation` for its texts.
AppLanguage::Sources processLanguageSources(const std::optional<std::filesystem::path>& bundle,
                                            AppLanguage::TranslationLookup translation);

}  // namespace corvane
