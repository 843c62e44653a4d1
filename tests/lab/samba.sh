# shellcheck shell=bash
# Sourced after hosts.sh and slapd.sh: a real Samba domain controller in a test host.
#
#   samba_provision HOST       a new domain on HOST, with a certificate for its name; the authority's certificate is
#                              $LAB_DIR/HOST-ca.pem
#   samba_start HOST           starts it and waits until it answers over LDAP
#   samba_add_user HOST NAME [NUMBER]   a user with the password "Lab-Passw0rd", whose numbers the directory stores
#                              when NUMBER is given (his group's is $SAMBA_GROUP_NUMBER)
#   samba_add_group HOST NAME NUMBER
#
# Manager: $SAMBA_ADMIN, password "Lab-Passw0rd".

SAMBA_REALM=CORP.MERROWBY.EXAMPLE
SAMBA_BASE=DC=corp,DC=merrowby,DC=example
SAMBA_ADMIN=CN=Administrator,CN=Users,$SAMBA_BASE
SAMBA_PASSWORD=Lab-Passw0rd
SAMBA_GROUP_NUMBER=70000
SAMBA_DIR=/run/corvane-samba    # in the host, so in memory
SAMBA_WAIT_SECONDS=40

samba_provision() {
    local host=$1 log=$LAB_DIR/$1-provision.log
    host_exec "$host" rm -f /etc/samba/smb.conf    # samba-tool refuses to make a domain where one is configured
    host_exec "$host" mkdir -p /etc/samba /run/samba "$SAMBA_DIR" &&
        host_exec "$host" samba-tool domain provision --realm="$SAMBA_REALM" --domain=CORP --server-role=dc \
            --dns-backend=NONE --adminpass="$SAMBA_PASSWORD" --use-rfc2307 --targetdir="$SAMBA_DIR" \
            --host-name="$host" --host-ip="$(host_address "$host")" >"$log" 2>&1 ||
        { tail -n 20 "$log" >&2; lab_fail "no domain on $host"; return; }
    lab_certify "$host" && host_copy "$host" "$LAB_DIR/$host.pem" "$SAMBA_DIR/cert.pem" &&
        host_copy "$host" "$LAB_DIR/$host.key" "$SAMBA_DIR/key.pem" 0600 &&
        host_copy "$host" "$LAB_DIR/$host-ca.pem" "$SAMBA_DIR/ca.pem" &&
        host_exec "$host" sed -i "/^\[global\]/a tls certfile = $SAMBA_DIR/cert.pem\ntls keyfile = $SAMBA_DIR/key.pem\ntls cafile = $SAMBA_DIR/ca.pem\nserver services = ldap, rpc, kdc, winbindd" \
            "$SAMBA_DIR/etc/smb.conf"
}

samba_start() {
    local host=$1 log=$LAB_DIR/$1-samba.log
    host_exec "$host" samba -s "$SAMBA_DIR/etc/smb.conf" -F -M single --no-process-group --debug-stdout \
        >"$log" 2>&1 </dev/null &
    disown $!
    lab_wait_for "$SAMBA_WAIT_SECONDS" samba_answers "$host" && return
    tail -n 20 "$log" >&2
    lab_fail "samba on $host does not answer"
}

samba_answers() { host_exec "$1" ldapsearch -x -LLL -o nettimeout=5 -H ldap://127.0.0.1 -b "" -s base defaultNamingContext; }

samba_tool() { host_exec "$1" samba-tool "${@:2}" -s "$SAMBA_DIR/etc/smb.conf" >>"$LAB_DIR/$1-tool.log" 2>&1 || { tail -n 5 "$LAB_DIR/$1-tool.log" >&2; false; }; }

samba_add_user() {
    local host=$1 name=$2 number=${3:-}
    if [[ -n $number ]]; then
        samba_tool "$host" user create "$name" "$SAMBA_PASSWORD" --uid-number="$number" --gid-number="$SAMBA_GROUP_NUMBER" \
            --unix-home="/home/$name" --login-shell=/bin/bash
    else
        samba_tool "$host" user create "$name" "$SAMBA_PASSWORD"
    fi
}

samba_add_group() { samba_tool "$1" group add "$2" --gid-number="$3" --nis-domain=corp; }
