# Sourced by the other scripts: from here on they run in the root of the tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Qt takes the encoding of file names from the locale; a bare system has none set.
case "${LC_ALL:-${LC_CTYPE:-${LANG:-}}}" in
*[Uu][Tt][Ff]8 | *[Uu][Tt][Ff]-8) ;;
*) export LC_ALL=C.UTF-8 ;;
esac

if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER="${CMAKE_CXX_COMPILER_LAUNCHER-ccache}"
    export CCACHE_BASEDIR="${CCACHE_BASEDIR-$PWD}" CCACHE_NOHASHDIR="${CCACHE_NOHASHDIR-1}"
fi

die() {
    echo "$1" >&2
    exit 1
}

# build PRESET [TARGET...]: configures and builds build/PRESET.
build() {
    local preset=$1
    shift
    cmake --preset "$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
