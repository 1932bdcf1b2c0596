#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvane {

/// Translates an English text key into the interface language in force (the app-language
/// strings); gives the key itself when there is no translation. Called on the main thread.
using TextLookup = std::function<std::string(std::string_view englishText)>;

}  // namespace corvane
