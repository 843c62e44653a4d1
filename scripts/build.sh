# shellcheck shell=bash
# Sourced, not run: configuring and building one preset, quietly.
#
#   build_preset PRESET [TARGET...]    builds into build/PRESET under the current folder (the project's root).
#                                      On failure shows the end of the log and returns non-zero.
#
# CORVANE_JOBS sets how many compilers run at once (as many as there are cores otherwise).

build_preset() {
    local preset=$1 targets=() target
    shift
    for target in "$@"; do targets+=(--target "$target"); done
    mkdir -p "build/$preset" || return 1
    local log=build/$preset/build.log
    if needs_configuring "build/$preset"; then
        echo "Configuring ($preset) ..."
        cmake --preset "$preset" >"$log" 2>&1 || { build_failed "configuring $preset" "$log"; return 1; }
    fi
    echo "Building ($preset) ..."
    cmake --build "build/$preset" --parallel "${CORVANE_JOBS:-$(nproc)}" "${targets[@]}" >"$log" 2>&1 ||
        { build_failed "building $preset" "$log"; return 1; }
}

# Ninja configures again by itself when a CMakeLists.txt changes, but knows nothing of the presets.
needs_configuring() {
    [[ ! -f $1/build.ninja || CMakePresets.json -nt $1/CMakeCache.txt ]]
}

build_failed() {
    local what=$1 log=$2
    {
        grep -n -m 20 -E 'error|Error|FAILED' "$log" || :
        echo "--- the last lines of $log:"
        tail -n 40 "$log"
        echo "Failed: $what. The whole log is in $log."
    } >&2
}
