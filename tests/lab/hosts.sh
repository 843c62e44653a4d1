# shellcheck shell=bash
# Sourced, not run: several test hosts on this one machine.
#
#   host_create NAME          a new host; it answers on $(host_address NAME), and the other hosts know its NAME
#   host_exec NAME CMD...     runs CMD as root in the host, in the folder /; input, output and status are CMD's
#   host_exec_in NAME DIR CMD...  the same in the folder DIR
#   host_copy NAME FILE TARGET [MODE]   puts a copy of FILE into the host, root's, mode 0644 when not given
#   host_address NAME         prints the host's IPv4 address
#   host_destroy NAME         ends every process of the host; everything it changed is gone
#   lab_wait_for SECONDS CMD...   repeats CMD until it succeeds; fails after SECONDS
#   LAB_DIR                   a folder seen by all hosts of this run under the same path, for logs and inputs
#   LAB_ROOT                  the project's root folder
#
# A host is one process (host-init) in its own mount, process, network, name and IPC namespaces, with an overlay
# on /etc, /home, /root and /var and a fresh /run: what a host changes stays in memory and goes with it, and the
# machine's own files are untouched. The hosts' cables end in one more namespace, the switch, so that not even
# the machine's list of network interfaces changes. The kernel ends all of it when the sourcing shell ends, however
# it ends: each host dies with its parent (PR_SET_PDEATHSIG). So there is nothing to sweep up after a killed run
# but its folder of logs, and two runs at a time can't meet.
#
# Call these functions from the script's main shell: a host created in a subshell dies with that subshell.

LAB_SOURCE_DIR=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
LAB_ROOT=$(cd "$LAB_SOURCE_DIR/../.." && pwd)
LAB_NETWORK=10.99.0
LAB_SWITCH=.switch
LAB_START_SECONDS=20
PATH=$PATH:/usr/sbin:/sbin

declare -A LAB_HOST_NUMBER=()   # NAME -> last byte of its address
declare -A LAB_HOST_HOLDER=()   # NAME -> process id of its holder, our child
LAB_NEXT_NUMBER=1

lab_fail() {
    echo "lab: $*" >&2
    return 1
}

# The logs stay when LAB_KEEP=1, or when the caller named the folder.
lab_begin() {
    lab_sweep
    if [[ -n ${LAB_DIR:-} ]]; then
        LAB_DIR_IS_OURS=0
    else
        LAB_DIR=$(mktemp -d "/tmp/corvane-lab.$$.XXXXXX") || return 1
        LAB_DIR_IS_OURS=1
    fi
    chmod 755 "$LAB_DIR"
    LAB_STATE_DIR=$LAB_DIR/.hosts.$$
    mkdir -p "$LAB_STATE_DIR"
    trap lab_end EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    host_start "$LAB_SWITCH" && lab_switch ip link add switch0 type bridge && lab_switch ip link set switch0 up
}

lab_end() {
    local name
    for name in "${!LAB_HOST_HOLDER[@]}"; do host_destroy "$name"; done
    rm -rf "$LAB_STATE_DIR"
    if [[ $LAB_DIR_IS_OURS == 1 && ${LAB_KEEP:-} != 1 ]]; then rm -rf "$LAB_DIR"; fi
}

