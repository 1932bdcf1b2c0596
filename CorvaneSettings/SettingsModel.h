#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneShared/AutostartEntry.h"
#include "CorvaneShared/MeterAccent.h"
#include "CorvaneShared/MeterAppearance.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/Units.h"
#include "Foundation/ObserverList.h"

namespace corvane {

/// The shared store as the settings window sees it: reads answer the user's latest choice for a
/// key whose write failed, so that a store that cannot be written does not take the choice off
/// the screen; every successful write also retries the choices still waiting. Main thread only.
class PendingSettingsStore final : public SettingsStore {
public:
    /// Reads and writes `base`, which outlives this.
    explicit PendingSettingsStore(SettingsStore& base) : base(base) {}

    bool set(std::string_view key, const SettingValue& value) override;
    SettingValue storedValues() const override { return base.storedValues(); }

    /// Whether some choice could not be written yet.
    bool hasPending() const { return !pending.empty(); }
    /// Whether the choice under `key` could not be written yet.
    bool isPending(std::string_view key) const { return pending.contains(key); }

protected:
    SettingValue storedValue(std::string_view key) const override;

private:
    SettingsStore& base;
    std::map<std::string, SettingValue, std::less<>> pending;
};

/// What the settings window shows and writes, without the widgets: which key each control
/// writes with which type, the menu-bar order with hidden sections keeping their slots, the
/// master switch, the update keys and the login item. Every change is written at once and
/// followed by one `settings` signal; a change from outside (the file, `menuBarChanged`,
/// `updateAvailable`) is passed on to the observers. Main thread only.
class SettingsModel {
public:
    struct Sources {
        /// The shared store, factory defaults registered; outlives the model.
        SettingsStore& store;
        /// Posts a signal in the shared suite; dropped when there is no bus.
        std::function<void(SharedSettings::Signal)> post;
        /// The login item's state, and switching it (why not, in one line, when it fails).
        std::function<AutostartEntry::Status()> loginItemStatus;
        std::function<std::optional<std::string>(bool on)> setLoginItem;
        /// Starts the agent; false when it could not be started.
        std::function<bool()> startAgent;
    };

    /// One meter in the menu-bar order.
    struct SectionRow {
        MonitorSection section;
        bool shown;
        friend bool operator==(const SectionRow&, const SectionRow&) = default;
    };

    /// The refresh intervals offered, in seconds.
    static constexpr double refreshIntervals[] = {0.5, 1.0, 2.0, 5.0};

    explicit SettingsModel(Sources sources);

    SettingsModel(const SettingsModel&) = delete;
    SettingsModel& operator=(const SettingsModel&) = delete;

    /// The store with the choices not yet written laid over it: what the window shows.
    const SettingsStore& settings() const { return view; }

    /// All four meters in menu-bar order, hidden ones in their slots.
    std::vector<SectionRow> sections() const;
    /// Moves a shown meter to `index` of sections() and writes the order by the rules of
    /// MeterSettings::setMenuBarOrder, so hidden meters keep their slots. False (nothing
    /// written) for a hidden meter, an index past the end or a move that changes nothing.
    bool moveSection(MonitorSection section, std::size_t index);
    void setShown(MonitorSection section, bool shown);

    /// The readout in force, as its settings value ("usage", ...).
    std::string readout(MonitorSection section) const;
    /// Writes a readout value; false (nothing written) when it names none of the section's.
    bool setReadout(MonitorSection section, std::string_view raw);
    void setStyle(MeterStyle style);
    void setShape(MeterShape shape);
    void setLabelStyle(MeterLabelStyle style);
    MeterAccent accent(MeterAccentSlot slot) const;
    void setAccent(MeterAccentSlot slot, const MeterAccent& accent);

    /// "refreshInterval"; 1 s when it is missing, not positive or not a number.
    double refreshInterval() const;
    /// False (nothing written) for an interval that is not positive and finite.
    bool setRefreshInterval(double seconds);
    TemperatureChoice temperatureUnit() const;
    void setTemperatureUnit(TemperatureChoice choice);
    /// "popoverAppearance": "system", "light" or "dark"; anything else reads as "system".
    std::string panelAppearance() const;
    bool setPanelAppearance(std::string_view appearance);
    /// "popoverBackground": "translucent" or "opaque"; anything else reads as "translucent".
    std::string panelBackground() const;
    bool setPanelBackground(std::string_view background);
    /// "language": a language code or "system"; no text reads as "system".
    std::string language() const;
    void setLanguage(std::string_view code);

    bool agentEnabled() const;
    /// Writes the master switch; off also posts `quitAgent`, on starts the agent.
    void setAgentEnabled(bool enabled);

    AutostartEntry::Status loginItem() const;
    /// Why the login item could not be switched, or absent when it was.
    std::optional<std::string> setLoginItem(bool on);

    bool checksAutomatically() const;
    void setChecksAutomatically(bool on);
    /// "updaterCanCheck": whether the agent's updater can check now.
    bool updaterCanCheck() const;
    /// Posts `checkForUpdates`; false (nothing posted) while the updater cannot check.
    bool checkForUpdates();
    /// The offer the agent published under "updatesAvailable"; absent when there is none.
    std::optional<std::string> offeredUpdate() const;

    /// Whether a choice could not be written: the window says so while this holds.
    bool hasUnsavedChanges() const { return view.hasPending(); }

    /// Tells the observers that the store may have changed from outside (the file, or a
    /// signal of the agent); they re-read what they show.
    void reload() { observers.notify(); }
    /// Runs `onChange` after each write of the model and each reload.
    [[nodiscard]] Subscription observe(std::function<void()> onChange) {
        return observers.add(std::move(onChange));
    }

private:
    void write(std::string_view key, const SettingValue& value);
    void post(SharedSettings::Signal signal) const;

    Sources sources;
    PendingSettingsStore view;
    ObserverList<> observers;
};

}  // namespace corvane
