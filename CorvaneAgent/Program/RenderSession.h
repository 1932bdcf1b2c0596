#pragma once

namespace corvane {

class AppLanguage;
struct AgentOptions;

/// `--render DIR`: samples as a snapshot does, then draws every shown meter, in menu-bar
/// order, at two device pixels per point into DIR (created when missing):
/// meter-<section>.png on a dark menu bar, meter-<section>-light.png on a light one, and
/// layout.json with each meter's item width, label width, side gap, draw signature and image
/// size. It also draws the four detail panels, each fitted to the height budget (so
/// CORVANE_PANEL_BUDGET steers the fit): panel-<section>.png dark and panel-<section>-light.png,
/// with each panel's step, scroll height (or null), natural height and budget in layout.json.
/// A directory that cannot be made or written is a one-line error and status 2, before
/// any sampling. Creates the process's QGuiApplication from `argc` and `argv`, on the
/// offscreen platform unless QT_QPA_PLATFORM names another; returns the exit status.
int runRender(int& argc, char** argv, const AgentOptions& options, const AppLanguage& language);

}  // namespace corvane
