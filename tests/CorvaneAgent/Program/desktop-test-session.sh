# Sourced by the end-to-end desktop tests: puts the calling script in a process namespace of its
# own (any corvane-agent of the same user counts for the single-instance rule), on a private
# session bus, with a virtual X server and openbox, isolated settings, and `work`, `pids`, `fail`
# and `render_layout` for the test. Skips (77) where no namespace can be made.
# Usage, first thing in a bash script: source desktop-test-session.sh "$0" "$@"

desktop_test_script=$1
shift
if [[ -z ${CORVANE_DESKTOP_TEST_STAGE:-} ]]; then
    for isolate in "unshare --pid --fork --mount-proc" \
        "unshare --user --map-root-user --pid --fork --mount-proc"; do
        if $isolate true 2>/dev/null; then
            CORVANE_DESKTOP_TEST_STAGE=isolated exec $isolate bash "$desktop_test_script" "$@"
        fi
    done
    echo "SKIP: no process namespace; another agent of this user would decide the outcome"
    exit 77
fi
if [[ $CORVANE_DESKTOP_TEST_STAGE != on-bus ]]; then
    CORVANE_DESKTOP_TEST_STAGE=on-bus exec dbus-run-session -- bash "$desktop_test_script" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/corvane-desktop-XXXXXX") || exit 1
pids=()
desktop_test_cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    rm -rf "$work"
}
trap desktop_test_cleanup EXIT
fail() {
    echo "FAIL: $*"
    if [[ -f $work/agent.log ]]; then
        echo "--- agent log"
        cat "$work/agent.log"
    fi
    exit 1
}

# English from the locale, so that the "language" setting can still choose another.
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=desktop-test CORVANE_LOG=stderr
export LANG=C.UTF-8
unset CORVANE_LANGUAGE LANGUAGE LC_ALL LC_MESSAGES
mkdir -p "$XDG_CONFIG_HOME"

exec {displayfd}<> <(:)
Xvfb -displayfd "$displayfd" -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
read -r -t 10 number <&"$displayfd" || fail "Xvfb did not start"
export DISPLAY=":$number"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
openbox >"$work/openbox.log" 2>&1 &
pids+=($!)
source "$(dirname "${BASH_SOURCE[0]}")/../../support/wait-for-window-manager.sh"
wait_for_window_manager || fail "openbox does not manage windows"

# The layout the agent renders with these settings: `render_layout AGENT` writes
# $work/render/layout.json; `item_width KEY` then gives a section's item width in points.
render_layout() {
    QT_QPA_PLATFORM=offscreen "$1" --render "$work/render" >/dev/null 2>&1 || fail "--render failed"
}
item_width() {
    grep -A1 "\"$1\": {" "$work/render/layout.json" | sed -n 's/.*"itemWidth": \([0-9.]*\).*/\1/p'
}

# The titles of the panel windows shown, one per line.
shown_panels() {
    local id
    for id in $(xdotool search --onlyvisible --name '^(CPU|Memory|SSD|Sensors)$' 2>/dev/null); do
        xdotool getwindowname "$id"
    done
}
