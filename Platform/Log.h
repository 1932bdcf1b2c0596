#pragma once

#include <string_view>

namespace corvane {

/// How much a log line matters: `standard` for what happened, `error` for what failed.
enum class LogLevel { standard, error };

/// A destination for the agent's few log lines, already bound to a subsystem and a category.
/// Writing never fails in a way the caller sees. Main thread only.
class Log {
public:
    virtual ~Log() = default;
    virtual void write(LogLevel level, std::string_view message) = 0;
};

}  // namespace corvane
