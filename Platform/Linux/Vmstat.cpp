#include "Platform/Linux/Vmstat.h"

#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

// Despite the "pg" the kernel does not count pages here: submit_bio() (block/blk-core.c) adds
// bio_sectors(), 512-byte sectors, to PGPGIN/PGPGOUT, and vmstat_start() (mm/vmstat.c) halves
// both before printing ("sectors -> kbytes"). So the values are KiB on every page size.
constexpr std::string_view pagedInName = "pgpgin";
constexpr std::string_view pagedOutName = "pgpgout";

std::optional<std::uint64_t> bytesFromValue(std::string_view value) {
    const auto number = text::takeField(value);
    if (!text::takeField(value).empty()) {
        return std::nullopt;
    }
    return text::bytesFromKibibytes(number);
}

}  // namespace

Vmstat parseVmstat(std::string_view text) {
    Vmstat vmstat;
    while (!text.empty() && !(vmstat.pagedInBytes && vmstat.pagedOutBytes)) {
        auto line = text::takeLine(text);
        const auto name = text::takeField(line);
        if (name == pagedInName) {
            vmstat.pagedInBytes = bytesFromValue(line);
        } else if (name == pagedOutName) {
            vmstat.pagedOutBytes = bytesFromValue(line);
        }
    }
    return vmstat;
}

}  // namespace corvane
