# Shared by ./run, ./test and the benchmarks; sourced, with $root set to the project's folder.

fail() {
    printf 'error: %s\n' "$1" >&2
    exit 1
}

# install_packages LIST...: the lists of tools/setup, without their ending.
install_packages() {
    local lists=()
    for name in "$@"; do
        lists+=("$root/tools/setup/packages-$name.txt")
    done
    "$root/tools/setup/install-packages" "${lists[@]}"
}

# quietly LOG COMMAND...: shows what the command printed only when it fails.
quietly() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 || {
        tail -n 30 "$log" >&2
        fail "'$*' failed; the whole output is in $log"
    }
}

# configure PRESET [CMAKE-ARGUMENT...]
configure() {
    local preset=$1 dir=$root/build/$1
    shift
    mkdir -p "$dir"
    echo "== Configuring $preset"
    (cd "$root" && quietly "$dir/configure.log" cmake --preset "$preset" "$@")
}

# build PRESET [TARGET...]: silent when there is nothing to do.
build() {
    local preset=$1 dir=$root/build/$1
    shift
    # A line for every twentieth part is enough to see it move.
    if ! ninja -C "$dir" "$@" 2>&1 | tee "$dir/build.log" | awk -F'[][/]' -v preset="$preset" '
        /^\[[0-9]+\/[0-9]+\]/ && $3 > 2 {
            if (!started++) { print "== Building " preset }
            if ($2 >= last + $3 / 20 || $2 == $3) { print "   " $2 " of " $3; last = $2 }
            fflush()
        }'; then
        grep -A 30 -m 1 -E 'error|FAILED' "$dir/build.log" >&2 || true
        fail "building $preset failed; the whole output is in $dir/build.log"
    fi
}
