# Shared by scripts/run and scripts/test. Source it; it sets ROOT and defines helpers.
set -euo pipefail
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
export DEBIAN_FRONTEND=noninteractive

say() { printf '\033[1m==> %s\033[0m\n' "$*" >&2; }

# Installs the Debian packages that are missing (as root, or through sudo).
ensure_packages() {
  local missing=()
  for pkg in "$@"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "ok installed" || missing+=("$pkg")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  say "Installing ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

WINDOWS_PACKAGES=(cmake ninja-build g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev
  binutils-mingw-w64-x86-64 googletest wine wine64 xvfb xauth x11-apps imagemagick)
NATIVE_PACKAGES=(cmake ninja-build clang g++ libgtest-dev libgmock-dev libbenchmark-dev
  zlib1g-dev)

# The sanitizer and fuzzer runtimes come in a package named after clang's major version, so
# clang is installed first and asked for it.
ensure_native_packages() {
  ensure_packages clang
  local major
  major=$(clang --version | sed -n 's/.*clang version \([0-9][0-9]*\).*/\1/p' | head -n 1)
  [ -n "$major" ] || { say "Cannot tell clang's version"; return 1; }
  ensure_packages "${NATIVE_PACKAGES[@]}" "libclang-rt-$major-dev" "$@"
}

build_preset() {
  local preset=$1; shift
  say "Building ($preset)"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" "$@"
}
