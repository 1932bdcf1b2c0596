#include "CorvaneShared/SettingsStore.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

bool equalsIgnoringCase(std::string_view text, std::string_view lowercase) {
    return std::equal(
        text.begin(), text.end(), lowercase.begin(), lowercase.end(),
        [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

}  // namespace

bool booleanFromSetting(const SettingValue& value) {
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value.is_number()) {
        return value.get<double>() != 0;
    }
    if (value.is_string()) {
        const auto& text = value.get_ref<const std::string&>();
        return equalsIgnoringCase(text, "true") || equalsIgnoringCase(text, "yes") || text == "1";
    }
    return false;
}

double doubleFromSetting(const SettingValue& value) {
    if (value.is_number()) {
        return value.get<double>();
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? 1.0 : 0.0;
    }
    if (value.is_string()) {
        return parseNumber<double>(value.get_ref<const std::string&>()).value_or(0.0);
    }
    return 0.0;
}

std::optional<std::string> stringFromSetting(const SettingValue& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (value.is_number_integer()) {
        return value.dump();
    }
    if (value.is_number_float()) {
        char buffer[32];
        auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value.get<double>());
        if (error == std::errc{}) {
            return std::string(buffer, end);
        }
    }
    return std::nullopt;
}

SettingValue SettingsStore::object(std::string_view key) const {
    SettingValue stored = storedValue(key);
    if (!stored.is_null()) {
        return stored;
    }
    std::lock_guard lock(registrationMutex);
    auto found = registered.find(key);
    return found == registered.end() ? SettingValue() : *found;
}

void SettingsStore::registerDefaults(const SettingList& defaults) {
    std::lock_guard lock(registrationMutex);
    for (const auto& [key, value] : defaults) {
        registered[key] = value;
    }
}

InMemorySettingsStore::InMemorySettingsStore(SettingValue initial) {
    if (initial.is_object()) {
        values = std::move(initial);
    }
}

bool InMemorySettingsStore::set(std::string_view key, const SettingValue& value) {
    std::lock_guard lock(mutex);
    if (value.is_null()) {
        values.erase(std::string(key));
    } else {
        values[std::string(key)] = value;
    }
    return true;
}

SettingValue InMemorySettingsStore::storedValues() const {
    std::lock_guard lock(mutex);
    return values;
}

SettingValue InMemorySettingsStore::storedValue(std::string_view key) const {
    std::lock_guard lock(mutex);
    auto found = values.find(key);
    return found == values.end() ? SettingValue() : *found;
}

}  // namespace corvane
