# shellcheck shell=bash
# Sourced after hosts.sh: a real LDAP server in a test host.
#
#   slapd_load HOST [PEOPLE]   an empty server's folder with that many generated people (5000 when not given)
#   slapd_start HOST           starts it and waits until it answers; needs slapd_load first
#   slapd_stop HOST            stops it and waits; the data stay, so slapd_start goes on with them
#   slapd_hang HOST            it keeps its connections and accepts new ones, but answers nothing
#   slapd_resume HOST          ends that
#   slapd_uri HOST             prints ldap://ADDRESS
#   slapd_search HOST FROM ARGS...   ldapsearch, anonymous, run in host FROM against HOST
#   slapd_person N             prints the login name of person N
#
# Manager: cn=admin,$SLAPD_BASE, password "lab-admin". Everyone's own password: "lab-password".

SLAPD_BASE=dc=quillstone,dc=example
SLAPD_DOMAIN=quillstone.example
SLAPD_DIR=/run/corvane-slapd    # in the host, so in memory
SLAPD_PEOPLE=5000
SLAPD_WAIT_SECONDS=20

slapd_load() {
    local host=$1 people=${2:-$SLAPD_PEOPLE} conf=$LAB_DIR/$1-slapd.conf
    sed -e "s|@DIR@|$SLAPD_DIR|g" -e "s|@BASE@|$SLAPD_BASE|g" "$LAB_SOURCE_DIR/fixtures/slapd.conf" >"$conf" &&
        host_exec "$host" rm -rf "$SLAPD_DIR" &&
        host_exec "$host" mkdir -p "$SLAPD_DIR/data" &&
        host_copy "$host" "$conf" "$SLAPD_DIR/slapd.conf" 0600 &&
        "$LAB_SOURCE_DIR/make-people" "$people" "$SLAPD_BASE" "$SLAPD_DOMAIN" |
        host_exec "$host" slapadd -q -f "$SLAPD_DIR/slapd.conf" >"$LAB_DIR/$host-slapadd.log" 2>&1 ||
        { cat "$LAB_DIR/$host-slapadd.log" >&2; lab_fail "loading $people people on $host"; }
}

slapd_start() {
    local host=$1 log=$LAB_DIR/$1-slapd.log
    host_exec "$host" slapd -f "$SLAPD_DIR/slapd.conf" -h "ldap:/// ${SLAPD_TLS:+ldaps:///}" >>"$log" 2>&1 &&
        lab_wait_for "$SLAPD_WAIT_SECONDS" slapd_answers "$host" && return
    cat "$log" >&2
    lab_fail "slapd on $host does not answer"
}

slapd_answers() { slapd_search "$1" "$1" -b "$SLAPD_BASE" -s base dn; }

slapd_pid() { host_exec "$1" cat "$SLAPD_DIR/slapd.pid"; }

slapd_signal() {
    local pid
    pid=$(slapd_pid "$1") && host_exec "$1" kill "-$2" "$pid"
}

slapd_is_gone() { ! host_exec "$1" kill -0 "$2" 2>/dev/null; }

slapd_stop() {
    local host=$1 pid
    pid=$(slapd_pid "$host") && host_exec "$host" kill -TERM "$pid" &&
        lab_wait_for "$SLAPD_WAIT_SECONDS" slapd_is_gone "$host" "$pid" || lab_fail "slapd on $host does not stop"
}

slapd_hang() { slapd_signal "$1" STOP; }
slapd_resume() { slapd_signal "$1" CONT; }

slapd_uri() { echo "ldap://$(host_address "$1")"; }

slapd_search() {
    local host=$1 from=$2
    shift 2
    host_exec "$from" ldapsearch -x -LLL -o nettimeout=5 -H "$(slapd_uri "$host")" "$@"
}

slapd_person() {
    "$LAB_SOURCE_DIR/make-people" "$1" "$SLAPD_BASE" "$SLAPD_DOMAIN" | sed -n 's/^uid: //p' | tail -n 1
}

# slapd_certify HOST [FIRST-DAY LAST-DAY]   certificate and key for the name HOST, and the authority's certificate
#     in $LAB_DIR/HOST-ca.pem; between slapd_load and slapd_start. Days like 2020-01-31; now and a week on by default.
slapd_certify() {
    local host=$1 own=$LAB_DIR/$1
    lab_certify "$@" && SLAPD_TLS=1 || return    # from now on on the port of LDAPS, too
    host_copy "$host" "$own.pem" "$SLAPD_DIR/cert.pem" && host_copy "$host" "$own.key" "$SLAPD_DIR/key.pem" 0600 &&
        host_exec "$host" sed -i '/^TLS/d' "$SLAPD_DIR/slapd.conf" &&
        host_exec "$host" sed -i "/^loglevel/a TLSCertificateFile $SLAPD_DIR/cert.pem\nTLSCertificateKeyFile $SLAPD_DIR/key.pem" \
            "$SLAPD_DIR/slapd.conf"
}

# lab_certify HOST [FIRST-DAY LAST-DAY]   makes $LAB_DIR/HOST.pem, HOST.key and HOST-ca.pem, as above
lab_certify() {
    local host=$1 first=${2:-$(date -d yesterday +%F)} last=${3:-$(date -d '+7 days' +%F)} own=$LAB_DIR/$1
    printf 'cn = Lab Authority of %s\nca\ncert_signing_key\nexpiration_days = 30\n' "$host" >"$own-ca.template"
    printf 'cn = %s\ndns_name = %s\ntls_www_server\nsigning_key\nencryption_key\nactivation_date = "%s 00:00:00"\nexpiration_date = "%s 00:00:00"\n' \
        "$host" "$host" "$first" "$last" >"$own.template"
    {
        certtool --generate-privkey --key-type ecdsa --outfile "$own-ca.key" &&
            certtool --generate-self-signed --load-privkey "$own-ca.key" --template "$own-ca.template" --outfile "$own-ca.pem" &&
            certtool --generate-privkey --key-type ecdsa --outfile "$own.key" &&
            certtool --generate-certificate --load-privkey "$own.key" --load-ca-certificate "$own-ca.pem" \
                --load-ca-privkey "$own-ca.key" --template "$own.template" --outfile "$own.pem"
    } >"$own-certtool.log" 2>&1 || { cat "$own-certtool.log" >&2; lab_fail "no certificate for $host"; }
}
