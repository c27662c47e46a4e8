# Shared by the scripts at the top of the repository. Source it from one that has set
# -euo pipefail. Needs nothing but bash, coreutils and awk.
# shellcheck shell=bash

export LC_ALL=C.UTF-8
ROOT=$(cd "$(dirname "$(realpath "${BASH_SOURCE[0]}")")/.." && pwd)

# ---------------------------------------------------------------- words

say() { printf '%s: %s\n' "${0##*/}" "$*"; }

# fail WHAT [WHAT TO DO NEXT]
fail() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    if (($# > 1)); then printf '  %s\n' "$2" >&2; fi
    exit 1
}

usage_error() { fail "$1" "Try $0 --help"; }

# The comment block at the head of the script is its help.
show_help() {
    awk -v name="${0##*/}" 'NR > 1 {
        if (!/^#/) exit
        sub(/^# ?/, ""); sub(/^usage: [^ ]*/, "usage: " name); print
    }' "$0"
}

# ---------------------------------------------------------------- packages

has() { command -v "$1" >/dev/null; }

# install_packages WHY PACKAGE...: does nothing when no package is named; asks nothing.
install_packages() {
    local why=$1 as_root=()
    shift
    (($#)) || return 0
    has apt-get || fail "$* needed $why, and there is no apt-get here" \
        "Install them with this system's package manager and start again."
    if ((EUID != 0)); then
        # sudo may ask for a password where there is somebody to ask.
        if ! has sudo || ! { [[ -t 0 ]] || sudo -n true 2>/dev/null; }; then
            fail "$* needed $why" \
                "Run 'apt-get install --no-install-recommends $*' as root and start again."
        fi
        as_root=(sudo)
    fi
    say "installing $* ($why)"
    as_root+=(env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120)
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" update && "${as_root[@]}" install -y \
        --no-install-recommends "$@"; } >"$log" 2>&1 </dev/null; then
        tail -n 20 "$log" >&2
        rm -f "$log"
        fail "apt-get could not install $*" "Look at its words above; is there a network?"
    fi
    rm -f "$log"
}

# ---------------------------------------------------------------- Python

# find_python: leaves in PYTHON an interpreter that is new enough and has what we need. The first
# on the PATH may be one that knows nothing of Debian's packages.
find_python() {
    for PYTHON in python3 /usr/bin/python3; do
        "$PYTHON" -c 'import rich, sys; sys.exit(sys.version_info < (3, 11))' 2>/dev/null && return
    done
    return 1
}

# start_matches COMMAND ARGUMENT...: becomes a command of the package in matches/.
start_matches() {
    find_python || { install_packages "to run matches" python3 python3-rich && find_python; } ||
        fail "there is no Python 3.11 or newer with the library rich" "Install python3-rich."
    LAUNCHER=${LAUNCHER:-$0} PYTHONPATH=$ROOT exec "$PYTHON" -P -m matches "$@"
}

# build FOLDER TARGET CMAKE_OPTION...: builds below the repository's FOLDER.
build() { (start_matches build "${0##*/}" "$@"); }

# ---------------------------------------------------------------- experiments

# start_experiment COMMAND ARGUMENT...: the same for a command that computes and plays many matches.
start_experiment() {
    local libraries=numpy,scipy,pandas,matplotlib
    local packages=(parallel python3 python3-{rich,numpy,scipy,pandas,matplotlib})
    if [[ $1 == tune ]]; then
        libraries+=,optuna
        packages+=(python3-optuna)
    fi
    can_run_experiments "$libraries" ||
        { install_packages "to run experiments" "${packages[@]}" && can_run_experiments "$libraries"; } ||
        fail "there is no Python 3.11 or newer with $libraries"
    LAUNCHER=${LAUNCHER:-$0} PYTHONPATH=$ROOT exec "$PYTHON" -P -m matches "$@"
}

# can_run_experiments LIBRARIES: leaves the interpreter in PYTHON. To look for a library is quicker
# than to load it.
can_run_experiments() {
    has parallel || return
    for PYTHON in python3 /usr/bin/python3; do
        "$PYTHON" -c "import sys; from importlib.util import find_spec
sys.exit(sys.version_info < (3, 11) or not all(map(find_spec, '$1,rich'.split(','))))" \
            2>/dev/null && return
    done
    return 1
}
