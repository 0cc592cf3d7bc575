# shellcheck shell=bash
# Sourced by the scripts: which files are ours, by kind, and which of them a change touched.

# Where there is no repository, as in an unpacked archive, everything but what was built.
own_files() {
    git ls-files 2>/dev/null || find . -type f -not -path './build/*' -printf '%P\n' | sort
}

# own_programs INTERPRETER: files without a suffix, told by their first line.
own_programs() {
    own_files | grep -vE '\.[a-z0-9]+$' | xargs -r grep -lE "^#!.*\b$1\$"
}

cpp_files() {
    own_files | grep -E '\.(cpp|h)$'
}

shell_files() {
    own_files | grep -E '\.sh$'
    own_programs bash
}

python_files() {
    own_files | grep -E '\.py$'
    own_programs python3
}

# Since the last release, or else the commit before this one, with what is not committed yet; everything where neither
# is known.
changed_cpp_sources() {
    local base
    if base=$(git describe --tags --abbrev=0 2>/dev/null || git rev-parse --verify --quiet HEAD^); then
        git diff --name-only --diff-filter=d "$base" -- '*.cpp'
    else
        own_files | grep -E '\.cpp$'
    fi
}
