# shellcheck shell=bash
# Sourced, not run: which Debian packages Corvane needs, and how they get onto the machine.
#
#   ensure_packages LIST...    LIST is build, run, test or ci. Installs what is missing; does nothing, and
#                              asks nothing, where everything is there. Ends the calling script with status 3
#                              and a message that says what to type when it can't.
#
# CORVANE_SKIP_PACKAGES=1 leaves the packages to you (another distribution, a prepared image).

# To compile and link everything, unit tests included.
PACKAGES_BUILD=(
    g++ cmake ninja-build ccache pkgconf
    qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl1-mesa-dev
    libldap-dev libgnutls28-dev libsss-idmap-dev libini-config-dev libsystemd-dev libexpat1-dev
    libgtest-dev libgmock-dev
)

# To start the program: a small directory server for the sample, window-system plug-ins, SVG icons, and fonts, without which a picture has boxes instead of text.
PACKAGES_RUN=(
    slapd ldap-utils
    qt6-qpa-plugins qt6-wayland libqt6svg6
    fontconfig fonts-dejavu-core fonts-noto-core
)

# To run all tests, those on test hosts included.
PACKAGES_TEST=(
    sssd sssd-ldap sssd-tools libnss-sss libpam-sss
    samba samba-ad-provision samba-dsdb-modules samba-vfs-modules winbind 389-ds-base
    pamtester gnutls-bin
    xvfb xdotool xauth dbus iproute2 strace procps util-linux
    libbenchmark-dev
)

# What only the full check uses besides.
PACKAGES_CI=(
    git abigail-tools binutils clang libclang-rt-dev clang-format clang-tidy llvm
)

# How old the package lists may be before they are fetched again, in minutes.
PACKAGE_LISTS_MAX_AGE=1440

packages_of() {
    local list
    for list in "$@"; do
        case $list in
            build) printf '%s\n' "${PACKAGES_BUILD[@]}" ;;
            run) printf '%s\n' "${PACKAGES_RUN[@]}" ;;
            test) printf '%s\n' "${PACKAGES_TEST[@]}" ;;
            ci) printf '%s\n' "${PACKAGES_CI[@]}" ;;
            *) echo "packages.sh: there is no package list named '$list'" >&2; return 1 ;;
        esac
    done
}

packages_missing() {
    local package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || printf '%s\n' "$package"
    done
}

# packages_fail CAUSE WHAT-TO-DO
packages_fail() {
    printf '\nCannot install the packages Corvane needs: %s\n%s\n' "$1" "$2" >&2
    exit 3
}

# Runs a shell script as root. Prefers to be root already; sudo asks for a password only where it can.
as_root() {
    if ((EUID == 0)); then
        sh -c "$@"
    else
        sudo sh -c "$@"
    fi
}

package_lists_are_fresh() {
    [[ -n $(find /var/lib/apt/lists -maxdepth 1 -name '*_Packages*' -print -quit 2>/dev/null) ]] &&
        [[ -n $(find /var/lib/apt/lists -maxdepth 0 -mmin "-$PACKAGE_LISTS_MAX_AGE" 2>/dev/null) ]]
}

# The part that runs as root; $1 is "fresh" or "old" for the package lists, the rest are package names.
#
# Some of these packages start a daemon when they are installed (slapd and samba are two). Nobody asked for a
# directory server on this machine: for the time of the installation no service may start, and a service that
# wasn't there before isn't started at the next boot either. A policy that the machine already has is put back.
# shellcheck disable=SC2016
PACKAGES_INSTALL_SCRIPT='
    lists=$1; shift
    policy=/usr/sbin/policy-rc.d
    kept=
    restore() {
        rm -f "$policy"
        if [ -n "$kept" ]; then mv "$kept" "$policy"; fi
    }
    if [ -e "$policy" ] || [ -L "$policy" ]; then
        kept=$policy.before-corvane
        mv "$policy" "$kept" || exit 1
    fi
    trap restore EXIT
    trap "exit 130" INT TERM HUP
    printf "#!/bin/sh\nexit 101\n" > "$policy" && chmod 755 "$policy" || exit 1
    # Each daemon with the package that brings it.
    daemons="slapd:slapd smbd:samba nmbd:samba samba-ad-dc:samba winbind:winbind"
    is_installed() { [ "$(dpkg-query -W -f "\${db:Status-Status}" "$1" 2>/dev/null)" = installed ]; }
    new_daemons=
    for each in $daemons; do is_installed "${each#*:}" || new_daemons="$new_daemons $each"; done

    export DEBIAN_FRONTEND=noninteractive
    install() {
        apt-get install -y -q --no-install-recommends \
            -o DPkg::Lock::Timeout=300 -o Dpkg::Options::=--force-confold -o Dpkg::Options::=--force-confdef "$@"
    }
    update() { apt-get update -q -o Acquire::Retries=3; }
    if [ "$lists" = old ]; then
        update || exit 4
        install "$@" || exit 5
    elif ! install "$@"; then
        update || exit 4
        install "$@" || exit 5
    fi
    for each in $new_daemons; do
        is_installed "${each#*:}" || continue
        update-rc.d "${each%%:*}" disable >/dev/null 2>&1 || :
        if [ -d /run/systemd/system ]; then systemctl disable --quiet "${each%%:*}" >/dev/null 2>&1 || :; fi
    done
'

install_packages() {
    local lists=old log status=0
    package_lists_are_fresh && lists=fresh
    log=$(mktemp) || packages_fail "no temporary file could be made" "Free some space in ${TMPDIR:-/tmp}."
    as_root "$PACKAGES_INSTALL_SCRIPT" install-packages "$lists" "$@" >"$log" 2>&1 || status=$?
    if ((status != 0)); then
        tail -n 25 "$log" >&2
        rm -f "$log"
        local retry="Type:  apt-get update && apt-get install --no-install-recommends $*"
        case $status in
            4) packages_fail "the package lists could not be fetched (apt-get update, output above)." \
                "Check the network and /etc/apt/sources.list*, then start again. $retry" ;;
            *) packages_fail "apt-get did not succeed (status $status, output above)." \
                "Put right what it complains about, then start again. $retry" ;;
        esac
    fi
    rm -f "$log"
}

# Without a terminal sudo can't ask for a password: find out before, so that the message is ours.
check_can_install() {
    local type_this="As root, type:  apt-get update && apt-get install --no-install-recommends $*"
    ((EUID == 0)) && return
    command -v sudo >/dev/null || packages_fail "you are not root and there is no sudo here." "$type_this"
    if [[ ! -t 0 ]] && ! sudo -n true 2>/dev/null; then
        packages_fail "sudo wants a password and there is no terminal to ask for it." "$type_this"
    fi
}

ensure_packages() {
    [[ ${CORVANE_SKIP_PACKAGES:-} == 1 ]] && return
    local names wanted missing
    names=$(packages_of "$@") || exit 3
    mapfile -t wanted <<<"$names"
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        packages_fail "this machine has no apt-get; Corvane's packages are known for Debian 12 and its kin only." \
            "Install what matches these Debian packages, then start again with CORVANE_SKIP_PACKAGES=1: ${wanted[*]}"
    fi
    names=$(packages_missing "${wanted[@]}")
    [[ -z $names ]] && return
    mapfile -t missing <<<"$names"
    check_can_install "${missing[@]}"
    echo "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    install_packages "${missing[@]}"
    names=$(packages_missing "${missing[@]}")
    [[ -z $names ]] || packages_fail "these are still missing: ${names//$'\n'/ }" "Look at what apt-get says of them."
}
