#!/bin/bash
# check_threads.sh PROGRAM: fails when the program can start a thread. For test programs that aren't built for the
# thread sanitizer, because nothing can go wrong between threads where there is only one: one that begins to start
# them needs the label "threads" in its CMakeLists.txt.
set -euo pipefail

imported=$(nm --undefined-only --demangle "$1")
if found=$(grep -E -o 'std::thread::_M_start_thread|pthread_create|thrd_create' <<<"$imported"); then
    echo "$(basename "$1") can start threads (${found//$'\n'/, }): give it the label \"threads\" in its CMakeLists.txt"
    exit 1
fi
echo "$(basename "$1") starts no threads"
