# Sourced by the scripts beside it. Leaves the shell in the root of the tree.
set -eu
cd "$(dirname "$0")/.." || exit

JOBS=$(nproc)

# The packages to build the library and its tool.
INSTALL_PACKAGES=(cmake ninja-build g++ libcjson-dev libcli11-dev)

# The further packages to build its tests.
BUILD_PACKAGES=("${INSTALL_PACKAGES[@]}" ccache pkg-config binutils libgtest-dev libgmock-dev libssl-dev
                android-liblog-dev doxygen)

# clang with its sanitizers, which compiles in two thirds of the time of g++.
CLANG_PACKAGES=(clang libclang-rt-14-dev)

# The further packages to run all tests: a fast linker, the validator of the schemas, and a browser.
TEST_PACKAGES=(lld python3-jsonschema chromium)
command -v npm >/dev/null || TEST_PACKAGES+=(nodejs npm)

as_root()
{
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# is_installed PACKAGE[:ARCHITECTURE]
is_installed()
{
    local architecture=${1##*:}
    [ "$architecture" != "$1" ] || architecture=$(dpkg --print-architecture)
    dpkg-query -W -f '${Architecture} ${Status}\n' "${1%:*}" 2>/dev/null |
        grep -qE "^(all|$architecture) install ok installed$"
}

# need PACKAGE[:ARCHITECTURE]...: installs those of these Debian packages that are missing.
need()
{
    local package missing=() patient=(-o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
    if ! command -v apt-get >/dev/null; then
        echo "There is no apt-get here. Install what Debian calls: $*" >&2
        return
    fi
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    echo "Installing ${missing[*]}"
    # A list that cannot be fetched does not matter if the packages can.
    as_root apt-get -qq "${patient[@]}" update || echo "Some package lists could not be fetched." >&2
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq "${patient[@]}" install -y --no-install-recommends "${missing[@]}" >/dev/null
}

# need_armhf: installs the missing packages for a cross build for 32-bit ARM that runs under qemu.
need_armhf()
{
    if command -v dpkg >/dev/null && ! dpkg --print-foreign-architectures | grep -qx armhf; then
        as_root dpkg --add-architecture armhf
    fi
    need clang g++-arm-linux-gnueabihf qemu-user libc6:armhf libstdc++6:armhf libcjson-dev:armhf libgtest-dev:armhf \
         libgmock-dev:armhf
}

# only_builds: whether to build only, which .ci/run asks for while other steps run
only_builds()
{
    [ -n "${ORVU_ONLY_BUILD-}" ]
}

# build_quietly LOG PRESET [TARGET...]: builds; when that fails, prints the log and exits.
build_quietly()
{
    local log=$1 preset=$2
    shift 2
    mkdir -p "$(dirname "$log")"
    cmake --preset "$preset" >"$log" 2>&1 &&
        cmake --build --preset "$preset" -j "$JOBS" ${1:+--target "$@"} >>"$log" 2>&1 ||
        { cat "$log"; exit 1; }
}
