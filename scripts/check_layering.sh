#!/bin/bash
# check_layering.sh [BUILD-DIR]: does every folder of src/ keep to the table of layers in cmake/Layers.cmake? The
# configuration stops at a forbidden link; this looks at what the sources and the built libraries really do. A
# folder inside a folder ("haldend/storage") is a layer of its own where the table names it.
#
#   1. Includes: an #include points into its own folder or one that the table allows. Folders that may not link
#      foreign libraries include nothing else but headers of the standard library.
#      So do the tests that are one layer's alone (add_layer_test).
#   2. Symbols: what the static libraries of those folders in BUILD-DIR (build/dev) import is defined in their own
#      or an allowed folder, or in the C and C++ run-time libraries. This also finds what an include can't show,
#      such as a hand-written extern declaration.
#
# Prints every violation and ends with status 1 when there is any; with status 2 when it could not check.
# --sources-only checks the includes alone.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

sources_only=0
if [[ ${1:-} == --sources-only ]]; then sources_only=1; shift; fi
build=${1:-build/dev}
LAYERS=cmake/Layers.cmake

# C++20's headers, C's among them, also under their C names (the plug-in interface is for C too).
STANDARD_HEADERS=" algorithm any array atomic barrier bit bitset cassert ccomplex cctype cerrno cfenv cfloat charconv
 chrono cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal
 cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format
 forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list
 locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex
 scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
 string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility
 valarray variant vector version
 assert.h ctype.h errno.h float.h inttypes.h limits.h locale.h math.h setjmp.h signal.h stdarg.h stdbool.h stddef.h
 stdint.h stdio.h stdlib.h string.h time.h wchar.h wctype.h "
