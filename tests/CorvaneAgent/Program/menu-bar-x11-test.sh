#!/usr/bin/env bash
# The menu-bar agent on an X11 desktop without a tray, driven as a user would with the pointer:
# Corvane's own strip at the top, a click on an item opens its panel window, a click on the same
# item closes it, a click on another item switches panels, a click elsewhere closes the panel,
# a readout turned off narrows its item at once (no signal needed), a Ctrl-drag reorders the
# items and stores the new "menuBarOrder", and a new interface language relaunches the agent
# with panels in that language, whose "Quit" ends it.
#
# Usage: menu-bar-x11-test.sh CORVANE-AGENT CORVANECTL
# Set SCREENSHOT=file.png to keep a picture of the screen with a panel open.
set -uo pipefail

agent=$1
ctl=$2

source "$(dirname "$0")/desktop-test-session.sh" "$0" "$@"
render_layout "$agent"
declare -A keyOfTitle=([CPU]=cpu [Memory]=memory [SSD]=storage [Sensors]=sensors)

"$agent" --menu-bar strip >"$work/agent.log" 2>&1 &
agent_pid=$!
pids+=("$agent_pid")
timeout 10 xdotool search --sync --name '^Corvane$' >/dev/null || fail "no strip window"
sleep 1

# Clicks at $1,$2 and waits up to fifteen seconds for the shown panel to be $3 ("" for none).
# The waits here are generous because CI runs this beside other tests on two cores; they only
# cost time when something is wrong.
click_expecting() {
    xdotool mousemove "$1" "$2" click 1
    local shown=""
    for _ in $(seq 150); do
        shown=$(shown_panels)
        [[ $shown == "$3" ]] && return 0
        sleep 0.1
    done
    fail "after a click at $1,$2: shown '${shown//$'\n'/, }', expected '$3'"
}

# The rightmost item ends 8 pixels from the screen's right edge; 10 pixels in from its end is
# inside it whatever its width.
rightmost_x=$((1280 - 8 - 10))
# The first click is repeated: on a loaded machine a press soon after start-up has been seen
# not to reach the item.
first=""
for _ in $(seq 5); do
    xdotool mousemove "$rightmost_x" 12 click 1
    for _ in $(seq 30); do
        first=$(shown_panels)
        [[ -n $first ]] && break 2
        sleep 0.1
    done
done
[[ -n $first ]] || fail "a click on the rightmost item opened no panel"
[[ -n ${SCREENSHOT:-} ]] && import -window root "$SCREENSHOT"
click_expecting "$rightmost_x" 12 ""
click_expecting "$rightmost_x" 12 "$first"

# The next item to the left: 4 pixels between items.
first_width=$(item_width "${keyOfTitle[$first]}")
second_x=$(awk -v w="$first_width" 'BEGIN { printf "%d", 1280 - 8 - w - 4 - 10 }')
xdotool mousemove "$second_x" 12 click 1
for _ in $(seq 150); do
    second=$(shown_panels)
    [[ -n $second && $second != "$first" ]] && break
    sleep 0.1
done
[[ -n $second && $second != "$first" && $second != *$'\n'* ]] ||
    fail "a click on the second item showed '${second//$'\n'/, }' instead of switching panels"
click_expecting 400 500 ""

# The left edge of what the strip shows: items are right-aligned, so a narrower item moves it
# right.
strip_left() {
    import -window root -crop 1280x24+0+0 +repage png:- |
        convert - -fuzz 5% -trim -format '%X' info:- | tr -d +
}
left_before=$(strip_left)
"$ctl" set cpuReadout off
for _ in $(seq 50); do
    sleep 0.1
    left_after=$(strip_left)
    ((left_after > left_before)) && break
done
((left_after > left_before)) ||
    fail "cpuReadout off left the strip's left edge at $left_after (was $left_before)"

# Ctrl-drag the rightmost item to the far left: the stored order changes to the one on screen.
before=$("$ctl" get menuBarOrder)
xdotool mousemove "$rightmost_x" 12 keydown ctrl mousedown 1
for step in $(seq 1 20); do
    xdotool mousemove $((rightmost_x - 20 * step)) 12
    sleep 0.02
done
xdotool mouseup 1 keyup ctrl
for _ in $(seq 150); do
    after=$("$ctl" get menuBarOrder)
    [[ $after != "$before" ]] && break
    sleep 0.1
done
[[ ${after%%,*} == "${keyOfTitle[$first]}" ]] ||
    fail "after dragging ${keyOfTitle[$first]} to the left, menuBarOrder is '$after' (was '$before')"
[[ -z $(shown_panels) ]] || fail "a Ctrl-drag opened a panel"

kill -0 "$agent_pid" 2>/dev/null || fail "the agent ended"

# A new language takes a new process: the agent starts again and its panels speak German.
declare -A germanTitle=([cpu]=CPU [memory]=Arbeitsspeicher [storage]=SSD [sensors]=Sensoren)
rightmost=${after##*,}
"$ctl" set language de && "$ctl" post settings
for _ in $(seq 150); do
    kill -0 "$agent_pid" 2>/dev/null || break
    sleep 0.1
done
kill -0 "$agent_pid" 2>/dev/null && fail "the agent did not leave for a relaunch"
timeout 10 xdotool search --sync --onlyvisible --name '^Corvane$' >/dev/null ||
    fail "no strip after the relaunch"
sleep 1
german=""
for _ in $(seq 5); do
    xdotool mousemove "$rightmost_x" 12 click 1
    german=$(timeout 3 xdotool search --sync --onlyvisible --name "^${germanTitle[$rightmost]}\$" ||
        true)
    [[ -n $german ]] && break
done
[[ -n $german ]] || fail "no '${germanTitle[$rightmost]}' panel after the relaunch"

# "Quit" at the right end of the open panel's footer ends the agent, strip and all.
eval "$(xdotool getwindowgeometry --shell "$german")"
xdotool mousemove $((X + WIDTH - 20)) $((Y + HEIGHT - 17)) click 1
for _ in $(seq 150); do
    [[ -z $(xdotool search --name '^Corvane$' 2>/dev/null) ]] && break
    sleep 0.1
done
[[ -z $(xdotool search --name '^Corvane$' 2>/dev/null) ]] || fail "Quit in the panel left the agent running"
echo "strip: '$first' and '$second' opened, closed and switched; cpuReadout off narrowed it;" \
    "order '$before' -> '$after'; relaunched in German and quit from the panel"
