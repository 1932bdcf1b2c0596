#include "Platform/Qt/DBusSignalMember.h"

#include <cstdint>

namespace corvane {

namespace {

constexpr std::string_view memberPrefix = "s_";
constexpr std::size_t hashDigits = 16;
constexpr char hexDigits[] = "0123456789abcdef";

bool isASCIIAlphanumeric(unsigned char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           (byte >= '0' && byte <= '9');
}

// Stable across processes, builds and compilers, unlike std::hash: two programs built apart
// must still agree on the member of a long suite name.
std::uint64_t fnv1a(std::string_view bytes) {
    std::uint64_t hash = 0xcbf29ce484222325ull;
    for (unsigned char byte : bytes) {
        hash ^= byte;
        hash *= 0x100000001b3ull;
    }
    return hash;
}

}  // namespace

std::string signalMemberName(std::string_view name) {
    std::string member(memberPrefix);
    member.reserve(memberPrefix.size() + name.size() * 3);
    for (unsigned char byte : name) {
        if (isASCIIAlphanumeric(byte)) {
            member += static_cast<char>(byte);
        } else {
            member += '_';
            member += hexDigits[byte >> 4];
            member += hexDigits[byte & 0xf];
        }
    }
    if (member.size() <= maximumMemberNameLength) {
        return member;
    }
    member.resize(maximumMemberNameLength - hashDigits - 1);
    member += '_';
    const std::uint64_t hash = fnv1a(name);
    for (int shift = 60; shift >= 0; shift -= 4) {
        member += hexDigits[(hash >> shift) & 0xf];
    }
    return member;
}

}  // namespace corvane
