#!/usr/bin/env bash
# Shows a panel window under Xvfb and openbox and checks what the window manager made of it:
# the EWMH states, no frame, the place below its item, above an activated ordinary window, and
# that Escape closes it. Set SCREENSHOT=file.png to keep a picture of the screen.
# Usage: panel-window-x11.sh path/to/corvane-panel-window-demo
set -euo pipefail

demo=$1
work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

exec {displayfd}<> <(:)
Xvfb -displayfd "$displayfd" -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
read -r -t 10 number <&"$displayfd" || fail "Xvfb did not start"
export DISPLAY=":$number" QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY

openbox >"$work/openbox.log" 2>&1 &
pids+=($!)
source "$(dirname "$0")/../../support/wait-for-window-manager.sh"
wait_for_window_manager || fail "openbox does not manage windows"

# An item 30 points wide, 10 points from the right edge: the panel must move left to stay on.
"$demo" 1240,0,30,24 >"$work/demo.log" 2>&1 &
demo_pid=$!
pids+=("$demo_pid")
panel=$(timeout 20 xdotool search --sync --name '^Sensors$' | head -n1) || fail "no panel window"
other=$(xdotool search --name '^Other window$' | head -n1)
# The manager takes the window over in its own time, slower on a loaded machine: wait until it
# has said how it framed the window.
for _ in $(seq 300); do
    xprop -id "$panel" _NET_FRAME_EXTENTS | grep -q '= 0, 0, 0, 0$' && break
    sleep 0.05
done

# A manager without _NET_WM_STATE_STICKY (openbox) keeps the window on every desktop through
# _NET_WM_DESKTOP alone, and drops the state it does not know.
wanted=(ABOVE SKIP_TASKBAR SKIP_PAGER)
xprop -root _NET_SUPPORTED | grep -q _NET_WM_STATE_STICKY && wanted+=(STICKY)
states=$(xprop -id "$panel" _NET_WM_STATE)
for state in "${wanted[@]}"; do
    grep -q "_NET_WM_STATE_$state\b" <<<"$states" || fail "state $state missing: $states"
done
xprop -id "$panel" _NET_WM_DESKTOP | grep -q '= 4294967295$' || fail "not on every desktop"
xprop -id "$panel" _NET_FRAME_EXTENTS | grep -q '= 0, 0, 0, 0$' || fail "the manager framed it"

geometry=$(xdotool getwindowgeometry "$panel")
grep -q 'Position: 980,24 ' <<<"$geometry" || fail "misplaced: $geometry"
grep -q 'Geometry: 300x420$' <<<"$geometry" || fail "wrong size: $geometry"

# xdotool complains about windows it cannot find a desktop for; the checks below decide.
xdotool windowactivate --sync "$other" 2>/dev/null
sleep 0.3
stacking=$(xprop -root _NET_CLIENT_LIST_STACKING | sed 's/.*# //; s/, /\n/g' | xargs -I{} printf '%d\n' {})
[[ $(grep -n -x "$panel" <<<"$stacking" | cut -d: -f1) -gt $(grep -n -x "$other" <<<"$stacking" | cut -d: -f1) ]] ||
    fail "an activated window went over the panel"

if [[ -n ${SCREENSHOT:-} ]]; then
    import -window root "$SCREENSHOT"
fi

xdotool windowactivate --sync "$panel" key Escape 2>/dev/null
for _ in $(seq 150); do
    kill -0 "$demo_pid" 2>/dev/null || break
    sleep 0.1
done
kill -0 "$demo_pid" 2>/dev/null && fail "Escape did not close the panel"
echo "panel window: states, frame, placement, stacking and Escape as expected"
