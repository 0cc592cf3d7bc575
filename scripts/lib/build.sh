# shellcheck shell=bash
# Sourced by the scripts: building and testing with a preset.

# FTP servers to test against are fetched into this folder. Installed ones may stand where users do not look.
readonly servers=$PWD/build/servers
PATH=$PATH:/usr/sbin:$servers/usr/sbin

# build_preset PRESET [TARGET...]: configures and builds the targets, or everything.
build_preset() {
    local preset=$1
    shift
    # Also where that was done before: what the tests need may have been installed since.
    echo "==> Configuring build/$preset"
    cmake --preset "$preset"
    echo "==> Building in build/$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# test_preset PRESET [CTEST ARGUMENT...]: runs the tests side by side. They wait more than they work, so two for each core.
test_preset() {
    local preset=$1
    shift
    echo "==> Testing in build/$preset"
    ctest --preset "$preset" --parallel $((2 * $(nproc))) "$@"
}
