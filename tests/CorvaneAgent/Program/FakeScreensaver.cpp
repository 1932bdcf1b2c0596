// A screensaver service for end-to-end tests: owns org.freedesktop.ScreenSaver on the session
// bus, prints "ready" once it does, then for each line read from standard input ("1" or "0")
// emits ActiveChanged(true or false) and prints "sent". Ends at the end of its input.

#include <systemd/sd-bus.h>

#include <cstdio>
#include <iostream>
#include <string>

int main() {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) < 0 ||
        sd_bus_request_name(bus, "org.freedesktop.ScreenSaver", 0) < 0) {
        std::cerr << "fake-screensaver: cannot own org.freedesktop.ScreenSaver\n";
        return 1;
    }
    std::cout << "ready" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
        const int active = line == "1" ? 1 : 0;
        if (sd_bus_emit_signal(bus, "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver",
                               "ActiveChanged", "b", active) < 0 ||
            sd_bus_flush(bus) < 0) {
            std::cerr << "fake-screensaver: cannot emit ActiveChanged\n";
            return 1;
        }
        std::cout << "sent" << std::endl;
    }
    sd_bus_flush_close_unref(bus);
    return 0;
}
