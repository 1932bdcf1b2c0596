#pragma once

#include <string>

#include "CorvaneShared/MonitorSection.h"
#include "Platform/MenuBarHost.h"

namespace corvane {

/// The menu-bar meters as the status bar controller needs them: how wide a section's item is,
/// what its meter would draw now (as a signature, to skip needless redraws), and the drawing
/// itself. The program draws them with the meter drawing code; tests count calls. Main thread
/// only.
class MeterViews {
public:
    virtual ~MeterViews() = default;
    /// The item length for `section` under the settings in force.
    virtual double itemWidth(MonitorSection section) const = 0;
    /// A text that changes whenever what the section's meter would draw changes.
    virtual std::string drawSignature(MonitorSection section) const = 0;
    /// The section's meter, drawn now at `devicePixelRatio` for a bar `height` points high.
    virtual ItemImage draw(MonitorSection section, double devicePixelRatio,
                           double height) const = 0;
    /// The section's readout as one line of text, for hosts that show a tooltip.
    virtual std::string readout(MonitorSection section) const = 0;
};

}  // namespace corvane
