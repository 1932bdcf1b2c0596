// A recorded controller table as the agent loads it, and the readings the controller reader
// decodes from it: every temperature, fan speed and power figure must be a plausible, finite
// number, whatever the table's bytes and types.

#include <cmath>
#include <memory>
#include <variant>

#include "CorvaneAgent/RecordedSMCTable.h"
#include "CorvaneAgent/SMCDecoder.h"
#include "CorvaneAgent/SMCReader.h"
#include "CorvaneAgent/SensorBounds.h"
#include "fuzz/FuzzSupport.h"

namespace corvane::fuzz {
namespace {

void checkReadings(SMCReader& reader) {
    for (const auto& reading : reader.temperatures(SamplingPlan::SMCScope::full)) {
        require(SensorBounds::isPlausibleCelsius(reading.celsius),
                "smc: a temperature outside 0...150 °C");
        require(reading.key.size() == 4, "smc: a key that is not four characters");
    }
    for (const auto& fan : reader.fans()) {
        require(SensorBounds::isPlausibleFanSpeed(fan.rpm), "smc: an implausible fan speed");
        for (const auto& limit : {fan.minimumRPM, fan.maximumRPM}) {
            require(!limit || SensorBounds::isPlausibleFanLimit(*limit),
                    "smc: an implausible fan limit");
        }
        const auto load = fan.load();
        require(!load || (std::isfinite(*load) && *load >= 0.0 && *load <= 1.0),
                "smc: a fan load outside 0...1");
    }
    for (const auto& power : reader.power()) {
        require(SensorBounds::isPlausibleWatts(power.watts), "smc: implausible power");
    }
}

// The decoders on raw bytes: the first four input bytes are the type, the rest the value.
void checkDecoders(std::string_view text) {
    if (text.size() < 4) {
        return;
    }
    const auto type = SMCDecoder::keyCode(text.substr(0, 4));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data() + 4);
    const std::span<const std::uint8_t> value(bytes, text.size() - 4);
    if (const auto celsius = SMCDecoder::temperature(type, value)) {
        require(SensorBounds::isPlausibleCelsius(*celsius), "decoder: implausible temperature");
    }
    if (const auto number = SMCDecoder::number(type, value);
        number && type == SMCDecoder::fpe2Type) {
        require(*number >= 0.0 && *number < 16384.0, "decoder: fpe2 outside its range");
    }
    const auto key = SMCDecoder::keyString(type);
    require(key.size() == 4, "decoder: a key string that is not four characters");
    (void)SMCDecoder::category(key);
}

}  // namespace
}  // namespace corvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    const auto text = fuzz::textOf(data, size);
    fuzz::checkDecoders(text);
    auto parsed = parseRecordedSMCTable(text);
    if (auto* error = std::get_if<RecordedSMCTableError>(&parsed)) {
        fuzz::require(!error->message.empty() && error->message.find('\n') == std::string::npos,
                      "smc table: the error is not one line");
        return 0;
    }
    auto table = std::make_unique<RecordedSMCTable>(std::move(std::get<RecordedSMCTable>(parsed)));
    if (auto reader = SMCReader::create(std::move(table))) {
        fuzz::checkReadings(*reader);
    }
    return 0;
}