STANDARD_HEADERS=${STANDARD_HEADERS//$'\n'/ }

declare -A allowed=()    # folder -> " folder folder ... ", what it may use besides itself
declare -A foreign=()    # folder -> 1 when it may use foreign libraries
folders=()

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

# The table is CMake's, so CMake reads it: one line "folder allowed..." for each, and one line "! foreign...".
print_layers() {
    cat >"$work/print.cmake" <<TEXT
include("$PWD/$LAYERS")
get_cmake_property(names VARIABLES)
foreach(name IN LISTS names)
    if(name MATCHES "^LAYER_EDGES_(.+)")
        string(REPLACE ";" " " edges "\${CMAKE_MATCH_1};\${\${name}}")
        message("\${edges}")
    endif()
endforeach()
string(REPLACE ";" " " foreign "\${LAYERS_WITH_FOREIGN_LIBRARIES}")
message("! \${foreign}")
TEXT
    cmake -P "$work/print.cmake" 2>&1
}

read_layers() {
    local folder rest
    [[ -f $LAYERS ]] || could_not_check "there is no $LAYERS"
    print_layers >"$work/layers" || could_not_check "cmake does not read $LAYERS: $(cat "$work/layers")"
    while read -r folder rest; do
        if [[ $folder == '!' ]]; then
            for folder in $rest; do foreign[$folder]=1; done
        else
            allowed[$folder]=" $rest "
            folders+=("$folder")
        fi
    done <"$work/layers"
    ((${#folders[@]} > 0 && ${#foreign[@]} > 0)) || could_not_check "$LAYERS names no layers"
}

# may_use FROM TO
may_use() { [[ $1 == "$2" || ${allowed[$1]} == *" $2 "* ]]; }
# layer_of PATH: the layer that a path under src/ belongs to, the innermost that the table names; else its first part.
layer_of() {
    local path=$1
    while [[ $path == */* ]]; do
        path=${path%/*}
        if [[ -n ${allowed[$path]:-} ]]; then echo "$path"; return; fi
    done
    echo "${1%%/*}"
}
is_logic() { [[ -z ${foreign[$1]:-} ]]; }

# check_include FOLDER FILE:LINE KIND NAME     KIND is the character that opens the name
check_include() {
    local folder=$1 where=$2 kind=$3 name=${4#corvane/} target
    checked_includes=$((checked_includes + 1))
    target=$(layer_of "$name")
    if [[ $name == *..* ]]; then
        violation "$where includes \"$name\": write the folder's name instead of .."
    elif [[ $name == */* && -n ${allowed[$target]:-} ]]; then
        may_use "$folder" "$target" || violation "$where: $folder may not include $name"
    elif ! is_logic "$folder"; then
        return 0
    elif [[ $kind == '<' ]]; then
        [[ $STANDARD_HEADERS == *" $name "* ]] ||
            violation "$where: $folder may include headers of the standard library only, not <$name>"
    else
        [[ -e src/$folder/$name || -e src/$name ]] || violation "$where: \"$name\" belongs to no layer"
    fi
}

# Where one folder inside a folder is a layer, each that holds sources must be.
check_rooms() {
    local path folder
    while read -r path; do
        folder=${path#src/}
        [[ -n ${allowed[$folder]:-} || " ${folders[*]} " != *" ${folder%%/*}/"* ]] ||
            violation "src/$folder is no layer: give it its place in $LAYERS"
    done < <(find src -mindepth 3 \( -name '*.h' -o -name '*.cpp' \) -printf '%h\n' | sort -u)
}

check_includes() {
    local path folder line number rest name
    local include='^[[:space:]]*#[[:space:]]*include[[:space:]]*([<"])([^>"]*)[>"]'
    for path in src/*/; do
        folder=$(basename "$path")
        [[ -n ${allowed[$folder]:-} ]] || violation "src/$folder is no layer: give it its place in $LAYERS"
    done
    check_rooms
    while IFS=: read -r path number line; do
        folder=$(layer_of "${path#src/}")
        [[ -n ${allowed[$folder]:-} ]] || continue
        if [[ $line =~ $include ]]; then
            check_include "$folder" "$path:$number" "${BASH_REMATCH[1]}" "${BASH_REMATCH[2]}"
        fi
    done < <(grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include' src || :)
    ((checked_includes > 0)) || could_not_check "no #include found under src/"
}

# A folder of tests that add_layer_test makes a program of links its layer alone; what it includes of src/ is what
# that layer may include.
check_layer_tests() {
    local list folder path number line name target
    while read -r list; do
        folder=$(basename "$(dirname "$list")")
        while IFS=: read -r path number line; do
            name=${line#*\"}; name=${name%\"*}
            target=$(layer_of "$name")
            [[ -e src/$name && -n ${allowed[$target]:-} ]] || continue
            checked_includes=$((checked_includes + 1))
            may_use "$folder" "$target" || violation "$path:$number: a test of $folder may not include $name"
        done < <(grep -nE '^#include "' /dev/null tests/"$folder"/*.cpp $(find tests/"$folder" -maxdepth 1 -name '*.h'))
    done < <(grep -lE '^add_layer_test\(' tests/*/CMakeLists.txt)
}

archive_of() {
    local name=${1//\//-}
    [[ $name != connectors ]] || name=connector-ldap # loadable modules, and this library of the large one
    find "$build" -name "libcorvane-$name.a" -print -quit
}

# What every program may import: names the C and C++ run-time libraries define. Versions (name@VERSION) cut off.
standard_symbols() {
    local compiler=${CXX:-c++} library file
    for library in libstdc++.so.6 libm.so.6 libc.so.6 libgcc_s.so.1 ld-linux-x86-64.so.2 ld-linux-aarch64.so.1; do
        file=$("$compiler" -print-file-name="$library")
        if [[ $file == /* ]]; then nm -D --defined-only --format=posix "$file"; fi
    done | sed 's/[@ ].*//'
    for library in libgcc.a libc_nonshared.a libstdc++.a; do
        file=$("$compiler" -print-file-name="$library")
        # libstdc++.a only for the little that its shared form leaves to each program
        if [[ $file == /* ]]; then nm --defined-only --format=posix "$file" 2>/dev/null | sed '/:$/d;/^$/d;s/ .*//'; fi
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
            could_not_check "src/$folder has sources but no library under $build: build it first"
        return 0
    fi
    checked_libraries=$((checked_libraries + 1))
    cp "$work/standard" "$work/importable"
    for other in "${folders[@]}"; do
        if may_use "$folder" "$other" && [[ -f $work/defined.${other//\//-} ]]; then cat "$work/defined.${other//\//-}" >>"$work/importable"; fi
    done
    sort -u -o "$work/importable" "$work/importable"
    imported_by "$archive" | sort -u | comm -23 - "$work/importable" | c++filt >"$work/forbidden"
    while read -r symbol; do
        violation "$(basename "$archive") may not import $symbol"
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
        [[ -z $archive ]] || defined_in "$archive" >"$work/defined.${folder//\//-}"
    done
    for folder in "${folders[@]}"; do
        if is_logic "$folder"; then check_library "$folder"; fi
    done
    ((checked_libraries > 0)) || could_not_check "no library of the program's logic under $build"
}

export LC_ALL=C
read_layers
check_includes
check_layer_tests
((sources_only)) || check_symbols
echo "layering: $checked_includes includes and $checked_libraries libraries checked, $violations violations"
((violations == 0))
