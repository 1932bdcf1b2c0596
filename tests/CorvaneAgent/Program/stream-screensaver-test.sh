#!/bin/sh
# A stream rests while the session's screensaver is active and goes on when it ends: the front
# program (no Qt) hears ActiveChanged on its own session-bus connection.
#
# Usage: stream-screensaver-test.sh CORVANE-AGENT FAKE-SCREENSAVER
set -u

if [ "${CORVANE_SCREENSAVER_STAGE:-}" != "on-bus" ]; then
    CORVANE_SCREENSAVER_STAGE=on-bus exec dbus-run-session -- sh "$0" "$@"
fi

agent=$1
saver=$2
work=$(mktemp -d "${TMPDIR:-/tmp}/corvane-screensaver-XXXXXX") || exit 1
started=""
cleanup() {
    exec 3>&-
    for pid in $started; do
        kill -KILL "$pid" 2>/dev/null
    done
    rm -rf "$work"
}
trap cleanup EXIT
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=stream-screensaver-test \
    CORVANE_LOG=stderr

fail() {
    echo "FAIL: $*"
    echo "--- agent's log:"
    cat "$work/agent.log"
    exit 1
}

# Waits up to 15 s for a condition (a shell command), polling every 0.1 s.
wait_for() {
    tries=150
    while ! eval "$1"; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || return 1
        sleep 0.1
    done
}

lines() { wc -l < "$work/lines"; }

mkfifo "$work/saver-in"
"$saver" < "$work/saver-in" > "$work/saver-out" 2>&1 &
started="$started $!"
exec 3> "$work/saver-in"
wait_for 'grep -q ready "$work/saver-out"' || fail "the fake screensaver did not start"

"$agent" --stream --interval 0.1 > "$work/lines" 2> "$work/agent.log" &
agent_pid=$!
started="$started $agent_pid"
wait_for '[ "$(lines)" -ge 3 ]' || fail "the stream printed no lines"

echo 1 >&3
wait_for '[ "$(grep -c sent "$work/saver-out")" -ge 1 ]' || fail "ActiveChanged(true) not sent"
# A refresh already under way may still print; then the stream rests.
wait_for 'before=$(lines); sleep 1; [ "$(lines)" -eq "$before" ]' || fail "the stream never rested"
rested=$(lines)
sleep 2
[ "$(lines)" -eq "$rested" ] || fail "the stream printed while the screensaver ran"

echo 0 >&3
wait_for '[ "$(lines)" -ge $((rested + 3)) ]' || fail "the stream did not go on after the screensaver"

kill -TERM "$agent_pid"
wait "$agent_pid"
status=$?
[ "$status" -eq 0 ] || fail "the stream ended with status $status on SIGTERM"
echo "PASS"
