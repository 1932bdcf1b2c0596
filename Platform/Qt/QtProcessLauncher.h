#pragma once

#include "Platform/ProcessLauncher.h"

namespace corvane {

/// Starts the program with QProcess::startDetached, in its own session so that it outlives
/// this process and gets none of its signals; false when it could not be started. Main thread.
bool launchDetached(const DetachedLaunch& launch);

}  // namespace corvane
