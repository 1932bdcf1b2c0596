# Sourced by the desktop test scripts after they start openbox on $DISPLAY:
# `wait_for_window_manager` returns once the window manager takes in new windows, 1 after 15 s.
#
# The window manager names itself on the root window (_NET_SUPPORTING_WM_CHECK) before it
# manages windows, and on a busy machine a window mapped in between was never managed: never
# framed, never given pointer events, so a test's first click went nowhere. A probe window it
# has taken in (given WM_STATE) is the proof; a probe it missed is replaced by another.
wait_for_window_manager() {
    local probe deadline=$((SECONDS + 15))
    while ((SECONDS < deadline)); do
        xev -name corvane-wm-probe >/dev/null 2>&1 &
        probe=$!
        for _ in $(seq 20); do
            if xprop -name corvane-wm-probe WM_STATE 2>/dev/null | grep -q Normal; then
                kill "$probe" 2>/dev/null
                wait "$probe" 2>/dev/null
                return 0
            fi
            sleep 0.1
        done
        kill "$probe" 2>/dev/null
        wait "$probe" 2>/dev/null
    done
    return 1
}
