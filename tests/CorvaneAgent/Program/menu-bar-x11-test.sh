#!/usr/bin/env bash
# The menu-bar agent on an X11 desktop without a tray, driven as a user would with the pointer:
# Corvane's own strip at the top, a click on an item opens its panel window, a click on the same
# item closes it, a click on another item switches panels, a click elsewhere closes the panel,
# and a Ctrl-drag reorders the items and stores the new "menuBarOrder".
#
# Usage: menu-bar-x11-test.sh CORVANE-AGENT CORVANECTL
# Set SCREENSHOT=file.png to keep a picture of the screen with a panel open.
#
# Any corvane-agent of the same user counts for the single-instance rule, so the test runs in a
# process namespace of its own where it can, on a private session bus and X server.
set -uo pipefail

agent=$1
ctl=$2
skip=77

if [[ -z ${CORVANE_MENU_BAR_STAGE:-} ]]; then
    for isolate in "unshare --pid --fork --mount-proc" \
        "unshare --user --map-root-user --pid --fork --mount-proc"; do
        if $isolate true 2>/dev/null; then
            CORVANE_MENU_BAR_STAGE=isolated exec $isolate bash "$0" "$@"
        fi
    done
    echo "SKIP: no process namespace; another agent of this user would decide the outcome"
    exit $skip
fi
if [[ $CORVANE_MENU_BAR_STAGE != on-bus ]]; then
    CORVANE_MENU_BAR_STAGE=on-bus exec dbus-run-session -- bash "$0" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/corvane-menu-bar-XXXXXX") || exit 1
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "FAIL: $*"
    echo "--- agent log"
    cat "$work/agent.log"
    exit 1
}

export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=menu-bar-test CORVANE_LANGUAGE=en
export CORVANE_LOG=stderr
mkdir -p "$XDG_CONFIG_HOME"

exec {displayfd}<> <(:)
Xvfb -displayfd "$displayfd" -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
read -r -t 10 number <&"$displayfd" || fail "Xvfb did not start"
export DISPLAY=":$number"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
openbox >"$work/openbox.log" 2>&1 &
pids+=($!)
for _ in $(seq 50); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
    sleep 0.1
done

# The item widths the agent will use, from the pictures it renders with the same settings.
QT_QPA_PLATFORM=offscreen "$agent" --render "$work/render" >/dev/null 2>&1 ||
    fail "--render failed"
item_width() {
    grep -A1 "\"$1\": {" "$work/render/layout.json" | sed -n 's/.*"itemWidth": \([0-9.]*\).*/\1/p'
}
declare -A keyOfTitle=([CPU]=cpu [Memory]=memory [SSD]=storage [Sensors]=sensors)

"$agent" --menu-bar strip >"$work/agent.log" 2>&1 &
agent_pid=$!
pids+=("$agent_pid")
timeout 10 xdotool search --sync --name '^Corvane$' >/dev/null || fail "no strip window"
sleep 1

# The title of the one panel window shown, or nothing.
shown_panel() {
    local id
    for id in $(xdotool search --onlyvisible --name '^(CPU|Memory|SSD|Sensors)$' 2>/dev/null); do
        xdotool getwindowname "$id"
    done
}
# Clicks at $1,$2 and waits up to three seconds for the shown panel to be $3 ("" for none).
click_expecting() {
    xdotool mousemove "$1" "$2" click 1
    local shown=""
    for _ in $(seq 30); do
        shown=$(shown_panel)
        [[ $shown == "$3" ]] && return 0
        sleep 0.1
    done
    fail "after a click at $1,$2: shown '${shown//$'\n'/, }', expected '$3'"
}

# The rightmost item ends 8 pixels from the screen's right edge; 10 pixels in from its end is
# inside it whatever its width.
rightmost_x=$((1280 - 8 - 10))
xdotool mousemove "$rightmost_x" 12 click 1
for _ in $(seq 30); do
    first=$(shown_panel)
    [[ -n $first ]] && break
    sleep 0.1
done
[[ -n $first ]] || fail "a click on the rightmost item opened no panel"
[[ -n ${SCREENSHOT:-} ]] && import -window root "$SCREENSHOT"
click_expecting "$rightmost_x" 12 ""
click_expecting "$rightmost_x" 12 "$first"

# The next item to the left: 4 pixels between items.
first_width=$(item_width "${keyOfTitle[$first]}")
second_x=$(awk -v w="$first_width" 'BEGIN { printf "%d", 1280 - 8 - w - 4 - 10 }')
xdotool mousemove "$second_x" 12 click 1
for _ in $(seq 30); do
    second=$(shown_panel)
    [[ -n $second && $second != "$first" ]] && break
    sleep 0.1
done
[[ -n $second && $second != "$first" && $second != *$'\n'* ]] ||
    fail "a click on the second item showed '${second//$'\n'/, }' instead of switching panels"
click_expecting 400 500 ""

# Ctrl-drag the rightmost item to the far left: the stored order changes to the one on screen.
before=$("$ctl" get menuBarOrder)
xdotool mousemove "$rightmost_x" 12 keydown ctrl mousedown 1
for step in $(seq 1 20); do
    xdotool mousemove $((rightmost_x - 20 * step)) 12
    sleep 0.02
done
xdotool mouseup 1 keyup ctrl
for _ in $(seq 30); do
    after=$("$ctl" get menuBarOrder)
    [[ $after != "$before" ]] && break
    sleep 0.1
done
[[ ${after%%,*} == "${keyOfTitle[$first]}" ]] ||
    fail "after dragging ${keyOfTitle[$first]} to the left, menuBarOrder is '$after' (was '$before')"
[[ -z $(shown_panel) ]] || fail "a Ctrl-drag opened a panel"

kill -0 "$agent_pid" 2>/dev/null || fail "the agent ended"
echo "strip: '$first' and '$second' opened, closed and switched; order '$before' -> '$after'"
