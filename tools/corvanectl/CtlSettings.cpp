#include "tools/corvanectl/CtlSettings.h"

#include <system_error>
#include <variant>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "Foundation/BoundedFileRead.h"

namespace corvane {

namespace {

SettingValue effectiveValues(const SettingsStore& store) {
    SettingValue values = SettingValue::object();
    for (const auto& [key, value] : SharedSettings::factoryDefaults()) {
        values[key] = value;
    }
    const SettingValue stored = store.storedValues();
    for (const auto& [key, value] : stored.items()) {
        values[key] = value;
    }
    return values;
}

}  // namespace

std::string settingText(const SettingValue& value) {
    if (value.is_boolean()) {
        return value.get<bool>() ? "true" : "false";
    }
    if (auto text = stringFromSetting(value)) {
        return *text;
    }
    return value.dump(-1, ' ', false, SettingValue::error_handler_t::replace);
}

std::optional<std::string> settingsFileProblem(const std::filesystem::path& file) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return std::nullopt;
    }
    // A failed status() reads as no regular file.
    if (status.type() != std::filesystem::file_type::regular) {
        return "cannot read " + file.string();
    }
    const auto text = readFileAtMost(file, JSONFileSettingsStore::maximumFileBytes);
    if (std::holds_alternative<FileReadFailure>(text)) {
        return "cannot read " + file.string();
    }
    if (!JSONFileSettingsStore::parseContents(std::get<std::string>(text))) {
        return file.string() + " holds no JSON object of settings; fix or remove it";
    }
    return std::nullopt;
}

int runSettingsCommand(const CtlCommand& command, SettingsStore& store, std::ostream& out,
                       std::ostream& errors) {
    using Verb = CtlCommand::Verb;
    switch (command.verb) {
        case Verb::get: {
            const SettingValue value = store.object(command.key);
            if (value.is_null()) {
                errors << "corvanectl: no value for '" << command.key << "'\n";
                return 1;
            }
            out << settingText(value) << '\n';
            return 0;
        }
        case Verb::set:
        case Verb::remove: {
            const SettingValue value = command.verb == Verb::set ? command.value : SettingValue();
            if (!store.set(command.key, value)) {
                errors << "corvanectl: could not write the settings file\n";
                return 1;
            }
            return 0;
        }
        case Verb::list: {
            const SettingValue values = effectiveValues(store);
            for (const auto& [key, value] : values.items()) {
                out << key << " = "
                    << value.dump(-1, ' ', false, SettingValue::error_handler_t::replace) << '\n';
            }
            return 0;
        }
        case Verb::help:
        case Verb::post:
        case Verb::watch:
        case Verb::autostart: break;
    }
    errors << "corvanectl: not a settings command\n";
    return 2;
}

}  // namespace corvane
