#pragma once

namespace corvane {

/// Runs one update check against the bundle's feed, as the agent's updater would, and prints
/// its outcome as one JSON line: {"version", "offer", "installed", "error"}. With `install`, an
/// update found is installed without asking and the agent is started again from the new bundle
/// with --update-check (which prints a second line, from the new version). Needs a
/// QCoreApplication; returns the exit status: 0, or 1 when the check failed.
int runUpdateCheck(bool install);

}  // namespace corvane
