# The settings window beside the running agent under Xvfb and openbox: one window per user,
# unchecking the memory meter takes it off the strip (how soon is printed, not asserted: this
# runs beside other tests, and a delay is a figure to read, not a pass or fail), and the agent's
# Settings button opens the window. Skips (77) where the desktop session cannot be made.
# Usage: settings-x11-test.sh AGENT SETTINGS
set -uo pipefail

agent=$1
settings=$2

source "$(dirname "$0")/../CorvaneAgent/Program/desktop-test-session.sh" "$0" "$@"
# Only the companion built beside the agent is to be found, not one installed on this machine.
export XDG_DATA_HOME="$work/data" XDG_DATA_DIRS="$work/system-data"

"$agent" --menu-bar strip >"$work/agent.log" 2>&1 &
pids+=($!)
timeout 10 xdotool search --sync --name '^Corvane$' >/dev/null || fail "no strip window"
sleep 1

strip_left() {
    import -window root -crop 1280x24+0+0 +repage png:- |
        convert - -fuzz 5% -trim -format '%X' info:- | tr -d +
}
settings_windows() {
    xdotool search --onlyvisible --name '^Corvane Settings$' 2>/dev/null
}

"$settings" >"$work/settings.log" 2>&1 &
settings_pid=$!
pids+=("$settings_pid")
window=$(timeout 10 xdotool search --sync --onlyvisible --name '^Corvane Settings$' | head -1)
[[ -n $window ]] || fail "no settings window"
# Mapped is not yet laid out and drawn on a loaded machine.
sleep 1

# A second start leaves at once and the first window stays the only one.
timeout 15 "$settings" >>"$work/settings.log" 2>&1 || fail "a second start did not leave at once"
sleep 0.3
(($(settings_windows | wc -l) == 1)) || fail "a second start made another window"

# Factory order storage, sensors, memory, cpu: memory is the third row of the meter list.
left_before=$(strip_left)
xdotool mousemove --window "$window" 207 175 click 1
started=$(date +%s%N)
# The change happened between the start of the last screenshot that lacks it and the end of
# the first that shows it; the end is the bound checked.
seen_ms=""
after_ms=0
while (($(date +%s%N) - started < 15000000000)); do
    probe_ms=$((($(date +%s%N) - started) / 1000000))
    left_after=$(strip_left)
    if ((left_after > left_before)); then
        seen_ms=$((($(date +%s%N) - started) / 1000000))
        break
    fi
    after_ms=$probe_ms
    sleep 0.05
done
[[ $(grep -o '"showMemoryItem": *false' "$XDG_CONFIG_HOME/corvane/desktop-test.json") ]] ||
    fail "the click did not store showMemoryItem false (window log: $(cat "$work/settings.log"))"
[[ -n $seen_ms ]] || fail "the memory meter was still on the strip 15 s after it was unchecked"

kill "$settings_pid"
wait "$settings_pid" 2>/dev/null
for _ in $(seq 150); do
    [[ -z $(settings_windows) ]] && break
    sleep 0.1
done

# The rightmost meter's panel, then its Settings button at the footer's left.
xdotool mousemove $((1280 - 8 - 10)) 12 click 1
panel=$(timeout 15 xdotool search --sync --onlyvisible --name '^(CPU|Memory|SSD|Sensors)$' | head -1)
[[ -n $panel ]] || fail "a click on the rightmost meter opened no panel"
eval "$(xdotool getwindowgeometry --shell "$panel")"
xdotool mousemove $((X + 30)) $((Y + HEIGHT - 17)) click 1
opened=$(timeout 10 xdotool search --sync --onlyvisible --name '^Corvane Settings$' | head -1)
[[ -n $opened ]] || fail "the panel's Settings button opened no settings window"
# Another language, chosen anywhere (here by editing the file), brings the window back in it.
sed -i '1s/^{/{"language": "de",/' "$XDG_CONFIG_HOME/corvane/desktop-test.json"
timeout 15 xdotool search --sync --onlyvisible --name '^Corvane-Einstellungen$' >/dev/null ||
    fail "the window did not come back in German (window log: $(cat "$work/settings.log"))"
[[ -z $(settings_windows) ]] || fail "the English window stayed open beside the German one"

echo "settings: one window per user; memory left the strip between ${after_ms} and ${seen_ms} ms after its box was" \
    "unchecked; the panel's Settings button opened the window; a new language reopened it in German"
