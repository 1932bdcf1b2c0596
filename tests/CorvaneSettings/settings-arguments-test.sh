#!/usr/bin/env bash
# corvane-settings refuses a bad command line before it opens anything: one line on standard
# error naming the program, status 2, nothing on standard output and nothing written.
# Usage: settings-arguments-test.sh SETTINGS
set -uo pipefail

settings=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=arguments-test QT_QPA_PLATFORM=offscreen
mkfifo "$work/fifo"
touch "$work/file"

failures=0
while IFS= read -r arguments; do
    # Through eval for the $'…' words that carry bytes no plain word can hold.
    eval "\"\$settings\" $arguments" >"$work/out" 2>"$work/err"
    status=$?
    lines=$(wc -l <"$work/err")
    if ((status != 2)) || [[ -s $work/out ]] || ((lines != 1)) ||
        ! grep -q '^corvane-settings: ' "$work/err"; then
        echo "FAIL: $arguments: status $status, $lines error lines: $(cat "$work/err" "$work/out")"
        failures=$((failures + 1))
    fi
done <<ROWS
--bogus
--page
--page nope
--render "$work/file"
--render "$work/fifo"
\$'--bo\\ngus'
--render \$'$work/\\xc3('
--page meters --render
ROWS
[[ -e $work/config ]] && { echo "FAIL: a refused command line wrote $work/config"; failures=$((failures + 1)); }
((failures == 0)) && echo "every bad command line refused with one line and status 2"
exit $((failures > 0))
