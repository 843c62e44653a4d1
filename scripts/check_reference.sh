#!/bin/bash
# check_reference.sh: does docs/plug-ins/reference say what the headers in src/sdk say?
#
#   1. Every entry of each table has a section on the table's page, in the table's order, and every section an entry.
#   2. A section's C signature is the header's, word for word, and its C++ signature stands in a header.
#   3. Every section has an example, and the examples compile.
#   4. Every request about LDAP servers has a section with its number, and every key and word of them is explained.
#
# Prints every violation and ends with status 1 when there is any; with status 2 when it could not check.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

HEADERS=src/sdk
PAGES=docs/plug-ins/reference
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
violations=0 checked=0

violation() {
    violations=$((violations + 1))
    echo "reference: $*"
}

could_not_check() {
    echo "check_reference: $*" >&2
    exit 2
}

# On one line, with single spaces, none inside brackets, and without what documents leave out.
normal() { tr '\n' ' ' | sed -E 's/\[\[nodiscard\]\]|static //g; s/ +/ /g; s/\( /(/g; s/^ | $//g'; }

# entries_of HEADER TABLE    one line for each function: NAME<tab>SIGNATURE
entries_of() {
    sed -n "/^typedef struct $2 {/,/^} $2;/p" "$HEADERS/$1" | sed '1d;$d' | tr '\n' ' ' |
        sed -E 's:/\*([^*]|\*+[^*/])*\*+/::g' | tr ';' '\n' | sed -E 's/ +/ /g; s/^ //' |
        sed -nE 's/^(.*\(\*([A-Za-z0-9_]+)\)\(.*\))$/\2\t\1;/p'
}

sections_of() { sed -nE 's/^### `([A-Za-z0-9_]+)`.*$/\1/p' "$1"; }
# block_of PAGE SECTION FIRST-LINE    what stands in the section's first block that begins so
block_of() {
    awk -v section="### \`$2\`" -v opening="$3" '
        /^##/ { inside = index($0, section) == 1 }
        inside && $0 == opening { reading = 1; next }
        reading && $0 == "```" { exit }
        reading { print }' "$1"
}

check_order() {
    local page=$1
    diff <(cut -f 1 "$work/entries") <(sections_of "$page") >"$work/diff" && return 0
    while read -r sign name; do
        [[ $sign != '<' ]] || violation "$page has no section \"$name\" in its place"
        [[ $sign != '>' ]] || violation "$page has a section \"$name\" that no entry stands for, or in the wrong place"
    done < <(grep '^[<>]' "$work/diff")
}

check_section() {
    local page=$1 name=$2 signature=$3 shown
    checked=$((checked + 1))
    shown=$(block_of "$page" "$name" '```c signature' | normal)
    [[ $shown == "$(normal <<<"$signature")" ]] || violation "$page, $name: the C signature isn't the header's: $signature"
    shown=$(block_of "$page" "$name" '```cpp signature' | normal)
    [[ -z $shown || $cpp_headers == *"$shown"* ]] || violation "$page, $name: no header has \"$shown\""
    [[ -n $(block_of "$page" "$name" '```cpp') ]] || violation "$page, $name has no example"
}

# check_table HEADER TABLE PAGE
check_table() {
    local page=$PAGES/$3 name signature
    [[ -f $page ]] || could_not_check "there is no $page"
    entries_of "$1" "$2" >"$work/entries"
    [[ -s $work/entries ]] || could_not_check "$HEADERS/$1 has no table $2"
    check_order "$page"
    while IFS=$'\t' read -r name signature; do
        ! grep -q "^### \`$name\`" "$page" || check_section "$page" "$name" "$signature"
    done <"$work/entries"
}

