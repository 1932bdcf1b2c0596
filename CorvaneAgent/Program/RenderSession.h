#pragma once

namespace corvane {

class AppLanguage;
struct AgentOptions;

/// `--render DIR`: samples as a snapshot does, then draws every shown meter, in menu-bar
/// order, at two device pixels per point into DIR (created when missing):
/// meter-<section>.png on a dark menu bar, meter-<section>-light.png on a light one, and
/// layout.json with each meter's item width, label width, side gap, draw signature and image
/// size. A directory that cannot be made or written is a one-line error and status 2, before
/// any sampling. Creates the process's QGuiApplication from `argc` and `argv`, on the
/// offscreen platform unless QT_QPA_PLATFORM names another; returns the exit status.
int runRender(int& argc, char** argv, const AgentOptions& options, const AppLanguage& language);

}  // namespace corvane
