#!/usr/bin/env bash
# The processor time one refresh costs the running agent, as its users pay it: the headless
# stream, the menu bar with its four meters, and the menu bar with a panel open, each for
# SECONDS (default 60) at the factory interval of one second, on a virtual X server with openbox.
# Reads the agent's user and system time from /proc/PID/stat, so it measures everything the
# process does (sampling, drawing, D-Bus, X11), not one function; and its peak resident memory
# (VmHWM) at the end of each measurement.
#
# Usage: bench/agent-cpu.sh [SECONDS]   (after make; needs Xvfb, openbox and xdotool)
set -euo pipefail

seconds=${1:-60}
agent=${CORVANE_AGENT:-build/corvane-agent}
work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT

# Isolated settings and a suite of its own, so a running agent of this user is not disturbed
# (nor makes this one yield).
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=agent-cpu-bench CORVANE_LOG=stderr

exec {displayfd}<> <(:)
Xvfb -displayfd "$displayfd" -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
read -r -t 10 number <&"$displayfd"
export DISPLAY=":$number"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
openbox >/dev/null 2>&1 &
pids+=($!)
ticks=$(getconf CLK_TCK)

# Processor milliseconds of process $1 so far.
cpu_ms() {
    awk -v t="$ticks" '{ sub(/^.*\) /, ""); print ($12 + $13) * 1000 / t }' "/proc/$1/stat"
}
# Runs the agent with arguments $2..., waits 5 s to settle, does $1 (when not empty), then
# reports the time per refresh over the next $seconds.
measure() {
    local label=$1 action=$2
    shift 2
    "$agent" "$@" >/dev/null 2>"$work/agent.log" &
    local pid=$!
    sleep 5
    [[ -n $action ]] && $action
    sleep 1
    local before after
    before=$(cpu_ms "$pid")
    sleep "$seconds"
    after=$(cpu_ms "$pid")
    local peak
    peak=$(awk '/^VmHWM/ { print $2 }' "/proc/$pid/status")
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    awk -v b="$before" -v a="$after" -v s="$seconds" -v l="$label" -v p="$peak" \
        'BEGIN { printf "%-34s %7.2f ms of processor time per refresh (%.2f%% of one core), peak resident %.1f MB\n", l, (a - b) / s, (a - b) / s / 10, p / 1024 }'
}
open_rightmost_panel() {
    xdotool mousemove $((1280 - 18)) 12 click 1
}

measure "headless stream" "" --stream --menu-bar strip
measure "menu bar, four meters" "" --menu-bar strip
measure "menu bar, four meters, CPU panel" open_rightmost_panel --menu-bar strip
