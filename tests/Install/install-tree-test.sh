#!/usr/bin/env bash
# Installs the build into a temporary DESTDIR and checks the tree: every file in its place,
# valid desktop entries and AppStream metadata, readable man pages, and the installed programs
# working from there (the agent finds its translations and bundle information beside it).
# Usage: install-tree-test.sh BUILD_DIR PREFIX FIXTURE_ROOT WITH_SETTINGS APP_ID AGENT_ID MODULE_DIR
set -euo pipefail

build=$1 prefix=$2 fixture=$3 with_settings=$4 app_id=$5 agent_id=$6 module_dir=$7
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

DESTDIR="$stage" cmake --install "$build" >/dev/null
root="$stage$prefix"

expected=(
    bin/corvane-agent
    libexec/corvane-agent
    bin/corvanectl
    "$module_dir/corvane-update-archive.so"
    share/corvane/bundle.json
    share/corvane/translations/corvane_de.qm
    share/corvane/translations/corvane_es.qm
    share/corvane/translations/corvane_fr.qm
    share/corvane/translations/corvane_ja.qm
    "share/applications/$agent_id.desktop"
    "share/icons/hicolor/scalable/apps/$app_id.svg"
    "share/metainfo/$app_id.metainfo.xml"
    share/man/man1/corvane-agent.1
    share/man/man1/corvanectl.1
    share/bash-completion/completions/corvanectl
    lib/systemd/user/corvane-agent.service
    share/doc/corvane/README.md
    share/doc/corvane/docs/linux-port.md
)
if [[ "$with_settings" == 1 ]]; then
    expected+=(bin/corvane-settings "share/applications/$app_id.desktop"
        share/man/man1/corvane-settings.1)
fi
for file in "${expected[@]}"; do
    [[ -f "$root/$file" ]] || fail "not installed: $file"
done
for program in bin/corvane-agent libexec/corvane-agent bin/corvanectl; do
    [[ -x "$root/$program" ]] || fail "not executable: $program"
done

for entry in "$root"/share/applications/*.desktop; do
    desktop-file-validate "$entry" || fail "invalid desktop entry: $entry"
    # The entries start the installed programs by their full paths, so any prefix works.
    exec_program=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry")
    [[ -x "$stage$exec_program" ]] || fail "$entry starts $exec_program, which is not installed"
done
appstreamcli validate --no-net "$root/share/metainfo/$app_id.metainfo.xml" ||
    fail "invalid AppStream metadata"

for page in "$root"/share/man/man1/*.1; do
    warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
    [[ -z "$warnings" ]] || fail "$page: $warnings"
done
# Every flag of the agent's --help is in its page (help2man wrote the page from it).
for flag in $("$root/bin/corvane-agent" --help | grep -o -- '^  --*[a-z-]*'); do
    grep -q -- "${flag//-/\\\\-}" "$root/share/man/man1/corvane-agent.1" ||
        fail "corvane-agent.1 lacks $flag"
done

bash -n "$root/share/bash-completion/completions/corvanectl" || fail "completion does not parse"
unit="$root/lib/systemd/user/corvane-agent.service"
grep -qx "ExecStart=$prefix/bin/corvane-agent" "$unit" || fail "unit does not start the agent"
grep -qx "WantedBy=graphical-session.target" "$unit" || fail "unit not bound to the session"

# The installed programs, away from the build tree.
config=$(mktemp -d)
trap 'rm -rf "$stage" "$config"' EXIT
export XDG_CONFIG_HOME="$config" CORVANE_SETTINGS_SUITE=install-test CORVANE_LOG=stderr
snapshot=$(cd / && CORVANE_LANGUAGE=de "$root/bin/corvane-agent" --snapshot --refreshes 1 \
    --interval 0.01 --procfs "$fixture/proc" --sysfs "$fixture/sys") ||
    fail "the installed agent's --snapshot failed"
grep -q '"thermalStateLabel": "Unbekannt"' <<<"$snapshot" ||
    fail "the installed agent does not speak German: $(grep -o '"thermalStateLabel": "[^"]*"' <<<"$snapshot")"
# Installed, the agent is not inside a bundle: the package manager updates it. (The front hands
# --update-check to libexec/corvane-agent, so this also shows that it finds it there.)
check=$("$root/bin/corvane-agent" --update-check 2>/dev/null) && fail "update check succeeded"
grep -q '"error": *"updates off' <<<"$check" || fail "updates are not off: $check"
grep -q '"version": *"[0-9]' <<<"$check" || fail "the install does not name its version: $check"
[[ $("$root/bin/corvanectl" get refreshInterval) == 1 ]] || fail "the installed corvanectl failed"

if ((failures > 0)); then
    echo "$failures failures" >&2
    exit 1
fi
echo "installed tree under $prefix is complete"
