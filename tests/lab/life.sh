# shellcheck shell=bash
# Sourced after hosts.sh, slapd.sh and sssd.sh: the whole life of a server in the window of the host "desk".
#
#   life_begin [AUTHORITY-OF]   the host desk, which knows no directory; the authority of that host's server is there
#                               as /etc/ssl/lab-ca.pem
#   life_of_server NAME         added, tested, saved, put on the policy, users found and logged in, deleted. Taken from:
#       LIFE_FIELDS=(STEP...)   steps for corvane-gui-steps that fill in the new server's fields
#       LIFE_USER LIFE_GROUP LIFE_PASSWORD   who is looked up and logs in
#       LIFE_HOME               HOME:SHELL that the user gets, "" where the directory's own count
#       LIFE_NUMBER             what the test says before the user's number, such as "alice, number"
#   work_window STEP...         corvane-gui-steps in desk; what it prints is in $LAB_DIR/window.log
#   says TEXT                   did it print that?

LIFE_LDAP=(lock services row=selectPlugIn:2 click=configPlugIn)

same() { [[ $1 == "$2" ]] || { echo "    '$1' instead of '$2'"; false; }; }
work_window() {
    host_exec desk env -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=/run/user/0 HOME=/root \
        timeout 120 xvfb-run -a "$CORVANE_BUILD_DIR/bin/corvane-gui-steps" --machine / "$@" \
        >"$LAB_DIR/window.log" 2>&1 || { sed 's/^/    /' "$LAB_DIR/window.log"; return 1; }
    sed -i 's/\xe2\x80\x8b//g' "$LAB_DIR/window.log"    # places at which long words may be broken
}
says() { grep -qF -- "$1" "$LAB_DIR/window.log" || { sed 's/^/    /' "$LAB_DIR/window.log"; false; }; }
says_not() { ! grep -qF -- "$1" "$LAB_DIR/window.log"; }
option() { host_exec desk sed -n "s/^$1 *= *//p" /etc/sssd/sssd.conf; }
logs_in() { host_exec desk sh -c "printf '%s\n' '$2' | pamtester corvane-lab '$1' authenticate acct_mgmt" >"$LAB_DIR/pam.log" 2>&1; }
number_of() { host_exec desk getent passwd "$1" | cut -d: -f3; }
# Every file and folder of /etc with its contents, owner and mode.
etc_of_desk() {
    host_exec desk sh -c 'cd /etc && find . -printf "%p %y %m %U %G %l\n" | sort && find . -type f -exec sha256sum {} + | sort -k2'
}

life_begin() {
    host_create desk && nsswitch_configure desk && host_copy desk "$LAB_DIR/$1-ca.pem" /etc/ssl/lab-ca.pem &&
        printf '@include common-auth\n@include common-account\n' >"$LAB_DIR/pam" &&
        host_copy desk "$LAB_DIR/pam" /etc/pam.d/corvane-lab && etc_of_desk >"$LAB_DIR/etc.before"
}

life_of_server() {
    local name=$1 number
    check "$name: added, tested, saved" work_window "${LIFE_LDAP[@]}" click=addServer "${LIFE_FIELDS[@]}" click=test \
        "type=testUser:$LIFE_USER" "type=testGroup:$LIFE_GROUP" wait=1200 "answer=Test Again" wait=1800 text \
        answer=Close click=serverOk rows=servers click=serversDone apply
    check "$name: the test says that the server works" says "The server works."
    number=$(sed -n "s/.*$LIFE_NUMBER \([0-9]*\), group.*/\1/p" "$LAB_DIR/window.log" | tail -n 1)
    check "$name: and which number the user has: $number" test -n "$number"
    [[ -z ${LIFE_HOME:-} ]] ||
        check "$name: and which home and shell" says "home ${LIFE_HOME%:*}, shell ${LIFE_HOME#*:}"
    check "$name: put on the policy" work_window lock search mode=Automatic rows=selectNode apply
    check "$name: getent finds the user" sssd_wait_for_user desk "$LIFE_USER"
    check "$name: with that number" same "$number" "$(number_of "$LIFE_USER")"
    [[ -z ${LIFE_HOME:-} ]] || check "$name: with that home and shell" same "$LIFE_HOME" \
        "$(host_exec desk getent passwd "$LIFE_USER" | cut -d: -f6,7)"
    check "$name: getent finds the group" host_finds_group desk "$LIFE_GROUP"
    check "$name: the user logs in" logs_in "$LIFE_USER" "$LIFE_PASSWORD"
    check_fails "$name: not with a wrong password" 1 logs_in "$LIFE_USER" wrong-password
    check "$name: deleted after a question, the policy set to Local" work_window "${LIFE_LDAP[@]}" row=servers:0 \
        click=deleteServer wait=600 click=reallyDelete rows=servers click=serversDone apply wait=300 search mode=Local apply
    check "$name: getent no longer knows the user" sssd_wait_for_no_user desk "$LIFE_USER"
    check_fails "$name: nobody logs in" 1 logs_in "$LIFE_USER" "$LIFE_PASSWORD"
    check "$name: /etc is as before, byte for byte" diff "$LAB_DIR/etc.before" <(etc_of_desk)
}
