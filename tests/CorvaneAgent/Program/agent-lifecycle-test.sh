#!/bin/sh
# The menu-bar agent's life from the outside: a second copy leaves at once and says why,
# quitAgent ends the first, the master switch keeps it from starting, SIGTERM and the end of the
# session bus end it cleanly.
#
# Usage: agent-lifecycle-test.sh CORVANE-AGENT CORVANECTL
#
# Any corvane-agent of the same user counts for the single-instance rule, wherever it is
# installed, so the test runs in a process namespace of its own where it can (the only copies
# it sees are its own) and on a private session bus. Without a namespace, an agent running
# elsewhere makes the test skip rather than fail.
set -u

agent=$1
ctl=$2
skip=77

if [ "${CORVANE_LIFECYCLE_STAGE:-}" = "" ]; then
    for isolate in "unshare --pid --fork --mount-proc" "unshare --user --map-root-user --pid --fork --mount-proc"; do
        if $isolate true 2>/dev/null; then
            CORVANE_LIFECYCLE_STAGE=isolated exec $isolate sh "$0" "$@"
        fi
    done
    CORVANE_LIFECYCLE_STAGE=shared exec sh "$0" "$@"
fi
if [ "$CORVANE_LIFECYCLE_STAGE" != "on-bus" ]; then
    CORVANE_LIFECYCLE_ISOLATION=$CORVANE_LIFECYCLE_STAGE CORVANE_LIFECYCLE_STAGE=on-bus \
        exec dbus-run-session -- sh "$0" "$@"
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/corvane-lifecycle-XXXXXX") || exit 1
started=""
cleanup() {
    for pid in $started; do
        kill -KILL "$pid" 2>/dev/null
    done
    rm -rf "$work"
}
trap cleanup EXIT

export XDG_CONFIG_HOME="$work/config"
export CORVANE_SETTINGS_SUITE=lifecycle-test
export CORVANE_LANGUAGE=en
export CORVANE_LOG=stderr
mkdir -p "$XDG_CONFIG_HOME"

# A virtual X server for Corvane's own strip: an agent with nowhere to show its meters leaves.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
started="$started $!"
tries=0
until [ -s "$work/display" ]; do
    tries=$((tries + 1))
    if [ "$tries" -gt 100 ]; then
        echo "FAIL: Xvfb did not start: $(cat "$work/xvfb.log")"
        exit 1
    fi
    sleep 0.1
done
DISPLAY=":$(cat "$work/display")"
export DISPLAY
unset QT_QPA_PLATFORM WAYLAND_DISPLAY

failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

# Waits up to ten seconds for a line containing $2 in the file $1.
wait_for_line() {
    tries=0
    while ! grep -qF -- "$2" "$1" 2>/dev/null; do
        tries=$((tries + 1))
        [ "$tries" -gt 200 ] && return 1
        sleep 0.05
    done
}

# Waits up to ten seconds for the background process $1 to end; doing $2 (when given) before
# each look. Sets `status` to its exit status; fails when it did not end.
wait_for_exit() {
    tries=0
    while kill -0 "$1" 2>/dev/null; do
        tries=$((tries + 1))
        if [ "$tries" -gt 50 ]; then
            status=timeout
            return 1
        fi
        [ -n "${2:-}" ] && $2
        sleep 0.2
    done
    wait "$1"
    status=$?
}

# Starts an agent in the background logging to $work/$1.log; sets `pid`. Returns 1 when it
# did not come up.
start_agent() {
    "$agent" 2>"$work/$1.log" &
    pid=$!
    started="$started $pid"
    if ! wait_for_line "$work/$1.log" "up, pid $pid"; then
        return 1
    fi
}

# Runs an agent that is expected to leave at once; sets `status`.
run_leaving_agent() {
    timeout 10 "$agent" 2>"$work/$1.log"
    status=$?
}

post_quit() { "$ctl" post quitAgent; }

