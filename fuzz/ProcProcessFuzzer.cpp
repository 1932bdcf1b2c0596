// The per-process /proc files the process list reads: [pid]/stat, statm and io, and the name a
// process is shown under.

#include "Platform/Linux/ProcPidIo.h"
#include "Platform/Linux/ProcPidStat.h"
#include "Platform/Linux/ProcPidStatm.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto text = fuzz::textOf(data, size);

    if (const auto stat = parseProcPidStat(text)) {
        require(fuzz::isViewInto(stat->comm, text), "pid stat: comm is a view into the line");
        require(
            text.find('(') != std::string_view::npos && text.rfind(')') != std::string_view::npos,
            "pid stat: parsed without both parentheses");
        require(parseProcPidStat(text) == stat, "pid stat: the same twice");
        const auto name = processName(stat->comm, 42);
        require(!name.empty() && fuzz::isValidUTF8(name), "pid stat: shown name is UTF-8");
    }
    // The shown name of any bytes at all, as a process may rename itself to anything.
    const auto name = processName(text, 7);
    require(!name.empty() && fuzz::isValidUTF8(name), "process name: UTF-8, never empty");
    require(!fuzz::isValidUTF8(text) || text.empty() || name == text,
            "process name: valid UTF-8 is kept as it is");

    (void)parseProcPidStatmResidentPages(text);
    if (const auto io = parseProcPidIo(text)) {
        require(text.find("read_bytes") != std::string_view::npos &&
                    text.find("write_bytes") != std::string_view::npos,
                "pid io: parsed without both counters");
    }
    return 0;
}
