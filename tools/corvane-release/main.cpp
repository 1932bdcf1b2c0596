#include <iostream>
#include <string_view>
#include <vector>

#include "tools/corvane-release/ReleaseTool.h"

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    return corvane::ReleaseTool::run(arguments, std::cout, std::cerr);
}
