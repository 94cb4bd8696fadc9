# Sourced by the scripts: the name of the step under way, output only of what fails, and a line at the end
# that says how it went. A script that has more to clear up defines a function clear_up.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
script=$(basename "$0")
scratch=$(mktemp -d)
step="starting"
outcome="done"

finish() {
    local status=$?
    if declare -F clear_up >/dev/null; then
        clear_up
    fi
    rm -rf "$scratch"
    if ((status == 0)); then
        echo "$script: $outcome"
    else
        echo "$script: failed: $step"
    fi
}
trap finish EXIT

begin() {
    step=$1
    echo "$script: $step"
}

# Runs a command and shows what it prints, but for make's progress, only when it fails.
quietly() {
    "$@" >"$scratch/output" 2>&1 && return
    grep --extended-regexp --invert-match '^\[ *[0-9]+[%/]' "$scratch/output" || true
    return 1
}

install_packages() {
    begin "looking for the compiler, libraries and tools"
    "$root/scripts/install-packages" "$@"
}
