#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane {

/// The object path every Corvane signal is sent from.
inline constexpr const char* signalObjectPath = "/io/corvane/Signals";
/// The D-Bus interface of every Corvane signal.
inline constexpr const char* signalInterface = "io.corvane.Signals";
/// The longest member name D-Bus allows.
inline constexpr std::size_t maximumMemberNameLength = 255;

/// The D-Bus member that carries the signal `name`: "s_" followed by `name` with every byte
/// outside A-Z, a-z and 0-9 written as "_xx" (two lower-case hex digits), so distinct names
/// give distinct members and any bytes give a valid one. When that would exceed 255 characters
/// it is cut to 238 and ends in "_" and the 16 hex digits of the name's 64-bit FNV-1a hash.
std::string signalMemberName(std::string_view name);

}  // namespace corvane
