# Shared by ./play, ./team, ./check and ./fuzz. Source it from a script that has set -euo pipefail.
# Needs nothing but bash, coreutils, awk and /proc.
# shellcheck shell=bash

export LC_ALL=C
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Where the two programs are; set from outside, for instance by a test, nothing is built.
PROGRAMS=${PROGRAMS:-}
# Where matches leave their files.
WORK=$ROOT
# An installed copy has no sources, but the programs nearby.
if [[ ! -f $ROOT/CMakeLists.txt ]]; then
    PROGRAMS=${PROGRAMS:-$(realpath "$ROOT/../../bin")}
    # shellcheck disable=SC2034
    WORK=$PWD
fi

readonly TEAM_SIZE=11
readonly COMMAND_KINDS=(kicks dashes turns says turn_necks catches moves change_views)

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

# ---------------------------------------------------------------- options

# whole_number OPTION VALUE LOW HIGH
whole_number() {
    if ! [[ $2 =~ ^(0|[1-9][0-9]{0,8})$ ]] || (($2 < $3 || $2 > $4)); then
        usage_error "$1 takes a whole number from $3 to $4, not '$2'"
    fi
}

# The server takes at most 15 characters, player.conf only these.
team_name() {
    [[ $2 =~ ^[A-Za-z0-9_-]{1,15}$ ]] ||
        usage_error "$1 takes 1 to 15 letters, digits, - or _, not '$2'"
}

say_id() {
    [[ $2 =~ ^[A-Za-z0-9]$ ]] || usage_error "$1 takes one letter or digit, not '$2'"
}

readable_file() { [[ -f $2 && -r $2 ]] || usage_error "$1: cannot read '$2'"; }

# ---------------------------------------------------------------- packages

has() { command -v "$1" >/dev/null; }

# Prints the Debian packages that a build lacks.
missing_build_tools() {
    has g++ || echo g++
    has cmake || echo cmake
    has make || has ninja || echo make
    [[ -f /usr/include/zlib.h ]] || echo zlib1g-dev
}

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

# ---------------------------------------------------------------- building

# Shows the percentage of the build on one line of a terminal, nothing elsewhere.
show_progress() {
    local line
    while IFS= read -r line; do
        if [[ -t 1 && $line == \[*\]* ]]; then printf '\r%s]' "${line%%]*}"; fi
    done
    if [[ -t 1 ]]; then printf '\r           \r'; fi
}

# A build folder remembers where its sources were; after a move or a copy it has to forget.
forget_moved_sources() {
    local cache=$1/CMakeCache.txt
    [[ -f $cache ]] || return 0
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$ROOT" "$cache" ||
        rm -rf "$cache" "$1/CMakeFiles"
}

# build FOLDER TARGET CMAKE_OPTION...: builds TARGET below the repository's FOLDER.
build() {
    local folder=$ROOT/$1 target=$2 started=$SECONDS
    shift 2
    forget_moved_sources "$folder"
    if [[ ! -f $folder/CMakeCache.txt ]] && ! has make; then set -- -G Ninja "$@"; fi
    mkdir -p "$folder"
    local log=$folder/build.log
    say "building into ${folder#"$ROOT"/}/"
    if ! { cmake -S "$ROOT" -B "$folder" "$@" &&
        cmake --build "$folder" --target "$target" --parallel "$(nproc)"; } 2>&1 |
        tee "$log" | show_progress; then
        grep -E -A 6 'error:|Error' "$log" >&2 | head -n 60 || tail -n 30 "$log" >&2
        fail "the build failed" "The first errors stand above, everything in $log"
    fi
    say "built in $((SECONDS - started)) s"
}

# What ./play and ./team need: the two programs, optimised, without tests.
build_programs() {
    [[ -z $PROGRAMS ]] || return 0
    PROGRAMS=$ROOT/build
    local missing
    mapfile -t missing < <(missing_build_tools)
    install_packages "to build the player" "${missing[@]}"
    build build all --preset play
}

# ---------------------------------------------------------------- processes

