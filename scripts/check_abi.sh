#!/bin/bash
# check_abi.sh: are the tables of the plug-in boundary still laid out as plug-ins that exist expect them?
#
#   scripts/check_abi.sh            compares src/sdk with the recorded dump, tests/sdk/abi/version-N.abi
#   scripts/check_abi.sh --record   the same, then records what was added since
#
# An entry may be added at the end of a table, and a kind of object to CorvaneKind. Everything else that differs is
# printed: a module that was built before would call the wrong entry. Ends with status 1 then; with status 2 when it
# could not check. CORVANE_SDK_HEADERS names a folder with a folder sdk of other headers to compare.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

headers=${CORVANE_SDK_HEADERS:-src}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

could_not_check() {
    echo "check_abi: $*" >&2
    exit 2
}

for tool in abidw abidiff; do
    command -v "$tool" >/dev/null || could_not_check "there is no $tool here; the package is abigail-tools"
done
version=$(sed -n 's/^#define CORVANE_PLUGIN_VERSION \([0-9]*\)$/\1/p' "$headers/sdk/PluginTable.h")
[[ -n $version ]] || could_not_check "$headers/sdk/PluginTable.h has no CORVANE_PLUGIN_VERSION"
recorded=tests/sdk/abi/version-$version.abi

"${CC:-gcc}" -std=c11 -g -shared -fPIC -I"$headers" tests/sdk/abi/tables.c -o "$work/tables.so" ||
    could_not_check "the headers don't compile"
record() {
    abidw --no-corpus-path --no-show-locs --no-comp-dir-path "$work/tables.so" >"$recorded" ||
        could_not_check "$recorded can't be written"
    echo "abi: recorded $recorded"
}
if [[ ! -f $recorded ]]; then
    [[ ${1:-} == --record ]] || could_not_check "there is no $recorded; --record makes it"
    record
    exit 0
fi

# 0: the same. 4: differs. Everything else: the tools didn't work.
status=0
abidiff --leaf-changes-only "$recorded" "$work/tables.so" >"$work/report" || status=$?
((status == 0 || (status & 3) == 0)) || could_not_check "abidiff ended with status $status: $(<"$work/report")"
awk '
    NR <= 4 && /summary: / {
        if ($0 ~ /^Removed/ && $0 !~ /: 0 Removed, 0 Changed, /) violations[++count] = $0
        next
    }
    /^$/ { next }
    /^.(struct|enum) Corvane[A-Za-z]+.( at [^ ]+)? changed:$/ { what = $0; before = 0; next }
    /^  type size hasn.t changed$/ { next }
    /^  type size changed from [0-9]+ to [0-9]+ \(in bits\)$/ { before = $5; next }
    /^  [0-9]+ data member insertions?:$/ { next }
    /^  [0-9]+ enumerator insertions?:$/ { next }
    /^    .CorvaneKind::CORVANE_[A-Z]+. value .[0-9]+./ { next }
    /^    .*, at offset [0-9]+ \(in bits\)/ {
        offset = $0
        sub(/.*, at offset /, "", offset)
        if (before > 0 && offset + 0 >= before) next
    }
    { violations[++count] = what $0 }
    END {
        for (i = 1; i <= count; ++i) print "abi: " violations[i]
        exit count > 0
    }' "$work/report" || {
    echo "abi: a plug-in of version $version would no longer fit; add entries at the end of a table, and there only"
    exit 1
}
if ((status == 0)); then
    echo "abi: the tables of version $version are as recorded"
else
    echo "abi: the tables of version $version have grown at their ends since they were recorded"
    [[ ${1:-} != --record ]] || record
fi
