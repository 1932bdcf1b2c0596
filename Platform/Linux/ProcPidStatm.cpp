#include "Platform/Linux/ProcPidStatm.h"

#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<std::uint64_t> parseProcPidStatmResidentPages(std::string_view text) {
    auto line = text::takeLine(text);
    if (!text::parseUnsigned(text::takeField(line))) {
        return std::nullopt;
    }
    return text::parseUnsigned(text::takeField(line));
}

}  // namespace corvane
