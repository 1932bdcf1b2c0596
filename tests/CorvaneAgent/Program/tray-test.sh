#!/usr/bin/env bash
# The menu-bar agent in a StatusNotifier tray: with a watcher on the bus the agent chooses the
# tray by itself, registers one item per meter in the menu-bar order (left to right), each
# item's pixmap has its meter's proportions, and Activate opens that section's panel window
# (then closes it again).
#
# Usage: tray-test.sh CORVANE-AGENT RECORDING-WATCHER
set -uo pipefail

agent=$1
watcher=$2

source "$(dirname "$0")/desktop-test-session.sh" "$0" "$@"
render_layout "$agent"

"$watcher" >"$work/registered" 2>"$work/watcher.log" &
pids+=($!)
for _ in $(seq 150); do
    grep -q ready "$work/watcher.log" && break
    sleep 0.1
done
grep -q ready "$work/watcher.log" || fail "no watcher: $(cat "$work/watcher.log")"
"$agent" >"$work/agent.log" 2>&1 &
agent_pid=$!
pids+=("$agent_pid")
for _ in $(seq 150); do
    [[ $(wc -l <"$work/registered") -ge 4 ]] && break
    sleep 0.1
done
mapfile -t services <"$work/registered"
[[ ${#services[@]} -eq 4 ]] || fail "${#services[@]} items registered, expected 4"

item_property() {
    dbus-send --session --print-reply --dest="$1" /StatusNotifierItem \
        org.freedesktop.DBus.Properties.Get string:org.kde.StatusNotifierItem "string:$2"
}

ids=()
for service in "${services[@]}"; do
    id=$(item_property "$service" Id | sed -n 's/.*string "Corvane\.\([a-z]*\)".*/\1/p')
    ids+=("$id")
    # Every size offered keeps the meter's width to the bar's 22 points of height.
    width=$(item_width "$id")
    sizes=$(item_property "$service" IconPixmap | grep -o 'int32 [0-9]*' | awk '{ print $2 }' |
        paste - -)
    [[ -n $sizes ]] || fail "$id has no pixmap"
    while read -r w h; do
        awk -v w="$w" -v h="$h" -v points="$width" \
            'BEGIN { exit !(h >= 22 && (w - points * h / 22) ^ 2 <= 1) }' ||
            fail "$id's pixmap is ${w}x$h for a meter $width points wide"
    done <<<"$sizes"
done
order=$(IFS=,; echo "${ids[*]}")
[[ $order == "storage,sensors,memory,cpu" ]] || fail "registered in the order $order"

# A host that does not know where its icon is sends 0, 0: the panel opens at the pointer.
cpu=${services[3]}
xdotool mousemove 1200 10
dbus-send --session --type=method_call --dest="$cpu" /StatusNotifierItem \
    org.kde.StatusNotifierItem.Activate int32:0 int32:0
for _ in $(seq 150); do
    [[ $(shown_panels) == CPU ]] && break
    sleep 0.1
done
[[ $(shown_panels) == CPU ]] || fail "Activate showed '$(shown_panels)', not the CPU panel"
dbus-send --session --type=method_call --dest="$cpu" /StatusNotifierItem \
    org.kde.StatusNotifierItem.Activate int32:1200 int32:10
for _ in $(seq 150); do
    [[ -z $(shown_panels) ]] && break
    sleep 0.1
done
[[ -z $(shown_panels) ]] || fail "a second Activate left '$(shown_panels)' open"

kill -0 "$agent_pid" 2>/dev/null || fail "the agent ended"
echo "tray: items $order, pixmaps in proportion, Activate opened and closed the CPU panel"
