# Shared by ./run, ./test and .ci/run: packages and builds. Sourced, with the project's folder as current folder.
#
# Nothing here asks a question: standard input is closed for every command that could read it.

export DEBIAN_FRONTEND=noninteractive
exec </dev/null

mkdir -p build
# One build at a time in one checkout: two calls at once would write the same object files.
lock_builds() {
    exec 8>build/.lock
    flock 8
}

say() { printf '%s\n' "$*" >&2; }

is_debian() { [ -r /etc/debian_version ] && command -v apt-get >/dev/null && command -v dpkg-query >/dev/null; }

# is_installed PACKAGE: asks the package database, which does not depend on where a file lies.
is_installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

# need_packages NAME...: installs what is missing. The names are remembered in a stamp, so that the second call
# costs one look at a file instead of one question per package.
need_packages() {
    local stamp=build/.packages name
    local -a missing=()
    for name in "$@"; do
        grep -qsxF "$name" "$stamp" || missing+=("$name")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if ! is_debian; then
        need_commands
        return 0
    fi
    local -a absent=()
    for name in "${missing[@]}"; do
        is_installed "$name" || absent+=("$name")
    done
    if [ ${#absent[@]} -gt 0 ]; then
        if [ "$(id -u)" -ne 0 ]; then
            say "missing packages: ${absent[*]}"
            say "install them as root with: apt-get install ${absent[*]}"
            exit 1
        fi
        install_packages "${absent[@]}"
    fi
    printf '%s\n' "${missing[@]}" >>"$stamp"
}

install_packages() {
    local log=build/packages.log
    say "installing $*"
    if ! { apt-get install -y --no-install-recommends "$@" ||
           { apt-get update && apt-get install -y --no-install-recommends "$@"; }; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        say "the packages could not be installed, the whole log is in $log"
        exit 1
    fi
}

# On a system without Debian's tools the build needs the commands themselves, whoever installed them.
need_commands() {
    local command
    local -a absent=()
    for command in cmake ninja g++; do
        command -v "$command" >/dev/null || absent+=("$command")
    done
    if command -v g++ >/dev/null && ! echo '#include <gmp.h>' | g++ -E -x c++ - >/dev/null 2>&1; then
        absent+=("gmp.h")
    fi
    [ ${#absent[@]} -gt 0 ] || return 0
    say "missing: ${absent[*]}"
    say "please install CMake 3.25, Ninja, a C++20 compiler (g++ 12 or newer) and GMP with its header;"
    say "for ./test also GoogleTest, Google Benchmark and pkg-config"
    exit 1
}

build_packages=(cmake ninja-build g++ libgmp-dev)
test_packages=("${build_packages[@]}" libgtest-dev libbenchmark-dev pkg-config groff-base)

# configure PRESET [OPTION...]: once per build folder, CMake itself notices later changes of its files.
configure() {
    local preset=$1 log=build/configure-$1.log
    shift
    if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
        cat "$log" >&2
        say "the configuration of the preset $preset failed"
        exit 1
    fi
}

# show_progress WHAT: tells from ninja's output how far it is: on a terminal in one line that it writes over, elsewhere
# in a line for each tenth.
show_progress() {
    local line done total tenth last=-1
    while IFS= read -r line; do
        [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\ (Building|Linking|Creating) ]] || continue
        done=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]}
        if [ -t 2 ]; then
            printf '\r%s: %d of %d ' "$1" "$done" "$total" >&2
        else
            tenth=$((done * 10 / total))
            [ "$tenth" -eq "$last" ] || say "$1: $done of $total"
        fi
        last=$((done * 10 / total))
    done
    if [ -t 2 ] && [ "$last" -ge 0 ]; then printf '\n' >&2; fi
}

# build PRESET [NINJA ARGUMENT...]: shows its progress, and the messages only if it fails.
build() {
    local preset=$1 log=build/build-$1.log
    shift
    if ! ninja -C "build/$preset" "$@" 2>&1 | tee "$log" | show_progress "building ($preset)"; then
        grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "$log" | tail -n 60 >&2
        say "the build of the preset $preset failed, the whole log is in $log"
        exit 1
    fi
}
