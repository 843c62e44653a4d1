# shellcheck shell=bash
# Sourced after hosts.sh and slapd.sh: a real 389 Directory Server in a test host.
#
#   ds389_make HOST [PEOPLE]   an instance with that many generated people (20 when not given) and a certificate for
#                              the host's name, which runs; the authority's certificate is $LAB_DIR/HOST-ca.pem. It
#                              takes sign-ins over encrypted connections only.
#
# Base, people and their passwords are those of slapd.sh. Manager: $DS389_ADMIN, password "lab-admin-389".

DS389_ADMIN="cn=Directory Manager"
DS389_PASSWORD=lab-admin-389
DS389_FOLDER=/etc/dirsrv/slapd-lab
DS389_WAIT_SECONDS=40

ds389_make() {
    local host=$1 people=${2:-20}
    ds389_create "$host" && lab_certify "$host" && ds389_take_certificate "$host" && ds389_start "$host" &&
        ds389_backend | ds389_change "$host" ldapadd &&
        "$LAB_SOURCE_DIR/make-people" "$people" "$SLAPD_BASE" "$SLAPD_DOMAIN" | ds389_change "$host" ldapadd &&
        ds389_require_encryption | ds389_change "$host" ldapmodify
}

# Its last step wants systemd, which no test host has; everything before it is done by then.
ds389_create() {
    local host=$1 log=$LAB_DIR/$1-dscreate.log
    printf '%s\n' '[general]' 'config_version = 2' "full_machine_name = $host" 'strict_host_checking = False' \
        'selinux = False' 'start = False' '[slapd]' 'instance_name = lab' "root_password = $DS389_PASSWORD" \
        'self_sign_cert = False' >"$LAB_DIR/$host-ds.inf"
    host_exec "$host" mkdir -p /run/dirsrv /run/lock/dirsrv
    host_exec "$host" dscreate from-file "$LAB_DIR/$host-ds.inf" >"$log" 2>&1
    host_exec "$host" test -s "$DS389_FOLDER/dse.ldif" || { tail -n 20 "$log" >&2; lab_fail "no instance on $host"; }
}

ds389_take_certificate() {
    local host=$1 own=$LAB_DIR/$1 log=$LAB_DIR/$1-certutil.log
    openssl pkcs12 -export -in "$own.pem" -inkey "$own.key" -name Server-Cert -out "$own.p12" -passout pass:lab >"$log" 2>&1 &&
        host_exec "$host" pk12util -i "$own.p12" -d "$DS389_FOLDER" -k "$DS389_FOLDER/pwdfile.txt" -W lab >>"$log" 2>&1 &&
        host_exec "$host" sed -i -e '/^nsslapd-localuser:/a nsslapd-security: on\nnsslapd-secureport: 636' \
            -e "s/^nsslapd-rootpw:.*/nsslapd-rootpw: {CLEAR}$DS389_PASSWORD/" "$DS389_FOLDER/dse.ldif" &&
        host_exec "$host" chown -R dirsrv:dirsrv "$DS389_FOLDER" || { cat "$log" >&2; lab_fail "no certificate in $host"; }
}

ds389_start() {
    local host=$1
    host_exec "$host" ns-slapd -D "$DS389_FOLDER" >"$LAB_DIR/$host-ds.log" 2>&1 &&
        lab_wait_for "$DS389_WAIT_SECONDS" ds389_answers "$host" && return
    host_exec "$host" tail -n 20 /var/log/dirsrv/slapd-lab/errors >&2
    lab_fail "389 Directory Server on $host does not answer"
}

ds389_answers() { host_exec "$1" ldapsearch -x -LLL -o nettimeout=5 -H ldap://127.0.0.1 -b "" -s base vendorVersion; }

# ds389_change HOST ldapadd|ldapmodify <LDIF
ds389_change() {
    local host=$1 log=$LAB_DIR/$1-change.log
    host_exec "$host" "$2" -x -H ldap://127.0.0.1 -D "$DS389_ADMIN" -w "$DS389_PASSWORD" >"$log" 2>&1 ||
        { tail -n 5 "$log" >&2; lab_fail "$2 on $host"; }
}

ds389_backend() {
    printf '%s\n' 'dn: cn=userroot,cn=ldbm database,cn=plugins,cn=config' 'objectClass: top' \
        'objectClass: extensibleObject' 'objectClass: nsBackendInstance' 'cn: userroot' "nsslapd-suffix: $SLAPD_BASE" '' \
        "dn: cn=\"$SLAPD_BASE\",cn=mapping tree,cn=config" 'objectClass: top' 'objectClass: extensibleObject' \
        'objectClass: nsMappingTree' "cn: $SLAPD_BASE" 'nsslapd-state: backend' 'nsslapd-backend: userroot'
}

ds389_require_encryption() {
    printf '%s\n' 'dn: cn=config' 'changetype: modify' 'replace: nsslapd-require-secure-binds' 'nsslapd-require-secure-binds: on'
}
