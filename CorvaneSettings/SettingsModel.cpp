#include "CorvaneSettings/SettingsModel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "CorvaneShared/MeterReadout.h"
#include "CorvaneShared/MeterSettings.h"

namespace corvane {

namespace {

constexpr double defaultRefreshInterval = 1.0;

template <typename Readout>
std::string rawText(Readout readout) {
    return std::string(rawValue(readout));
}

bool namesReadout(MonitorSection section, std::string_view raw) {
    switch (section) {
        case MonitorSection::cpu: return cpuReadoutFromRaw(raw).has_value();
        case MonitorSection::memory: return memoryReadoutFromRaw(raw).has_value();
        case MonitorSection::storage: return storageReadoutFromRaw(raw).has_value();
        case MonitorSection::sensors: return sensorsReadoutFromRaw(raw).has_value();
    }
    return false;
}

bool isOneOf(std::string_view value, std::initializer_list<std::string_view> choices) {
    return std::find(choices.begin(), choices.end(), value) != choices.end();
}

}  // namespace

bool PendingSettingsStore::set(std::string_view key, const SettingValue& value) {
    if (!base.set(key, value)) {
        pending.insert_or_assign(std::string(key), value);
        return false;
    }
    pending.erase(std::string(key));
    // The store takes writes again: the choices still waiting go in now.
    std::erase_if(pending,
                  [this](const auto& waiting) { return base.set(waiting.first, waiting.second); });
    return true;
}

SettingValue PendingSettingsStore::storedValue(std::string_view key) const {
    if (const auto waiting = pending.find(key); waiting != pending.end()) {
        return waiting->second;
    }
    return base.object(key);
}

SettingsModel::SettingsModel(Sources sources)
    : sources(std::move(sources)), view(this->sources.store) {}

void SettingsModel::post(SharedSettings::Signal signal) const {
    if (sources.post) {
        sources.post(signal);
    }
}

void SettingsModel::write(std::string_view key, const SettingValue& value) {
    // A failed write changes nothing others could read, so only a written one is announced.
    if (view.set(key, value)) {
        post(SharedSettings::Signal::settings);
    }
    observers.notify();
}

std::vector<SettingsModel::SectionRow> SettingsModel::sections() const {
    std::vector<SectionRow> rows;
    for (const MonitorSection section : MeterSettings::menuBarOrder(view)) {
        rows.push_back({section, MeterSettings::showsItem(view, section)});
    }
    return rows;
}

bool SettingsModel::moveSection(MonitorSection section, std::size_t index) {
    std::vector<MonitorSection> order = MeterSettings::menuBarOrder(view);
    const auto from = std::find(order.begin(), order.end(), section);
    if (index >= order.size() || from == order.end() || !MeterSettings::showsItem(view, section) ||
        static_cast<std::size_t>(from - order.begin()) == index) {
        return false;
    }
    order.erase(from);
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(index), section);
    std::erase_if(order, [this](MonitorSection s) { return !MeterSettings::showsItem(view, s); });
    const SettingValue before = view.object("menuBarOrder");
    MeterSettings::setMenuBarOrder(view, order);
    if (view.object("menuBarOrder") == before) {
        return false;
    }
    if (!view.isPending("menuBarOrder")) {
        post(SharedSettings::Signal::settings);
    }
    observers.notify();
    return true;
}

void SettingsModel::setShown(MonitorSection section, bool shown) {
    write(itemVisibilityKey(section), shown);
}

std::string SettingsModel::readout(MonitorSection section) const {
    switch (section) {
        case MonitorSection::cpu: return rawText(MeterSettings::shownCPUReadout(view));
        case MonitorSection::memory: return rawText(MeterSettings::shownMemoryReadout(view));
        case MonitorSection::storage: return rawText(MeterSettings::shownStorageReadout(view));
        case MonitorSection::sensors: return rawText(MeterSettings::shownSensorsReadout(view));
    }
    return {};
}

bool SettingsModel::setReadout(MonitorSection section, std::string_view raw) {
    if (!namesReadout(section, raw)) {
        return false;
    }
    write(MeterSettings::readoutKey(section), std::string(raw));
    return true;
}

