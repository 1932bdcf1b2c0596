#include "Platform/Linux/ProcPidStatm.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::uint64_t> parseProcPidStatmResidentPages(std::string_view text) {
    auto line = text::takeLine(text);
    if (!parseNumber<std::uint64_t>(text::takeField(line))) {
        return std::nullopt;
    }
    return parseNumber<std::uint64_t>(text::takeField(line));
}

}  // namespace corvane
