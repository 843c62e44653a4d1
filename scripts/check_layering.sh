#!/bin/bash
# check_layering.sh [BUILD-DIR]: does every part of src/ keep to its floor (layers.txt beside this script)?
#
#   1. Includes: an #include points to a lower floor or into its own folder; floors 0 to 5 include nothing
#      from outside the project but standard C++ headers.
#   2. Symbols: what the static libraries of floors 0 to 5 in BUILD-DIR (build/dev) really import is defined in
#      their own or a lower floor, or in the C and C++ run-time libraries. This also finds what an include
#      can't show, such as a hand-written extern declaration.
#
# Prints every violation and ends with status 1 when there is any; with status 2 when it could not check.
# --sources-only checks the includes alone.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

sources_only=0
if [[ ${1:-} == --sources-only ]]; then sources_only=1; shift; fi
build=${1:-build/dev}
LOGIC_FLOOR=5

# C++20's headers, and those of C's that C++ keeps.
STANDARD_HEADERS=" algorithm any array atomic barrier bit bitset cassert ccomplex cctype cerrno cfenv cfloat charconv
 chrono cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal
 cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format
 forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list
 locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
 scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
 string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility
 valarray variant vector version "
STANDARD_HEADERS=${STANDARD_HEADERS//$'\n'/ }

declare -A floor_of=()
folders=()
while read -r floor folder; do
    [[ $floor == '#'* || -z $floor ]] && continue
    floor_of[$folder]=$floor
    folders+=("$folder")
done <scripts/layers.txt

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
violations=0 checked_includes=0 checked_libraries=0

violation() {
    violations=$((violations + 1))
    echo "layering: $*"
}

could_not_check() {
    echo "check_layering: $*" >&2
    exit 2
}

# may_use FROM TO: TO is the same folder or on a lower floor.
may_use() { [[ $1 == "$2" ]] || ((${floor_of[$2]} < ${floor_of[$1]})); }

# check_include FOLDER FILE:LINE KIND NAME     KIND is the character that opens the name
check_include() {
    local folder=$1 where=$2 kind=$3 name=${4#corvane/} target
    checked_includes=$((checked_includes + 1))
    target=${name%%/*}
    if [[ $name == *..* ]]; then
        violation "$where includes \"$name\": write the folder's name instead of .."
    elif [[ $name == */* && -n ${floor_of[$target]:-} ]]; then
        may_use "$folder" "$target" ||
            violation "$where: $folder (floor ${floor_of[$folder]}) may not include $name (floor ${floor_of[$target]})"
    elif ((${floor_of[$folder]} > LOGIC_FLOOR)); then
        return 0
    elif [[ $kind == '<' ]]; then
        [[ $STANDARD_HEADERS == *" $name "* ]] ||
            violation "$where: $folder may include standard C++ headers only, not <$name>"
    else
        [[ -e src/$folder/$name || -e src/$name ]] || violation "$where: \"$name\" belongs to no floor"
    fi
}

check_includes() {
    local path folder line number rest name
    local include='^[[:space:]]*#[[:space:]]*include[[:space:]]*([<"])([^>"]*)[>"]'
    for path in src/*/; do
        folder=$(basename "$path")
        [[ -n ${floor_of[$folder]:-} ]] || violation "src/$folder stands on no floor: give it one in scripts/layers.txt"
    done
    while IFS=: read -r path number line; do
        folder=${path#src/}
        folder=${folder%%/*}
        [[ -n ${floor_of[$folder]:-} ]] || continue
        if [[ $line =~ $include ]]; then
            check_include "$folder" "$path:$number" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
        fi
    done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include' src || :)
    ((checked_includes > 0)) || could_not_check "no #include found under src/"
}

# The archive of a folder, under any of the usual names: libcorvane_util.a, libcorvane-util.a, libutil.a.
archive_of() {
    find "$build" -name "lib$1.a" -o -name "libcorvane_$1.a" -o -name "libcorvane-$1.a" | sort | head -n 1
}

# What every program may import: names the C and C++ run-time libraries define. Versions (name@VERSION) cut off.
standard_symbols() {
    local compiler=${CXX:-c++} library file
    for library in libstdc++.so.6 libm.so.6 libc.so.6 libgcc_s.so.1 ld-linux-x86-64.so.2 ld-linux-aarch64.so.1; do
        file=$("$compiler" -print-file-name="$library")
        [[ $file == /* ]] && nm -D --defined-only --format=posix "$file"
    done | sed 's/[@ ].*//'
    for library in libgcc.a libc_nonshared.a libstdc++.a; do
        file=$("$compiler" -print-file-name="$library")
        # libstdc++.a only for the little that its shared form leaves to each program
        [[ $file == /* ]] && nm --defined-only --format=posix "$file" 2>/dev/null | sed '/^[^ ]*:$/d;/^$/d;s/ .*//'
    done
    printf '%s\n' _GLOBAL_OFFSET_TABLE_ __dso_handle __gmon_start__ _ITM_deregisterTMCloneTable _ITM_registerTMCloneTable
}

defined_in() { nm --defined-only --extern-only --format=posix "$1" | sed '/:$/d;/^$/d;s/ .*//'; }
imported_by() { nm --undefined-only --format=posix "$1" | sed '/:$/d;/^$/d;s/ .*//'; }

check_library() {
    local folder=$1 archive other symbol
    archive=$(archive_of "$folder")
    if [[ -z $archive ]]; then
        [[ -z $(find "src/$folder" -name '*.cpp' -print -quit 2>/dev/null) ]] ||
            could_not_check "src/$folder has sources but no library under $build: build it first (CMake target's archive lib$folder.a)"
        return 0
    fi
    checked_libraries=$((checked_libraries + 1))
    cp "$work/standard" "$work/allowed"
    for other in "${folders[@]}"; do
        if may_use "$folder" "$other" && [[ -f $work/defined.$other ]]; then cat "$work/defined.$other" >>"$work/allowed"; fi
    done
    sort -u -o "$work/allowed" "$work/allowed"
    imported_by "$archive" | sort -u | comm -23 - "$work/allowed" | c++filt >"$work/forbidden"
    while read -r symbol; do
        violation "$(basename "$archive") (floor ${floor_of[$folder]}) imports $symbol"
    done <"$work/forbidden"
}

check_symbols() {
    local folder archive
    [[ -d $build ]] || could_not_check "there is no build in $build"
    standard_symbols | sort -u >"$work/standard"
    grep -qx malloc "$work/standard" && grep -qx __cxa_throw "$work/standard" ||
        could_not_check "the run-time libraries of the compiler were not found"
    for folder in "${folders[@]}"; do
        archive=$(archive_of "$folder")
        [[ -z $archive ]] || defined_in "$archive" >"$work/defined.$folder"
    done
    for folder in "${folders[@]}"; do
        if ((${floor_of[$folder]} <= LOGIC_FLOOR)); then check_library "$folder"; fi
    done
    ((checked_libraries > 0)) || could_not_check "no library of floors 0 to $LOGIC_FLOOR under $build"
}

export LC_ALL=C
check_includes
((sources_only)) || check_symbols
echo "layering: $checked_includes includes and $checked_libraries libraries checked, $violations violations"
((violations == 0))
