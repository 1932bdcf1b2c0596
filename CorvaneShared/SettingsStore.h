#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace corvane {

/// A settings value as stored: a Boolean, a number, a string, or anything else JSON can hold.
/// `null` stands for "no value".
using SettingValue = nlohmann::json;

/// An ordered list of keys and their values, such as the factory defaults.
using SettingList = std::vector<std::pair<std::string, SettingValue>>;

/// Typed reading of a stored value, by the usual defaults conventions: true for `true`, a
/// number other than 0, or the text "true", "yes" or "1" in any case; false otherwise.
bool booleanFromSetting(const SettingValue& value);
/// A number, a Boolean as 1 or 0, or a string that is entirely a number; 0 otherwise.
double doubleFromSetting(const SettingValue& value);
/// A string as is, a number as its shortest text; absent otherwise.
std::optional<std::string> stringFromSetting(const SettingValue& value);

/// A key-value settings store with a registration domain. Reads answer the stored value, else
/// the registered default, else nothing; registered values are never persisted. Thread-safe.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The value under `key` with its stored type, or null when there is none.
    SettingValue object(std::string_view key) const;
    /// False when the key has no value (see booleanFromSetting).
    bool boolean(std::string_view key) const { return booleanFromSetting(object(key)); }
    /// 0 when the key has no value (see doubleFromSetting).
    double number(std::string_view key) const { return doubleFromSetting(object(key)); }
    /// Absent when the key has no value or one that is not text (see stringFromSetting).
    std::optional<std::string> string(std::string_view key) const {
        return stringFromSetting(object(key));
    }

    /// Stores `value` under `key` (null removes it). False when it could not be persisted; the
    /// store then still answers the value it had.
    virtual bool set(std::string_view key, const SettingValue& value) = 0;
    /// Removes the stored value under `key`; the registered default answers again.
    bool remove(std::string_view key) { return set(key, nullptr); }
    /// Every stored (not registered) key and value, as one JSON object.
    virtual SettingValue storedValues() const = 0;

    /// Adds `defaults` to the registration domain, replacing earlier registrations of the
    /// same keys.
    void registerDefaults(const SettingList& defaults);

protected:
    /// The persisted value under `key`, or null.
    virtual SettingValue storedValue(std::string_view key) const = 0;

private:
    mutable std::mutex registrationMutex;
    SettingValue registered = SettingValue::object();
};

/// A store that lives in memory only: tests, and the fallback when nothing can be persisted.
class InMemorySettingsStore final : public SettingsStore {
public:
    InMemorySettingsStore() = default;
    explicit InMemorySettingsStore(SettingValue initial);

    bool set(std::string_view key, const SettingValue& value) override;
    SettingValue storedValues() const override;

protected:
    SettingValue storedValue(std::string_view key) const override;

private:
    mutable std::mutex mutex;
    SettingValue values = SettingValue::object();
};

}  // namespace corvane
