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

# show_progress NAME: of ninja's lines, one for every twentieth part: enough to see it move. Not awk,
# which in Debian keeps what it reads until it has a block of it.
show_progress() {
    local name=$1 line last=0
    while IFS= read -r line; do
        if [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] && [ "${BASH_REMATCH[2]}" -gt 2 ]; then
            local step=${BASH_REMATCH[1]} steps=${BASH_REMATCH[2]}
            if [ "$last" -eq 0 ]; then
                echo "== Building $name"
            fi
            if [ "$last" -eq 0 ] || [ $((step - last)) -ge $((steps / 20)) ] || [ "$step" -eq "$steps" ]; then
                echo "   $step of $steps"
                last=$step
            fi
        fi
    done
}

# build PRESET [TARGET...]: silent when there is nothing to do.
build() {
    local preset=$1 dir=$root/build/$1
    shift
    if ! ninja -C "$dir" "$@" 2>&1 | tee "$dir/build.log" | show_progress "$preset"; then
        grep -A 30 -m 1 -E 'error|FAILED' "$dir/build.log" >&2 || true
        fail "building $preset failed; the whole output is in $dir/build.log"
    fi
}
