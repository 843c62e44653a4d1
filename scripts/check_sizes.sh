#!/bin/bash
# Lists what has grown too long to be read at one sitting, and answers 1 when there is any:
#   a function in the program's own logic (the folders that need nothing but the standard library)  60 lines
#   a header, wherever it stands                                                                   300 lines
#   a source file                                                                                  500 lines
#   a test file                                                                                    600 lines
#
#   scripts/check_sizes.sh [FOLDER]     the project's root; this script's own project otherwise
#
# A function counts from the first line of its head to the line of its closing brace. Layout is clang-format's, so
# the body of a function ends at the first "}" at the indentation of the line that began it.
set -uo pipefail
cd "${1:-$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/..}" || exit 2

logic=(util halden toolkit platform directory formatters views plugins auth services searchpolicy app sdk)

too_long_files() {
    local limit=$1
    shift
    find "$@" -type f -print0 | while IFS= read -r -d '' file; do
        local lines
        lines=$(wc -l <"$file")
        ((lines <= limit)) || echo "$file: $lines lines, $limit at most"
    done
}

# A line that opens a function's body ends in "{" and has a ")" before it, perhaps with "const", "noexcept",
# "override", a result type or a list of initializers in between; statements begin with their own words. What is
# nested (a method in a class, a lambda) is measured by its own indentation, and what holds it by the outer one.
too_long_functions() {
    awk -v limit="$1" '
        function indentation(line) { match(line, /^ */); return RLENGTH }
        FNR == 1 { depth = 0 }
        # A head may be spread over several lines: remember where it began.
        /^ *[^ #\/]/ && !continued { head = FNR; headText = $0; headIndent = indentation($0); sub(/^ */, "", headText) }
        { continued = $0 !~ /[;{}]$/ && $0 !~ /^ *(#|\/\/|\/\*|\*|$)/ && $0 !~ /:$/ }
        /\)[^;]*\{$/ || (/\{$/ && head < FNR) {
            if (headText !~ /^(template <[^>]*> *)?(\} )?(if|for|while|switch|else|do|try|catch|namespace|typedef|struct|class|enum|union)[ ({]/) {
                ++depth; from[depth] = head; indent[depth] = headIndent; name[depth] = headText
            }
        }
        /^ *\}/ {
            while (depth > 0 && indentation($0) <= indent[depth]) {
                length_ = FNR - from[depth] + 1
                if (length_ > limit)
                    printf "%s:%d: a function of %d lines, %d at most: %s\n", FILENAME, from[depth], length_, limit, name[depth]
                --depth
            }
        }
    ' "${@:2}"
}

folders=()
for folder in "${logic[@]}"; do [[ -d src/$folder ]] && folders+=("src/$folder"); done
((${#folders[@]} > 0)) || { echo "there is no program logic under src/"; exit 2; }
mapfile -t sources < <(find "${folders[@]}" -name '*.cpp' -o -name '*.h')

found=$(
    too_long_functions 60 "${sources[@]}"
    too_long_files 300 src tests -name '*.h'
    too_long_files 500 src -name '*.cpp'
    too_long_files 600 tests -name '*.cpp'
)
if [[ -n $found ]]; then
    echo "$found"
    exit 1
fi
echo "${#sources[@]} files of program logic, every header and every test file: nothing too long"
