# shellcheck shell=bash
# Sourced by what runs the tool on the simulated boat, inside a boat network. Logs go to the caller's $folder; the
# caller's fail MESSAGE tells the user and exits. All that was started ends with the script.

# shellcheck disable=SC2154 # The caller's.
readonly simulator_log=$folder/boatsim.log tool_log=$folder/tool.log
readonly boat=(--screens 3 --screen2s 2 --einks 1)
# What the tool logs of that boat: pattern and number.
readonly -A expected=(["udpHB: N6 IP"]=1 ["udpHB: Gyro IP"]=1 ["udpHB: Screen IP"]=5 ["udpHB: E-Ink IP"]=1
    ["udpHB: Server changed:"]=1)
readonly start_seconds=30 find_seconds=40

# Standard error follows the tool's log even where a journal is at hand, and has its debug lines.
export QT_FORCE_STDERR_LOGGING=1 QT_LOGGING_RULES="default.debug=true"

children=()
stop_children() {
    local child
    for child in "${children[@]}"; do
        kill "$child" 2>/dev/null || true
    done
    wait
}
trap stop_children EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# wait_for SECONDS COMMAND...: until the command succeeds, or fails when the time is over.
wait_for() {
    local deadline=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < deadline)) || return 1
        sleep 0.2
    done
}

is_running() {
    kill -0 "$1" 2>/dev/null
}

simulator_ready_or_gone() {
    grep -q "boat ready" "$simulator_log" || ! is_running "$simulator"
}

start_simulator() {
    echo "==> Starting the boat"
    # Nothing of an earlier run may be taken for this one's.
    truncate --size 0 "$tool_log" "$simulator_log"
    simulator/boatsim "${boat[@]}" >"$simulator_log" 2>&1 &
    simulator=$!
    children+=("$simulator")
    wait_for "$start_seconds" simulator_ready_or_gone || fail "the simulator does not get ready"
    grep -q "boat ready" "$simulator_log" || fail "the simulator ended: $(tail -n 1 "$simulator_log")"
    if grep -q "ftp-unavailable" "$simulator_log"; then
        echo "Without the right to use port 21 here, the devices have no FTP: updates and backups will fail."
    fi
}

start_display() {
    echo "==> Starting an off-screen display"
    # In a network of its own the server does not see which displays this machine already has, and would replace the
    # socket file of one of them; TCP ports, on the other hand, are that network's own. But not the files that keyboards
    # are read from, which are named by the display.
    # And when the last program ends, what it has left on the display stays, such as where to find what is accessible.
    local number host="" options=(-noreset -nolisten tcp)
    if [[ ${KELVORA_BOAT_NETWORK:-} == namespace ]]; then
        host=127.0.0.1 options=(":$(($$ % 50000))" -noreset -listen tcp -nolisten unix -nolisten local)
    fi
    # A pipe without a name, through which Xvfb tells the number that it chose.
    exec {display_pipe}<> <(:)
    Xvfb "${options[@]}" -displayfd "$display_pipe" -screen 0 1280x800x24 >"$folder/xvfb.log" 2>&1 &
    children+=("$!")
    read -r -t "$start_seconds" number <&"$display_pipe" || fail "Xvfb does not start: $(tail -n 1 "$folder/xvfb.log")"
    export DISPLAY=$host:$number QT_QPA_PLATFORM=xcb
}

# start_tool COMMAND...: starts the tool and returns when it has found the whole boat, or has ended.
start_tool() {
    "$@" >"$tool_log" 2>&1 &
    tool_process=$!
    children+=("$tool_process")
    wait_for "$find_seconds" all_found || fail "not everything was found ($(missing_devices | paste -sd ';'))"
}

all_found() {
    local line
    is_running "$tool_process" || return 0
    for line in "${!expected[@]}"; do
        (($(grep -c "$line" "$tool_log") >= ${expected[$line]})) || return 1
    done
}

missing_devices() {
    local line
    for line in "${!expected[@]}"; do
        echo "$line: $(grep -c "$line" "$tool_log") of ${expected[$line]}"
    done
}
