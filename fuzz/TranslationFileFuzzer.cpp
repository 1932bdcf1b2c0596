// Compiled translation files (.qm): a damaged or hostile file read where the translations are
// installed must answer nothing rather than read past its bytes.

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/CompiledTranslations.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const std::string_view bytes = fuzz::textOf(data, size);
    const auto file = CompiledTranslationFile::fromBytes(std::string(bytes));
    if (!file) {
        return 0;
    }
    // The file's own strings are the keys most likely to reach its messages: the runs between
    // NUL bytes hold the source texts and contexts lrelease wrote, length bytes and all.
    std::vector<std::string_view> keys = {"", "Localizable", "Unknown"};
    for (const auto piece : fuzz::argumentsOf(bytes)) {
        for (std::size_t skip = 0; skip < 2 && skip < piece.size(); ++skip) {
            keys.push_back(piece.substr(skip));
        }
        if (keys.size() > 256) {
            break;
        }
    }
    for (const auto key : keys) {
        for (const std::string_view context : {std::string_view("Localizable"), key}) {
            if (const auto text = file->translation(context, key)) {
                require(!text->empty(), "translation: an empty text answered");
                require(fuzz::isValidUTF8(*text), "translation: not valid UTF-8");
                require(text->size() <= size * 2, "translation: longer than the file allows");
            }
        }
    }
    return 0;
}