void SettingsModel::setStyle(MeterStyle style) {
    write("meterStyle", std::string(rawValue(style)));
}

void SettingsModel::setShape(MeterShape shape) {
    write("meterShape", std::string(rawValue(shape)));
}

void SettingsModel::setLabelStyle(MeterLabelStyle style) {
    write("meterLabelStyle", std::string(rawValue(style)));
}

MeterAccent SettingsModel::accent(MeterAccentSlot slot) const {
    return MeterSettings::accent(view, slot);
}

void SettingsModel::setAccent(MeterAccentSlot slot, const MeterAccent& accent) {
    write(accentKey(slot), accent.rawValue());
}

double SettingsModel::refreshInterval() const {
    const double seconds = view.number("refreshInterval");
    return std::isfinite(seconds) && seconds > 0 ? seconds : defaultRefreshInterval;
}

bool SettingsModel::setRefreshInterval(double seconds) {
    if (!std::isfinite(seconds) || seconds <= 0) {
        return false;
    }
    write("refreshInterval", seconds);
    return true;
}

TemperatureChoice SettingsModel::temperatureUnit() const {
    return temperatureChoiceFromRaw(view.string("temperatureUnit").value_or(""))
        .value_or(TemperatureChoice::system);
}

void SettingsModel::setTemperatureUnit(TemperatureChoice choice) {
    write("temperatureUnit", std::string(rawValue(choice)));
}

std::string SettingsModel::panelAppearance() const {
    const std::string stored = view.string("popoverAppearance").value_or("");
    return isOneOf(stored, {"light", "dark"}) ? stored : "system";
}

bool SettingsModel::setPanelAppearance(std::string_view appearance) {
    if (!isOneOf(appearance, {"system", "light", "dark"})) {
        return false;
    }
    write("popoverAppearance", std::string(appearance));
    return true;
}

std::string SettingsModel::panelBackground() const {
    return view.string("popoverBackground") == "opaque" ? "opaque" : "translucent";
}

bool SettingsModel::setPanelBackground(std::string_view background) {
    if (!isOneOf(background, {"translucent", "opaque"})) {
        return false;
    }
    write("popoverBackground", std::string(background));
    return true;
}

std::string SettingsModel::language() const {
    const std::string stored = view.string("language").value_or("");
    return stored.empty() ? "system" : stored;
}

void SettingsModel::setLanguage(std::string_view code) {
    write("language", std::string(code));
}

bool SettingsModel::agentEnabled() const {
    return view.boolean("agentEnabled");
}

void SettingsModel::setAgentEnabled(bool enabled) {
    write("agentEnabled", enabled);
    if (!enabled) {
        post(SharedSettings::Signal::quitAgent);
    } else if (sources.startAgent) {
        // A second copy leaves at once by the single-instance rule, so starting one is harmless
        // when the agent is already up.
        sources.startAgent();
    }
}

AutostartEntry::Status SettingsModel::loginItem() const {
    return sources.loginItemStatus ? sources.loginItemStatus() : AutostartEntry::Status{};
}

std::optional<std::string> SettingsModel::setLoginItem(bool on) {
    if (!sources.setLoginItem) {
        return "login items are not available here";
    }
    auto problem = sources.setLoginItem(on);
    observers.notify();
    return problem;
}

bool SettingsModel::checksAutomatically() const {
    return view.boolean("updatesCheckAutomatically");
}

void SettingsModel::setChecksAutomatically(bool on) {
    write("updatesCheckAutomatically", on);
}

bool SettingsModel::updaterCanCheck() const {
    return view.boolean("updaterCanCheck");
}

bool SettingsModel::checkForUpdates() {
    if (!updaterCanCheck()) {
        return false;
    }
    post(SharedSettings::Signal::checkForUpdates);
    return true;
}

std::optional<std::string> SettingsModel::offeredUpdate() const {
    auto offer = view.string("updatesAvailable");
    return offer && !offer->empty() ? offer : std::nullopt;
}

}  // namespace corvane
