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

# Sets python to one with the packages of the module's tests: a virtual environment at the pinned versions, or
# else Debian's own, which has fewer.
prepare_python() {
    local requirements=$root/python/requirements.txt environment=$1
    python=$environment/bin/python
    if cmp --quiet "$requirements" "$environment/requirements.txt"; then
        return
    fi
    install_packages python3-venv
    begin "installing the packages of $requirements in $environment"
    if python3 -m venv --clear "$environment" && "$python" -m pip install --quiet --disable-pip-version-check \
        --require-hashes --only-binary=:all: --requirement "$requirements" >"$scratch/output" 2>&1; then
        cp "$requirements" "$environment"
        return
    fi
    tail --lines=2 "$scratch/output"
    install_packages python3-numpy python3-pandas python3-matplotlib python3-pytest python3-hypothesis
    python=/usr/bin/python3
    echo "$script: the Python package index cannot be used: the tests of the Python module run with Debian's packages;" \
        "left out is what needs pyarrow, dask, duckdb, mypy, ruff and auditwheel"
}
