// corvanectl's command line and the values `set` stores. The input's NUL bytes separate the
// arguments.

#include <cmath>
#include <string>
#include <variant>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "fuzz/FuzzSupport.h"
#include "tools/corvanectl/CtlCommand.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto text = fuzz::textOf(data, size);
    const auto arguments = fuzz::argumentsOf(text);
    const auto parsed = parseCtlArguments(arguments);
    if (const auto* error = std::get_if<CtlUsageError>(&parsed)) {
        require(!error->message.empty() && error->message.find('\n') == std::string::npos,
                "ctl arguments: the error is not one line");
    } else {
        const auto& command = std::get<CtlCommand>(parsed);
        const bool keyed = command.verb == CtlCommand::Verb::get ||
                           command.verb == CtlCommand::Verb::set ||
                           command.verb == CtlCommand::Verb::remove;
        require(!keyed || !command.key.empty(), "ctl arguments: a key command without a key");
        require(command.verb != CtlCommand::Verb::set || !command.value.is_null(),
                "ctl arguments: set without a value");
    }
    using Type = CtlCommand::ValueType;
    for (const auto type : {Type::inferred, Type::boolean, Type::number, Type::string}) {
        const auto value = settingFromText(text, type);
        if (!value) {
            require(type == Type::boolean || type == Type::number,
                    "ctl value: refused text as a string");
            continue;
        }
        require(!value->is_number() || std::isfinite(value->get<double>()),
                "ctl value: a number that is not finite");
        // What set stores must survive the file: printed and read back, it is the same value.
        const SettingValue object = {{"key", *value}};
        const auto printed = object.dump(4, ' ', false, SettingValue::error_handler_t::replace);
        const auto reread = JSONFileSettingsStore::parseContents(printed);
        const bool same = reread && reread->contains("key") && reread->at("key") == *value;
        require(same || !fuzz::isValidUTF8(text), "ctl value: stored value reads back as another");
    }
    return 0;
}
