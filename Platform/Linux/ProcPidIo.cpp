#include "Platform/Linux/ProcPidIo.h"

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

std::optional<ProcPidIo> parseProcPidIo(std::string_view text) {
    // rchar and wchar would count every read(2) and write(2), page-cache hits and sockets
    // included; read_bytes and write_bytes count what reached the block layer, which is what a
    // disk figure means. cancelled_write_bytes is not subtracted: that would make the counter
    // able to shrink, and a shrinking counter reads as a reset.
    std::optional<std::uint64_t> readBytes;
    std::optional<std::uint64_t> writeBytes;
    while (!text.empty()) {
        auto line = text::takeLine(text);
        const auto key = text::takeField(line);
        if (key == "read_bytes:") {
            readBytes = parseNumber<std::uint64_t>(text::takeField(line));
        } else if (key == "write_bytes:") {
            writeBytes = parseNumber<std::uint64_t>(text::takeField(line));
        }
    }
    if (!readBytes || !writeBytes) {
        return std::nullopt;
    }
    return ProcPidIo{.readBytes = *readBytes, .writeBytes = *writeBytes};
}

}  // namespace corvane