# What examples may take for granted: a host, and one of each object.
print_prelude() {
    cat <<'TEXT'
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include "sdk/Background.h"
#include "sdk/Form.h"
#include "sdk/Host.h"
#include "sdk/LdapServerCalls.h"
#include "sdk/PluginWrapper.h"
#include "sdk/SettingsDictionary.h"
using corvane::sdk::Object;
struct MyTool { bool isAuthorized; std::array<uint8_t, 32> form; };
void takeAuthorization(void* self, CorvaneObject* authorization);
void takeForm(void* self, const uint8_t form[32]);
TEXT
}
GIVEN='corvane::sdk::Host host, Object session, Object node, Object object, Object array, Object dictionary, '
GIVEN+='Object formatter, Object reply, corvane::sdk::AuthorizationForm& form, MyTool self, '
GIVEN+='const corvane::sdk::Form& window'

# print_example PAGE NUMBER    wraps the example that it reads
print_example() {
    echo "namespace example$2 {"
    case $1 in
        plugin.md)
            echo 'class Example { corvane::sdk::Host host_; std::optional<bool> wanted_; std::unique_ptr<int> window_; public:'
            cat
            echo '}; const auto* table = corvane::sdk::tableFor<Example>();'
            ;;
        action.md) cat ;;
        *)
            echo "void example($GIVEN) { {"
            cat
            echo '} }'
            ;;
    esac
    echo "}"
}

check_examples() {
    local page name number=0
    print_prelude >"$work/examples.cpp"
    for page in "$PAGES"/*.md; do
        while read -r name; do
            number=$((number + 1))
            echo "#line 1 \"$(basename "$page"):$name\"" >>"$work/examples.cpp"
            block_of "$page" "$name" '```cpp' | print_example "$(basename "$page")" "$number" >>"$work/examples.cpp"
        done < <(sections_of "$page")
    done
    ((number > 0)) || could_not_check "no page has a section"
    "${CXX:-c++}" -std=c++20 -w -fsyntax-only -Isrc "$work/examples.cpp" 2>"$work/errors" && return 0
    grep -E 'error' "$work/errors" | while read -r name; do echo "reference: $name"; done
    violation "examples don't compile"
}

check_requests() {
    local page=$PAGES/ldap-servers.md header=$HEADERS/LdapServerCalls.h name number word
    [[ -f $page ]] || could_not_check "there is no $page"
    while read -r name word; do
        echo "$name $(sed -nE "s/^#define $word ([0-9]+)$/\1/p" "$header")"
    done < <(sed -nE 's/^inline constexpr std::int32_t ([A-Za-z]+) = ([A-Z_]+);.*/\1 \2/p' "$header") >"$work/requests"
    [[ -s $work/requests ]] || could_not_check "$header has no request"
    diff "$work/requests" <(sed -nE 's/^### `([A-Za-z]+)` \(([0-9]+)\)$/\1 \2/p' "$page") >"$work/diff" ||
        while read -r _ name number; do violation "$page: section and request differ: $name $number"; done \
            < <(grep '^[<>]' "$work/diff")
    while read -r word; do
        checked=$((checked + 1))
        grep -qF "\`$word\`" "$page" || violation "$page doesn't explain \`$word\`"
    done < <(sed -nE 's/^#define [A-Z0-9_]+ "([^"]+)"$/\1/p' "$header")
}

export LC_ALL=C.UTF-8
cpp_headers=$(cat "$HEADERS"/{Host,Object,PluginWrapper,PluginMethods,Form,Background,SettingsDictionary}.h | sed 's:^ *///* *::' | normal)
check_table PluginTable.h CorvaneHost host.md
check_table Objects.h CorvaneObjects objects.md
check_table Directory.h CorvaneDirectory directory.md
check_table Formatters.h CorvaneFormatters formatters.md
check_table Forms.h CorvaneForms forms.md
check_table Tasks.h CorvaneTasks tasks.md
check_table Settings.h CorvaneSettings settings.md
check_table PluginTable.h CorvaneAction action.md
check_table PluginTable.h CorvanePlugin plugin.md
check_requests
check_examples
echo "reference: $checked entries and words checked, $violations violations"
((violations == 0))
