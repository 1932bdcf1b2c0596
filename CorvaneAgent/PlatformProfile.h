#pragma once

#include <string>

namespace corvane {

/// Texts that name a platform-specific thing, so each platform can say it in its own terms.
struct PlatformProfile {
    /// The processor's name when the system does not say.
    std::string fallbackChipName;
    /// The start-up volume's name before it is read, or when the system gives none.
    std::string defaultVolumeName;
    /// The sensors panel's line when no temperature could be read: names where Corvane looked.
    std::string noTemperatureSensors;

    /// The texts of a Linux desktop: GTK's name for the root file system, a plain word for a
    /// processor the kernel does not name, and the kernel's sensor interfaces.
    static PlatformProfile linuxDesktop() {
        return {"Processor", "File System", "No readable hwmon, thermal zone or applesmc sensors"};
    }
};

}  // namespace corvane
