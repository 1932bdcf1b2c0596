#!/usr/bin/env bash
# What `corvane-agent --stream --interval 1` costs as a whole process, beside its floor
# (corvane-stream-floor: the same files at the same cadence, no output), both running at once so
# that a busy machine disturbs them alike. Per run, over SECONDS after a 5 s start: processor
# time per refresh (user + system, from /proc/PID/stat), the main thread's voluntary context
# switches per refresh (how often its event loop woke), and peak resident memory (VmHWM). With
# RUNS > 1 it prints each run and then the medians.
#
# Usage: bench/stream-cpu.sh [SECONDS] [RUNS]   (after make; default 60 s, 1 run)
# The floor reads process files with open/read/close, as a plain program would; a second floor
# that keeps their descriptors, as the agent does, is shown for comparison. The stream runs in
# the agent's front program, which loads no toolkit.
set -euo pipefail

seconds=${1:-60}
runs=${2:-1}
build=${CORVANE_BUILD:-build}
agent=${CORVANE_AGENT:-$build/corvane-agent}
floor=${CORVANE_STREAM_FLOOR:-$build/bench/corvane-stream-floor}
work=$(mktemp -d)
pids=()
groups=()
cgroup_root=/sys/fs/cgroup/cpuacct
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    for pid in "${pids[@]}"; do wait "$pid" 2>/dev/null || true; done
    for group in "${groups[@]}"; do rmdir "$group" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT

# Isolated settings and a suite of its own, so a running agent of this user is not disturbed.
export XDG_CONFIG_HOME="$work/config" CORVANE_SETTINGS_SUITE=stream-cpu-bench CORVANE_LOG=stderr
ticks=$(getconf CLK_TCK)

use_cgroups=false
if [[ -w $cgroup_root && -r $cgroup_root/cpuacct.usage ]]; then
    use_cgroups=true
fi
# Starts "$@" in the background, in a control group of its own when possible; sets started_pid.
start() {
    local group=$cgroup_root/corvane-stream-bench-$$-${#groups[@]}
    if $use_cgroups && mkdir "$group" 2>/dev/null; then
        groups+=("$group")
        sh -c 'echo $$ > "$1/cgroup.procs"; shift; exec "$@"' sh "$group" "$@" &
    else
        "$@" &
    fi
    started_pid=$!
    pids+=("$started_pid")
}
# Processor milliseconds of process $1 so far.
cpu_ms() {
    local group
    group=$(awk -F: '$2 == "cpuacct" || $2 ~ /(^|,)cpuacct(,|$)/ { print $3 }' "/proc/$1/cgroup")
    if $use_cgroups && [[ $group == /corvane-stream-bench-* ]]; then
        awk '{ printf "%.6f\n", $1 / 1e6 }' "$cgroup_root$group/cpuacct.usage"
    else
        awk -v t="$ticks" '{ sub(/^.*\) /, ""); print ($12 + $13) * 1000 / t }' "/proc/$1/stat"
    fi
}
wakes() {
    awk '/^voluntary_ctxt_switches/ { print $2 }' "/proc/$1/status"
}
peak_kb() {
    awk '/^VmHWM/ { print $2 }' "/proc/$1/status"
}

results="$work/results"
for run in $(seq "$runs"); do
    start "$agent" --stream --interval 1 >/dev/null 2>"$work/agent.log"
    agent_pid=$started_pid
    start "$floor" 1
    floor_pid=$started_pid
    start "$floor" 1 --kept
    kept_pid=$started_pid
    sleep 5
    a0=$(cpu_ms "$agent_pid") f0=$(cpu_ms "$floor_pid") k0=$(cpu_ms "$kept_pid")
    w0=$(wakes "$agent_pid")
    sleep "$seconds"
    a1=$(cpu_ms "$agent_pid") f1=$(cpu_ms "$floor_pid") k1=$(cpu_ms "$kept_pid")
    w1=$(wakes "$agent_pid")
    ap=$(peak_kb "$agent_pid") fp=$(peak_kb "$floor_pid")
    kill "$agent_pid" "$floor_pid" "$kept_pid"
    wait "$agent_pid" "$floor_pid" "$kept_pid" 2>/dev/null || true
    pids=()
    for group in "${groups[@]}"; do rmdir "$group" 2>/dev/null || true; done
    groups=()
    awk -v a0="$a0" -v a1="$a1" -v f0="$f0" -v f1="$f1" -v k0="$k0" -v k1="$k1" \
        -v w0="$w0" -v w1="$w1" -v ap="$ap" -v fp="$fp" -v s="$seconds" -v r="$run" \
        'BEGIN {
            a = (a1 - a0) / s; f = (f1 - f0) / s; k = (k1 - k0) / s
            printf "run %d: stream %.3f ms/refresh, floor %.3f (ratio %.2f), kept-descriptor floor %.3f (ratio %.2f), main-thread wakes %.2f/refresh, peak RSS %.1f MB vs floor %.1f MB\n",
                r, a, f, a / f, k, a / k, (w1 - w0) / s, ap / 1024, fp / 1024
            print a, f, k, (w1 - w0) / s, ap / 1024, fp / 1024 > "/dev/stderr"
        }' 2>>"$results"
done

# The median of column $1 of the results.
median() {
    awk -v c="$1" '{ print $c }' "$results" | sort -g | awk '{ v[NR] = $1 } END {
        print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'
}
a=$(median 1) f=$(median 2) k=$(median 3) w=$(median 4) ap=$(median 5) fp=$(median 6)
awk -v a="$a" -v f="$f" -v k="$k" -v w="$w" -v ap="$ap" -v fp="$fp" -v n="$runs" -v s="$seconds" \
    'BEGIN {
    printf "\n%-52s %10s %10s %7s\n", "--stream --interval 1, median of " n " x " s " s", "agent", "floor", "ratio"
    printf "%-52s %7.3f ms %7.3f ms %7.2f\n", "processor time per refresh", a, f, a / f
    printf "%-52s %7.3f ms %7.3f ms %7.2f\n", "  floor keeping process descriptors", a, k, a / k
    printf "%-52s %10.2f %10s\n", "main-thread wakes per refresh", w, "1"
    printf "%-52s %7.1f MB %7.1f MB %7.2f\n", "peak resident memory", ap, fp, ap / fp
}'
