#include "Platform/Linux/ZramMmStat.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::uint64_t> parseZramMemUsedTotal(std::string_view text) {
    // orig_data_size compr_data_size mem_used_total mem_limit mem_used_max same_pages ...
    // (Documentation/admin-guide/blockdev/zram.rst); all in bytes except the page counts.
    auto line = text::takeLine(text);
    (void)text::takeField(line);
    (void)text::takeField(line);
    return parseNumber<std::uint64_t>(text::takeField(line));
}

}  // namespace corvane
