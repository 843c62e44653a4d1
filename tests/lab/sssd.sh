# shellcheck shell=bash
# Sourced after hosts.sh: SSSD in a test host, and what the host's own look-ups answer.
#
#   sssd_configure HOST URI [FILE]   /etc/sssd/sssd.conf (root's, mode 0600) from FILE, a fixture by default, in
#                                    which @URI@ and @BASE@ are filled in
#   nsswitch_configure HOST [FILE]   /etc/nsswitch.conf from FILE; the default fixture looks nothing up in SSSD
#   nsswitch_with_sss FILE           prints FILE with "sss" after "files" in passwd, group and shadow
#   sssd_start HOST                  starts it and waits for its responders
#   sssd_stop HOST                   stops it, all its children included
#   sssd_restart HOST                what a configuration change needs where no systemd runs
#   sssd_forget HOST                 drops every cached answer
#   host_finds_user HOST USER        does getent passwd know USER? answers that within a moment
#   host_finds_group HOST GROUP
#   sssd_wait_for_user HOST USER     waits until it does
#   sssd_wait_for_no_user HOST USER  waits until it doesn't

SSSD_WAIT_SECONDS=30
SSSD_DOMAIN=quillstone.example    # the [domain/...] section of the fixture

sssd_configure() {
    local host=$1 uri=$2 source=${3:-$LAB_SOURCE_DIR/fixtures/sssd.conf} filled=$LAB_DIR/$1-sssd.conf
    sed -e "s|@URI@|$uri|g" -e "s|@BASE@|$SLAPD_BASE|g" "$source" >"$filled" &&
        host_exec "$host" mkdir -p /etc/sssd &&
        host_copy "$host" "$filled" /etc/sssd/sssd.conf 0600
}

nsswitch_configure() { host_copy "$1" "${2:-$LAB_SOURCE_DIR/fixtures/nsswitch.conf}" /etc/nsswitch.conf; }

nsswitch_with_sss() { sed -E '/^(passwd|group|shadow):/s/\bfiles\b/files sss/' "$1"; }

sssd_start() {
    local host=$1
    host_exec "$host" sh -c 'mkdir -p /var/log/sssd && exec sssd -D --logger=files' >>"$LAB_DIR/$host-sssd.log" 2>&1 &&
        lab_wait_for "$SSSD_WAIT_SECONDS" host_exec "$host" test -S /var/lib/sss/pipes/nss && return
    sssd_show_logs "$host" >&2
    lab_fail "sssd on $host does not start"
}

sssd_show_logs() {
    cat "$LAB_DIR/$1-sssd.log"
    host_exec "$1" sh -c 'tail -n 20 /var/log/sssd/*.log'
}

sssd_is_gone() { ! host_exec "$1" pgrep -f '^(/usr/libexec/sssd/|/usr/sbin/sssd|sssd )' >/dev/null; }

sssd_stop() {
    local host=$1
    host_exec "$host" sh -c 'kill -TERM "$(cat /run/sssd.pid)"' &&
        lab_wait_for "$SSSD_WAIT_SECONDS" sssd_is_gone "$host" || { lab_fail "sssd on $host does not stop"; return; }
    host_exec "$host" rm -f /var/lib/sss/pipes/nss
}

sssd_restart() { sssd_stop "$1" && sssd_start "$1"; }

sssd_forget() { host_exec "$1" sss_cache -E; }

host_finds_user() { host_exec "$1" getent passwd "$2" >/dev/null; }
host_finds_group() { host_exec "$1" getent group "$2" >/dev/null; }
host_finds_no_user() { ! host_finds_user "$@"; }

sssd_wait_for_user() {
    lab_wait_for "$SSSD_WAIT_SECONDS" host_finds_user "$1" "$2" && return
    sssd_show_logs "$1" >&2
    lab_fail "$1 does not find the user $2 within $SSSD_WAIT_SECONDS s"
}

sssd_wait_for_no_user() {
    lab_wait_for "$SSSD_WAIT_SECONDS" host_finds_no_user "$1" "$2" ||
        lab_fail "$1 still finds the user $2 after $SSSD_WAIT_SECONDS s"
}