# True while PID is a child of this script that still runs (a number may be given away again).
# One read of the one line of stat is a snapshot; the lines of status shift while they are read.
runs() {
    local stat
    read -r stat 2>/dev/null </proc/"$1"/stat || return 1
    stat=${stat##*) }
    [[ $stat == [!Z]" $$ "* ]]
}

any_runs() {
    local pid
    for pid; do runs "$pid" && return 0; done
    return 1
}

# signal_all NAME PID...: to those that still run.
signal_all() {
    local name=$1 pid
    shift
    for pid; do
        if runs "$pid"; then kill -s "$name" "$pid" 2>/dev/null || true; fi
    done
}

# wait_for_end TENTHS PID...: true when all have ended within that time.
wait_for_end() {
    local tenths=$1
    shift
    while any_runs "$@"; do
        ((tenths-- > 0)) || return 1
        sleep 0.1
    done
}

# end_all SIGNAL PID...: politely first, then by force.
end_all() {
    local first=$1
    shift
    signal_all "$first" "$@"
    wait_for_end 30 "$@" && return 0
    signal_all TERM "$@"
    wait_for_end 10 "$@" && return 0
    signal_all KILL "$@"
    wait_for_end 10 "$@" || true
}

# Leaves the exit status of an ended child in STATUS (a subshell could not wait for it).
# shellcheck disable=SC2034
await_status() {
    STATUS=0
    wait "$1" 2>/dev/null || STATUS=$?
}

# ---------------------------------------------------------------- teams

# make_team_folder FOLDER CONF NAME PORT SAY_ID: an agent reads ./player.conf, so a team gets a
# folder with its own. The team's say mark differs from the other team's: both would otherwise
# believe each other's ball reports.
make_team_folder() {
    local folder=$1 conf=$2 name=$3 port=$4 mark=$5
    mkdir -p "$folder"
    rm -f "$folder"/player-*.out "$folder"/player-*.err
    {
        cat "$conf"
        printf '\n# Set by ./%s for this match; later lines win.\n' "${0##*/}"
        printf 'teamname   : "%s"\nserverPort : %d\nsayID      : "%s"\n' "$name" "$port" "$mark"
    } >"$folder/player.conf.new"
    mv "$folder/player.conf.new" "$folder/player.conf"
}

# start_team FOLDER HOST NAME: appends eleven process ids to the array PLAYERS. The server numbers
# the players as they come: the goalkeeper goes first to be number 1.
start_team() {
    local folder=$1 host=$2 name=$3 number
    for ((number = 1; number <= TEAM_SIZE; number++)); do
        local arguments=("$host" "$name")
        ((number > 1)) || arguments+=(-goalie)
        (cd "$folder" && exec "$PROGRAMS/agent" "${arguments[@]}") \
            >"$folder/player-$number.out" 2>"$folder/player-$number.err" </dev/null &
        PLAYERS+=($!)
        if ((number == 1)); then sleep 0.4; else sleep 0.05; fi
    done
}

# process_usage PID: seconds of CPU and peak memory in kB of a running process, blank separated.
process_usage() {
    local stat peak ticks
    ticks=$(getconf CLK_TCK)
    read -r stat 2>/dev/null </proc/"$1"/stat || { echo "- -"; return; }
    peak=$(awk '$1 == "VmHWM:" { print $2 }' "/proc/$1/status" 2>/dev/null) || peak=-
    # Past the name in parentheses, fields 12 and 13 are the ticks in user and in kernel mode.
    awk -v ticks="$ticks" -v peak="${peak:--}" \
        '{ printf "%.2f %s\n", ($12 + $13) / ticks, peak }' <<<"${stat##*) }"
}

# queued_commands FILE: the eight counts of the statistics that an agent prints on SIGINT, tab
# separated in the order of COMMAND_KINDS; "-" where it printed none.
queued_commands() {
    awk -v kinds="${COMMAND_KINDS[*]}" '
        $2 == "queued:" { queued[$1] = $3 }
        END {
            n = split(kinds, kind, " ")
            for (i = 1; i <= n; i++)
                printf "%s%s", kind[i] in queued ? queued[kind[i]] : "-", i < n ? "\t" : "\n"
        }' "$1"
}