# Folders of runs that were killed: the number in the name is that of a process which is gone.
lab_sweep() {
    local folder pid
    for folder in /tmp/corvane-lab.*; do
        [[ -d $folder && -O $folder ]] || continue
        pid=${folder#/tmp/corvane-lab.}
        pid=${pid%%.*}
        [[ $pid =~ ^[0-9]+$ && ! -d /proc/$pid ]] && rm -rf "$folder"
    done
    return 0
}

# Starts the holder of a host's namespaces and waits until its file systems are in place.
host_start() {
    local name=$1 ready=$LAB_STATE_DIR/$1.pid log=$LAB_DIR/host-$1.log
    setpriv --pdeathsig KILL unshare --fork --kill-child=KILL --mount --pid --net --uts --ipc \
        "$LAB_SOURCE_DIR/host-init" "$name" "$ready" >"$log" 2>&1 </dev/null &
    LAB_HOST_HOLDER[$name]=$!
    disown $!
    lab_wait_for "$LAB_START_SECONDS" test -s "$ready" && return
    cat "$log" >&2
    lab_fail "host $name did not start within $LAB_START_SECONDS s; its output is above"
}

host_init_pid() {
    local pid
    pid=$(cat "$LAB_STATE_DIR/$1.pid" 2>/dev/null) && [[ -d /proc/$pid ]] && echo "$pid" && return
    lab_fail "there is no host named '$1'"
}

host_enter() {
    local pid
    pid=$(host_init_pid "$1") || return 125
    shift
    nsenter --target "$pid" --mount --pid --net --uts --ipc --root --wd "$@"
}

lab_switch() { host_enter "$LAB_SWITCH" "$@"; }

host_create() {
    local name=$1 number=$LAB_NEXT_NUMBER
    [[ $name =~ ^[a-z][a-z0-9-]{0,9}$ ]] || { lab_fail "'$name' is no host name: a-z, 0-9, -, ten at most"; return; }
    [[ -z ${LAB_HOST_HOLDER[$name]:-} ]] || { lab_fail "there is already a host named '$name'"; return; }
    host_start "$name" || return
    LAB_NEXT_NUMBER=$((number + 1))
    LAB_HOST_NUMBER[$name]=$number
    host_plug_in "$name" "$number" && lab_publish_names
}

# A cable from the host to the switch.
host_plug_in() {
    local name=$1 number=$2 pid
    pid=$(host_init_pid "$name") || return
    # The switch has its own process numbers, so the far end is named by its namespace file instead.
    lab_switch ip link add "to-$name" type veth peer name "port$number" &&
        nsenter --net="/proc/$(host_init_pid "$LAB_SWITCH")/ns/net" \
            ip link set "port$number" netns "$pid" &&
        lab_switch ip link set "to-$name" master switch0 up &&
        host_exec "$name" ip link set "port$number" name eth0 &&
        host_exec "$name" ip link set lo up &&
        host_exec "$name" ip address add "$LAB_NETWORK.$number/24" dev eth0 &&
        host_exec "$name" ip link set eth0 up
}

# Every host's /etc/hosts names all of them.
lab_publish_names() {
    local name other list=$'127.0.0.1 localhost\n'
    for other in "${!LAB_HOST_NUMBER[@]}"; do list+="$(host_address "$other") $other.lab.example $other"$'\n'; done
    for name in "${!LAB_HOST_NUMBER[@]}"; do
        printf '%s' "$list" | host_exec "$name" tee /etc/hosts >/dev/null || return
    done
}

host_address() {
    [[ -n ${LAB_HOST_NUMBER[$1]:-} ]] || { lab_fail "there is no host named '$1'"; return; }
    echo "$LAB_NETWORK.${LAB_HOST_NUMBER[$1]}"
}

host_exec() { host_enter "$1" -- "${@:2}"; }

host_exec_in() { host_enter "$1" -- /bin/sh -c 'cd "$0" && exec "$@"' "${@:2}"; }

host_copy() {
    local name=$1 file=$2 target=$3 mode=${4:-0644}
    host_exec "$name" /bin/sh -c 'umask 077 && cat > "$0" && chown 0:0 "$0" && chmod "$1" "$0"' "$target" "$mode" <"$file"
}

host_destroy() {
    local name=$1 holder=${LAB_HOST_HOLDER[$1]:-} pid
    [[ -n $holder ]] || { lab_fail "there is no host named '$name'"; return; }
    if pid=$(host_init_pid "$name" 2>/dev/null); then
        kill -KILL "$pid" 2>/dev/null    # the kernel ends every other process of the host with it
        lab_wait_for 10 lab_process_is_gone "$pid" || lab_fail "host $name does not end" || return
    fi
    kill -KILL "$holder" 2>/dev/null
    unset "LAB_HOST_HOLDER[$name]" "LAB_HOST_NUMBER[$name]"
    rm -f "$LAB_STATE_DIR/$name.pid"
}

# A dead process whose parent hasn't looked yet has ended for us.
lab_process_is_gone() {
    local state
    state=$(sed -n 's/^State:[[:space:]]*\(.\).*/\1/p' "/proc/$1/status" 2>/dev/null)
    [[ -z $state || $state == Z ]]
}

lab_wait_for() {
    local seconds=$1 deadline
    shift
    deadline=$((SECONDS + seconds + 1))
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < deadline)) || return 1
        sleep 0.05
    done
}

# What a test says. A test goes on after a failed check and ends with lab_result.
LAB_CHECKS_FAILED=0
LAB_CHECKS_DONE=0

# check "what should hold" CMD...
check() {
    local what=$1
    shift
    LAB_CHECKS_DONE=$((LAB_CHECKS_DONE + 1))
    if "$@"; then
        echo "  ok: $what"
    else
        LAB_CHECKS_FAILED=$((LAB_CHECKS_FAILED + 1))
        echo "  NOT OK: $what"
    fi
}

# check_fails "what should hold" STATUS CMD...   CMD must end with exactly that status.
check_fails() {
    local what=$1 wanted=$2 status=0
    shift 2
    LAB_CHECKS_DONE=$((LAB_CHECKS_DONE + 1))
    "$@" || status=$?
    if ((status == wanted)); then
        echo "  ok: $what"
    else
        LAB_CHECKS_FAILED=$((LAB_CHECKS_FAILED + 1))
        echo "  NOT OK: $what (status $status instead of $wanted)"
    fi
}

# The status a test ends with: a test without a single check is a failed one.
lab_result() {
    echo "  $LAB_CHECKS_DONE checks, $LAB_CHECKS_FAILED failed"
    ((LAB_CHECKS_DONE > 0 && LAB_CHECKS_FAILED == 0))
}
