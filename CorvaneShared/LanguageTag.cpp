#include "CorvaneShared/LanguageTag.h"

#include <algorithm>
#include <cctype>

namespace corvane {

namespace {

bool isLetters(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isalpha(c) != 0; });
}

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return result;
}

std::string uppercased(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return result;
}

std::string titlecased(std::string_view text) {
    std::string result = lowercased(text);
    if (!result.empty()) {
        result[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(result[0])));
    }
    return result;
}

// glibc names a script with a locale modifier ("sr_RS@latin"); only these two are common
// enough to matter, and both name the script outright.
std::string scriptOfModifier(std::string_view modifier) {
    const std::string name = lowercased(modifier);
    if (name == "latin") {
        return "Latn";
    }
    if (name == "cyrillic") {
        return "Cyrl";
    }
    return {};
}

bool sameLanguageAndScript(const LanguageTag& a, const LanguageTag& b) {
    return a.language == b.language && a.script == b.script;
}

// The first entry of `available` whose tag satisfies `matches`, as written there.
template <typename Predicate>
std::optional<std::string> firstAvailable(const std::vector<std::string>& available,
                                          Predicate matches) {
    for (const std::string& entry : available) {
        const std::optional<LanguageTag> tag = parseLanguageTag(entry);
        if (tag && matches(*tag)) {
            return entry;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<LanguageTag> parseLanguageTag(std::string_view text) {
    std::string_view modifier;
    if (const auto at = text.find('@'); at != std::string_view::npos) {
        modifier = text.substr(at + 1);
        text = text.substr(0, at);
    }
    text = text.substr(0, text.find('.'));

    LanguageTag tag;
    bool isFirst = true;
    while (!text.empty() || isFirst) {
        const std::size_t end = text.find_first_of("-_");
        const std::string_view part = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (isFirst) {
            if (part.size() < 2 || part.size() > 3 || !isLetters(part)) {
                return std::nullopt;
            }
            tag.language = lowercased(part);
            isFirst = false;
        } else if (part.size() == 4 && isLetters(part) && tag.script.empty() &&
                   tag.region.empty()) {
            tag.script = titlecased(part);
        } else if (((part.size() == 2 && isLetters(part)) ||
                    (part.size() == 3 && isDigits(part))) &&
                   tag.region.empty()) {
            tag.region = uppercased(part);
        } else {
            // A variant or extension: nothing after it changes which translation fits.
            break;
        }
    }
    if (tag.script.empty()) {
        tag.script = scriptOfModifier(modifier);
    }
    return tag;
}

std::string languageTagText(const LanguageTag& tag) {
    std::string text = tag.language;
    for (const std::string* part : {&tag.script, &tag.region}) {
        if (!part->empty()) {
            text += '-';
            text += *part;
        }
    }
    return text;
}

std::string gettextLanguageName(const LanguageTag& tag) {
    return tag.region.empty() ? tag.language : tag.language + "_" + tag.region;
}

std::optional<std::string> preferredLocalization(const std::vector<std::string>& available,
                                                 const std::vector<std::string>& preferences) {
    for (const std::string& preference : preferences) {
        const std::optional<LanguageTag> wanted = parseLanguageTag(preference);
        if (!wanted) {
            continue;
        }
        LanguageTag withoutRegion = *wanted;
        withoutRegion.region.clear();
        if (auto exact =
                firstAvailable(available, [&](const LanguageTag& tag) { return tag == *wanted; })) {
            return exact;
        }
        if (auto general = firstAvailable(
                available, [&](const LanguageTag& tag) { return tag == withoutRegion; })) {
            return general;
        }
        if (auto sibling = firstAvailable(available, [&](const LanguageTag& tag) {
                return sameLanguageAndScript(tag, *wanted);
            })) {
            return sibling;
        }
    }
    return std::nullopt;
}

}  // namespace corvane