# 1. A copy streaming readings shows no menu bar, so the first menu-bar copy stays up beside
# it; a second menu-bar copy leaves at once, saying why, while the first runs on.
"$agent" --stream >/dev/null 2>&1 &
started="$started $!"
sleep 0.3
if ! start_agent first; then
    if [ "$CORVANE_LIFECYCLE_ISOLATION" = shared ] &&
        grep -qF "another copy of this install is already up" "$work/first.log"; then
        echo "SKIP: another corvane-agent of this user runs outside the test"
        exit $skip
    fi
    echo "FAIL: the first agent did not come up:"
    cat "$work/first.log"
    exit 1
fi
first=$pid
run_leaving_agent second
[ "$status" = 0 ] || fail "the second copy ended with status $status"
grep -qF "another copy of this install is already up; exiting" "$work/second.log" ||
    fail "the second copy did not say why it left: $(cat "$work/second.log")"
grep -qF "up, pid" "$work/second.log" && fail "the second copy came up"
kill -0 "$first" 2>/dev/null || fail "the first copy ended with the second"

# Whatever becomes of the settings file while the agent runs, it runs on: each change is
# read after the watch's short settle time.
settings="$XDG_CONFIG_HOME/corvane/$CORVANE_SETTINGS_SUITE.json"
for change in corrupt folder gone interval; do
    case $change in
        corrupt) printf '{"refreshInterval": 2,' >"$settings" ;;
        folder) rm -f "$settings" && mkdir "$settings" ;;
        gone) rm -rf "$XDG_CONFIG_HOME/corvane" ;;
        interval) mkdir -p "$XDG_CONFIG_HOME/corvane" &&
            printf '{"refreshInterval": 0.5}' >"$settings" ;;
    esac
    sleep 0.15
    kill -0 "$first" 2>/dev/null || fail "the agent ended when its settings file was $change"
done

# 2. quitAgent ends the first. Posted until it ends, in case the listener was not yet
# registered with the bus when "up" was logged.
wait_for_exit "$first" post_quit || fail "quitAgent did not end the agent"
[ "$status" = 0 ] || fail "the agent ended on quitAgent with status $status"

# 3. With the master switch off, a new copy leaves at once with the switch's line.
"$ctl" set agentEnabled false || fail "corvanectl set agentEnabled false failed"
run_leaving_agent switched-off
[ "$status" = 0 ] || fail "the switched-off copy ended with status $status"
grep -qF "the master switch is off; exiting" "$work/switched-off.log" ||
    fail "the switched-off copy did not name the switch: $(cat "$work/switched-off.log")"
grep -qF "up, pid" "$work/switched-off.log" && fail "the switched-off copy came up"

# 4. SIGTERM ends a running agent cleanly.
"$ctl" set agentEnabled true || fail "corvanectl set agentEnabled true failed"
if start_agent terminated; then
    kill -TERM "$pid"
    wait_for_exit "$pid" || fail "SIGTERM did not end the agent"
    [ "$status" = 0 ] || fail "the agent ended on SIGTERM with status $status"
    grep -qF "stopping on SIGTERM" "$work/terminated.log" ||
        fail "the agent did not log SIGTERM: $(cat "$work/terminated.log")"
else
    fail "the agent did not come up again with the switch on: $(cat "$work/terminated.log")"
fi

# 5. The end of the session's bus (the desktop session ended) ends the agent. A bus of its
# own, so that the rest of the test keeps the shared one.
bus=$(dbus-daemon --session --fork --print-address=1 --print-pid=1 2>/dev/null)
bus_address=$(echo "$bus" | sed -n 1p)
bus_pid=$(echo "$bus" | sed -n 2p)
if [ -n "$bus_address" ] && [ -n "$bus_pid" ]; then
    started="$started $bus_pid"
    if DBUS_SESSION_BUS_ADDRESS=$bus_address start_agent bus-gone; then
        kill -TERM "$bus_pid"
        wait_for_exit "$pid" || fail "the agent outlived its session bus"
        [ "$status" = 0 ] || fail "the agent ended with its bus with status $status"
        grep -qF "the session bus is gone; exiting" "$work/bus-gone.log" ||
            fail "the agent did not say its bus was gone: $(cat "$work/bus-gone.log")"
    else
        fail "the agent did not come up on a bus of its own: $(cat "$work/bus-gone.log")"
    fi
else
    fail "no session bus of its own could be started"
fi

if [ "$failures" -gt 0 ]; then
    exit 1
fi
echo "PASS"
