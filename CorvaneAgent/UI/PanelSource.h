#pragma once

#include <QIcon>
#include <QLocale>
#include <QString>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/MonitorFields.h"
#include "CorvaneAgent/PanelMetrics.h"
#include "CorvaneAgent/PlatformProfile.h"
#include "CorvaneAgent/ProcessMetric.h"
#include "CorvaneShared/CoreTopology.h"
#include "CorvaneShared/Units.h"
#include "Foundation/Subscription.h"

namespace corvane {

class SystemMonitor;

/// What a detail panel reads of the model: its published fields, their change notifications and
/// the few values derived outside the fields. Main thread only.
class PanelSource {
public:
    virtual ~PanelSource() = default;

    virtual const MonitorFields& fields() const = 0;
    /// Calls `onChange` after every step that changed `field`, until the subscription ends.
    virtual Subscription observe(MonitorField field, std::function<void()> onChange) = 0;
    /// The thermal state in words, in the interface language.
    virtual std::string thermalStateLabel() const = 0;
    /// The processor's performance levels, fastest first.
    virtual std::vector<CoreTier> coreTiers() const = 0;
    /// Per entry of `coreUsages`: whether that CPU is one of the fastest.
    virtual std::vector<bool> performanceCores() const = 0;
    virtual int totalCores() const = 0;
};

/// The panel source of the agent's model; the panel keeps the model alive while it is open.
std::unique_ptr<PanelSource> monitorPanelSource(std::shared_ptr<SystemMonitor> monitor);

/// Gives a process's icon; a null icon, or no lookup at all, shows the "terminal" symbol.
using ProcessIconLookup = std::function<QIcon(const ProcessMetric& process)>;

/// What a panel is built with besides the model.
struct PanelContext {
    /// The settings, language and locale numbers and units are shown in.
    UnitSources units;
    PanelMetrics metrics;
    PlatformProfile profile = PlatformProfile::linuxDesktop();
    /// Absent: every process shows the "terminal" symbol.
    ProcessIconLookup processIcon = nullptr;

    /// `key` in the interface language.
    QString text(std::string_view key) const {
        return QString::fromStdString(units.translate(key));
    }
    /// The panel's locale: the interface language with the user's region.
    QLocale locale() const;
};

/// The base of the four panels: subscriptions that re-read what changed. Main thread only.
class DetailPanelBase {
protected:
    explicit DetailPanelBase(std::unique_ptr<PanelSource> source) : source(std::move(source)) {}

    /// Runs `update` now and after every step that changed one of `fields`.
    void follow(std::initializer_list<MonitorField> fields, const std::function<void()>& update);
    const MonitorFields& model() const { return source->fields(); }

    std::unique_ptr<PanelSource> source;

private:
    std::vector<Subscription> subscriptions;
};

}  // namespace corvane

class QVBoxLayout;
class QWidget;

namespace corvane {

class DenseSection;
class PopoverDivider;

/// A section of a panel with the divider above it (none above the first).
struct PanelBlock {
    PopoverDivider* divider = nullptr;
    DenseSection* section = nullptr;

    /// Shows or hides the section together with its divider.
    void setShown(bool shown) const;
};

/// Appends a section titled `title` to `column` of `panel`, with a divider when it is not the
/// first.
PanelBlock addBlock(QWidget* panel, QVBoxLayout* column, std::optional<QString> title,
                    const PanelMetrics& metrics);
/// A panel's column of sections: no margins, no spacing.
QVBoxLayout* panelColumn(QWidget* panel);

}  // namespace corvane
