#!/usr/bin/env bash
# Where the agent's resident memory goes: runs `corvane-agent ARGS...` (default: --stream
# --interval 1) for SECONDS (default 10), then adds up the resident size of each mapping in
# /proc/PID/smaps by what it belongs to (Qt's GUI side, Qt core, ICU, D-Bus, the C and C++
# runtimes, the agent's own code, heap and other anonymous memory) and prints the groups, largest
# first, with the peak resident size (VmHWM) and the floor program's for comparison.
#
# Usage: bench/agent-memory.sh [SECONDS] [AGENT ARGUMENTS...]   (after make)
# The menu-bar agent: bench/agent-memory.sh 20 --menu-bar auto (under a display). The front
# program replaces itself by the desktop program for it, in the same process, so the figures
# are the desktop program's.
set -euo pipefail

seconds=${1:-10}
shift || true
arguments=("$@")
[[ ${#arguments[@]} -gt 0 ]] || arguments=(--stream --interval 1)
build=${CORVANE_BUILD:-build}
agent=${CORVANE_AGENT:-$build/corvane-agent}
floor=${CORVANE_STREAM_FLOOR:-$build/bench/corvane-stream-floor}
work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=agent-memory-bench CORVANE_LOG=stderr

"$agent" "${arguments[@]}" >/dev/null 2>"$work/agent.log" &
agent_pid=$!
"$floor" 1 &
floor_pid=$!
pids=("$agent_pid" "$floor_pid")
sleep "$seconds"

awk '
    /^[0-9a-f]+-[0-9a-f]+ / { name = (NF >= 6) ? $6 : "[anonymous]" }
    /^Rss:/ {
        group = "other libraries"
        if (name ~ /libQt6(Widgets|Gui|Svg|OpenGL|XcbQpa|WaylandClient)|libGL|libEGL|libOpenGL|libX|libxcb|libxkb|libfreetype|libharfbuzz|libfontconfig|libpng|libjpeg|libgraphite|libbrotli|libwayland|libmd4c|libgomp|libdouble-conversion/) group = "Qt GUI side (widgets, gui, fonts, X11, GL)"
        else if (name ~ /libQt6Network|libarchive|libsodium|libxml2|libkrb5|libgssapi|libk5crypto|libnettle|libproxy|libresolv|libkeyutils|libcom_err|libbz2|libb2|libexpat|libacl|libz\.so/) group = "updater (network, archives, signatures)"
        else if (name ~ /libQt6Core/) group = "Qt core"
        else if (name ~ /libQt6DBus|libdbus/) group = "D-Bus"
        else if (name ~ /libicu/) group = "ICU"
        else if (name ~ /libglib|libpcre|libgthread/) group = "GLib (Qt event dispatcher)"
        else if (name ~ /libc\.so|libm\.so|libstdc\+\+|libgcc_s|ld-linux/) group = "C and C++ runtimes"
        else if (name ~ /libsystemd|liblz4|liblzma|libzstd|libcap|libgcrypt|libgpg-error/) group = "systemd journal"
        else if (name ~ /corvane/) group = "Corvane code"
        else if (name ~ /\[heap\]|\[anonymous\]|\[stack/) group = "heap, stacks, anonymous mappings"
        else if (name ~ /^\/usr\/lib\/locale/) group = "locale data"
        rss[group] += $2
    }
    END { for (group in rss) printf "%8.1f MB  %s\n", rss[group] / 1024, group }
' "/proc/$agent_pid/smaps" | sort -rn
awk '/^VmHWM/ { printf "peak resident (VmHWM): %.1f MB\n", $2 / 1024 }' "/proc/$agent_pid/status"
awk '/^VmHWM/ { printf "floor program (corvane-stream-floor): %.1f MB\n", $2 / 1024 }' "/proc/$floor_pid/status"
