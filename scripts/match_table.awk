# Prints the table of a match. Reads first players.tsv of ./play (side, number, end, CPU seconds,
# peak kB, queued commands of each kind), then the results of the practice server. Exits with 1
# when a player did not come through or a command was refused that should not have been. With `lossy`
# set, a bad network stood between, and commands may be lost and refused in proportion; `server` is
# the CPU seconds that the practice server took, then its peak kB.

BEGIN {
    FS = "\t"
    kinds = split("kick dash turn say turn_neck catch move view", kind, " ")
    LONG_ENOUGH = 100  # cycles in which somebody must have kicked the ball
    # A bad network loses 10 % of the commands outright and up to 4 % cut or garbled. Of a command and
    # one that is late by a cycle (10 %), or is decided on a report that is late (10 %), only one
    # counts: at most 34 %. The rest is for chance.
    LEAST_LOSS = 0.05; MOST_LOSS = 0.40
    KICK = 1; DASH = 2; TURN = 3; TURN_NECK = 5
    first_kind = 6  # its column in players.tsv
}

FILENAME ~ /players\.tsv$/ {
    player = $1 SUBSEP $2
    end[player] = $3; cpu[player] = $4; peak[player] = $5
    for (k = 1; k <= kinds; k++) queued[player, k] = $(first_kind + k - 1)
    next
}

# The server sets the first word apart with a tab or a blank.
{ sub(/^[a-z]+[ \t]/, "&\t"); sub(/[ \t]\t/, "\t") }

$1 == "score"  { goals["l"] = $2; goals["r"] = $3 }
$1 == "cycles" { cycles = $2 }
$1 == "team"   { name[$2] = $3; possession[$2] = $5; shots[$2] = $6; passes[$2] = $7 }
$1 == "player" {
    player = $2 SUBSEP $3
    seen[player] = 1
    for (k = 1; k <= kinds; k++) executed[player, k] = $(3 + k)
    refused[player] = $12; lost[player] = $13; spare_neck_turns[player] = $14
    answers[$2] += $15; late[$2] += $16
}

function percent(part, whole) { return whole > 0 ? sprintf("%.1f%%", 100 * part / whole) : "-" }

function line(width,    text) {
    while (length(text) < width) text = text "-"
    print text
}

function fault(text) { faults[++fault_count] = text }

# Commands of kind k that the player queued and the server did not execute, but for the second neck
# turns of a cycle, which the rules void. A player without statistics has nothing to compare.
function lacking(player, k) {
    if (queued[player, k] == "-") return 0
    return queued[player, k] - executed[player, k] - (k == TURN_NECK ? spare_neck_turns[player] : 0)
}

function pair(player, k) { return queued[player, k] "/" (executed[player, k] + 0) }

function judge(side, number,    player, who) {
    player = side SUBSEP number
    who = name[side] " " number
    if (!(player in seen)) fault(who " never joined the match")
    if (end[player] == "early") fault(who " ended before the match did")
    else if (end[player] != "stopped") fault(who " ended with status " end[player])
    else if (lost[player]) fault("the server lost " who)
    if (refused[player] > 0 && !lossy) fault("the server refused " refused[player] " commands of " who)
}

function judge_network(    side, k, gone, of) {
    for (side in name) {
        for (k = DASH; k <= TURN; k++) { gone += missing[side, k]; of += sent[side, k] }
    }
    if (gone < LEAST_LOSS * of || gone > MOST_LOSS * of || of == 0)
        fault("of " of + 0 " dashes and turns " gone + 0 " were lost: out of proportion")
}

function print_teams(    i, side) {
    printf "%-16s %6s %11s %6s %15s %8s\n", "team", "goals", "possession", "shots", \
        "passes arrived", "in time"
    line(67)
    for (i = 1; i <= 2; i++) {
        side = substr("lr", i, 1)
        printf "%-16s %6d %10.1f%% %6d %15d %8s\n", name[side], goals[side], possession[side], \
            shots[side], passes[side], percent(answers[side] - late[side], answers[side])
    }
}

function print_players(side,    number, player, k, loss, of, total, all) {
    printf "\n%-16s  commands queued/executed\n", name[side]
    printf "%3s", ""
    for (k = 1; k <= kinds; k++) printf "%10s", kind[k]
    printf "%7s%8s%8s\n", "loss", "CPU s", "peak MB"
    line(106)
    for (number = 1; number <= 11; number++) {
        player = side SUBSEP number
        printf "%3d", number
        for (k = 1; k <= kinds; k++) {
            printf "%10s", pair(player, k)
            missing[side, k] += lacking(player, k)
            sent[side, k] += queued[player, k]
            done[k] += executed[player, k]
        }
        loss = lacking(player, DASH) + lacking(player, TURN) + lacking(player, TURN_NECK)
        of = queued[player, DASH] + queued[player, TURN] + queued[player, TURN_NECK]
        printf "%7s%8s%8s\n", percent(loss, of), cpu[player], \
            peak[player] == "-" ? "-" : sprintf("%.1f", peak[player] / 1024)
        judge(side, number)
    }
    printf "    lost: dashes %s, turns %s, turn_necks %s\n", \
        percent(missing[side, DASH], sent[side, DASH]), \
        percent(missing[side, TURN], sent[side, TURN]), \
        percent(missing[side, TURN_NECK], sent[side, TURN_NECK])
}

END {
    if (name["l"] == "") fault("the results of the server name no teams")
    printf "%s %d : %d %s after %d cycles\n\n", name["l"], goals["l"], goals["r"], name["r"], cycles
    print_teams()
    print_players("l")
    print_players("r")
    split(server, usage, " ")
    if (usage[1] > 0)
        printf "\nThe practice server took %.2f s of CPU, %.3f s for each player.\n", usage[1], usage[1] / 22
    if (lossy) judge_network()
    if (cycles >= LONG_ENOUGH && done[KICK] == 0) fault("nobody ever kicked the ball")
    for (i = 1; i <= fault_count; i++) print "FAULT: " faults[i] "."
    if (fault_count == 0)
        print "All 22 players came through, " (lossy ? "the losses are in proportion." : "no command was refused.")
    exit fault_count > 0
}
