// Desktop entries: the [Desktop Entry] group of a file, and the command line its Exec gives.

#include <string>

#include "CorvaneShared/DesktopEntry.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto text = fuzz::textOf(data, size);
    const auto entry = DesktopEntries::parse(text, "/usr/share/applications/fuzz.desktop");
    const auto arguments = DesktopEntries::commandLine(entry);
    const auto launch = DesktopEntries::launch(entry);
    require(launch.has_value() == !arguments.empty(), "desktop: a launch without a command line");
    if (launch) {
        require(launch->program == arguments.front() &&
                    launch->arguments.size() + 1 == arguments.size(),
                "desktop: the launch is not the command line");
    }
    // An Exec of plain words (no quotes, escapes or field codes) is those words.
    const auto& exec = entry.exec;
    if (exec.find_first_of("\"\\%'\t\n\r`$") == std::string::npos) {
        std::vector<std::string> words;
        std::size_t start = 0;
        while (start <= exec.size()) {
            const auto end = std::min(exec.find(' ', start), exec.size());
            if (end > start) {
                words.emplace_back(exec.substr(start, end - start));
            }
            start = end + 1;
        }
        require(arguments == words, "desktop: plain words are not the command line");
    }
    return 0;
}
