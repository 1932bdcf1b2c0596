// /proc/self/mountinfo: the root mount and the kernel's octal escapes.

#include "Platform/Linux/Mountinfo.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto text = fuzz::textOf(data, size);

    if (const auto root = parseRootMount(text)) {
        require(root->source.size() <= text.size(), "mountinfo: source no longer than the text");
        require(parseRootMount(text) == root, "mountinfo: the same twice");
    }
    const auto decoded = decodeMountinfoEscapes(text);
    require(decoded.size() <= text.size(), "escapes: decoding never lengthens");
    require(text.find('\\') != std::string_view::npos || decoded == text,
            "escapes: text without a backslash is kept");
    return 0;
}
