# shellcheck shell=bash
# Sourced by the scripts: building with a preset.

# build_preset PRESET [TARGET...]: configures where that was not done yet, and builds the targets, or everything.
build_preset() {
    local preset=$1
    shift
    if [[ ! -f build/$preset/build.ninja ]]; then
        echo "==> Configuring build/$preset"
        cmake --preset "$preset"
    fi
    echo "==> Building in build/$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
