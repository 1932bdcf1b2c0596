// The settings file's contents as the store reads them, and the typed reads of every value.

#include <cmath>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SettingsStore.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto parsed = JSONFileSettingsStore::parseContents(fuzz::textOf(data, size));
    if (!parsed) {
        return 0;
    }
    require(parsed->is_object(), "settings: contents that are not an object");
    // What the store writes must read back as what it held: indented and compact alike.
    for (const int indent : {4, -1}) {
        const auto printed =
            parsed->dump(indent, ' ', false, SettingValue::error_handler_t::replace);
        const auto reparsed = JSONFileSettingsStore::parseContents(printed);
        require(reparsed.has_value(), "settings: printed contents do not parse");
        require(*reparsed == *parsed, "settings: printed contents parse to something else");
    }
    for (const auto& [key, value] : parsed->items()) {
        require(std::isfinite(doubleFromSetting(value)), "settings: a number read is not finite");
        (void)booleanFromSetting(value);
        if (const auto text = stringFromSetting(value); text && value.is_number()) {
            require(!text->empty(), "settings: a number's text is empty");
        }
    }
    return 0;
}
