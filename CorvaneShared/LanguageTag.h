#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The parts of a language identifier that choosing a translation needs: "pt-BR",
/// "zh-Hant-TW", "de". Variants and extensions are not kept.
struct LanguageTag {
    /// Two or three lower-case letters.
    std::string language;
    /// Four letters, the first upper-case ("Hant"); empty when not given.
    std::string script;
    /// Two upper-case letters or three digits ("BR", "419"); empty when not given.
    std::string region;

    friend bool operator==(const LanguageTag&, const LanguageTag&) = default;
};

/// A BCP 47 tag ("pt-BR") or the language part of a POSIX locale name ("pt_BR.UTF-8@euro"),
/// in any letter case. The POSIX modifiers "latin" and "cyrillic" become scripts; other
/// modifiers and the codeset are dropped. Absent for "C", "POSIX" and anything else that
/// does not start with a language.
[[nodiscard]] std::optional<LanguageTag> parseLanguageTag(std::string_view text);

/// The tag written with '-' separators and canonical case ("zh-Hant-TW").
std::string languageTagText(const LanguageTag& tag);

/// The tag in the form the LANGUAGE variable of gettext takes: language and region joined by
/// '_' ("pt_BR"); the script is left out because gettext spells scripts as modifiers that
/// differ per catalogue.
std::string gettextLanguageName(const LanguageTag& tag);

/// The best of `available` for someone who reads `preferences`, most preferred first. Each
/// preference is tried in turn and the first that matches anything decides:
///  1. an available tag equal to it;
///  2. else one equal to it without its region ("de-AT" takes "de");
///  3. else the first, in `available` order, of the same language with another region ("de"
///     and "de-AT" both take "de-CH").
/// The script must agree in all three ("zh-Hant" never takes "zh-Hans"). Comparison ignores
/// case and treats '_' as '-'; entries that do not parse never match. Answers the entry of
/// `available` as written; absent when no preference matches.
std::optional<std::string> preferredLocalization(const std::vector<std::string>& available,
                                                 const std::vector<std::string>& preferences);

}  // namespace corvane
