// Language tags from the environment and the settings: parsing, printing and matching.

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "CorvaneShared/LanguageTag.h"
#include "fuzz/FuzzSupport.h"

namespace {

bool allOf(const std::string& text, int (*predicate)(int)) {
    return std::all_of(text.begin(), text.end(), [predicate](char c) {
        return predicate(static_cast<unsigned char>(c)) != 0;
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto text = fuzz::textOf(data, size);
    const auto arguments = fuzz::argumentsOf(text);

    if (const auto tag = parseLanguageTag(text)) {
        require((tag->language.size() == 2 || tag->language.size() == 3) &&
                    allOf(tag->language, islower),
                "language tag: the language is not two or three lower-case letters");
        require(tag->script.empty() || (tag->script.size() == 4 &&
                                        isupper(static_cast<unsigned char>(tag->script[0])) &&
                                        allOf(tag->script.substr(1), islower)),
                "language tag: the script is not four letters in title case");
        require(tag->region.empty() || (tag->region.size() == 2 && allOf(tag->region, isupper)) ||
                    (tag->region.size() == 3 && allOf(tag->region, isdigit)),
                "language tag: the region is neither two letters nor three digits");
        const auto printed = languageTagText(*tag);
        require(parseLanguageTag(printed) == tag, "language tag: printed tag parses otherwise");
        require(parseLanguageTag(gettextLanguageName(*tag)).has_value(),
                "language tag: the gettext name does not parse");
    }
    // The first half of the arguments offered, the rest preferred.
    const auto half = arguments.size() / 2;
    const std::vector<std::string> available(arguments.begin(), arguments.begin() + half);
    const std::vector<std::string> preferences(arguments.begin() + half, arguments.end());
    if (const auto chosen = preferredLocalization(available, preferences)) {
        require(std::find(available.begin(), available.end(), *chosen) != available.end(),
                "language tag: chose a localization that is not offered");
    }
    return 0;
}
