# shellcheck shell=bash
# Sourced, not run: what this machine has in the places that our programs could reach beside their own folders.
#
#   outside_now                   prints a line for each: devices and what else is in /dev, /etc, and the folders that
#                                 the program, SSSD and slapd keep on a machine and in a user's home
#   outside_changes BEFORE AFTER  prints what differs between two such lists, a line each; nothing when nothing does

outside_now() {
    local config=${XDG_CONFIG_HOME:-$HOME/.config} state=${XDG_STATE_HOME:-$HOME/.local/state} place
    find /dev -maxdepth 1 ! -type d -printf '%p is a %y, mode %m, device %l%D\n' 2>/dev/null
    for place in /etc /var/lib/corvane /var/lib/sss /var/lib/ldap "$config/Corvane" "$state/corvane"; do
        [[ -e $place ]] || { echo "$place is missing"; continue; }
        find "$place" -xdev \( -type f -o -type l \) -printf '%p is a %y, mode %m, %s bytes, owner %U:%G, changed %T@\n' 2>/dev/null
    done
    return 0
}

outside_changes() { diff <(sort <<<"$1") <(sort <<<"$2") | sed -n 's/^< /before: /p; s/^> /after:  /p'; }
