#pragma once

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "Foundation/FileReplacement.h"

namespace corvane {

/// Writes JSON lines to a descriptor (standard output by default) through nlohmann/json's own
/// serializer into one buffer kept from line to line, and hands each line to the kernel with
/// write(2): no string per line, and no second copy into stdio's buffer. Each line goes out whole
/// as soon as it is made, so a reader on a pipe sees each refresh as it happens. One thread.
class JSONLineWriter {
public:
    explicit JSONLineWriter(int descriptor = STDOUT_FILENO)
        : descriptor(descriptor),
          serializer(nlohmann::detail::output_adapter<char>(buffer), ' ', replace) {}

    /// One line, indented by `indent` spaces per level (one line without breaks when negative);
    /// what the descriptor does not take (a closed pipe) is dropped.
    void write(const nlohmann::ordered_json& json, int indent) {
        buffer.clear();
        serializer.dump(json, indent >= 0, false, static_cast<unsigned int>(std::max(indent, 0)));
        buffer.push_back('\n');
        writeAll(descriptor, buffer);
    }

private:
    // Names come from the system (volume labels, process names) and need not be valid UTF-8; a
    // replacement character beats losing the whole reading.
    static constexpr auto replace = nlohmann::ordered_json::error_handler_t::replace;

    int descriptor;
    std::string buffer;
    nlohmann::detail::serializer<nlohmann::ordered_json> serializer;
};

}  // namespace corvane
