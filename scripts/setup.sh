# SPDX-License-Identifier: MIT
# Sourced by the commands in the project's top folder: messages, and the installation of missing Debian packages.

build_packages="g++ cmake ninja-build pkg-config libcups2-dev libfmt-dev liburiparser-dev libutf8proc-dev
  nlohmann-json3-dev libcsv-dev libcli11-dev"
demo_packages="$build_packages cups-client diffutils"
quick_packages="$demo_packages libgtest-dev libgmock-dev librapidcheck-dev libbenchmark-dev python3
  python3-jsonschema jq"
package_packages="$build_packages debhelper dpkg-dev lintian python3"
test_packages="$quick_packages $package_packages clang-14 libclang-rt-14-dev openprinting-ppds valgrind cups
  cups-daemon cups-ipp-utils dbus-daemon colord clang-tidy-14 cppcheck gdb strace gobjc++ libgnustep-base-dev libc++-14-dev musl-dev
  lld-14 llvm-14 zsh fish chromium chromium-driver python3-selenium poppler-utils ansible-core"

say() { printf '\n==> %s\n' "$*"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# Everything that is made goes into the folder build/. What root makes there belongs to whom the checkout belongs, so that
# commands with and without sudo can follow each other.
check_checkout() {
  local foreign
  mkdir -p build 2>/dev/null ||
    die "The folder build/ cannot be written here. Copy the project to a folder of your own and try again."
  foreign=$(find build -maxdepth 3 -path build/roots -prune -o ! -writable ! -type l -print -quit)
  [ -z "$foreign" ] || die "$foreign cannot be written: it belongs to $(stat -c %U "$foreign"). To have all of build/: sudo chown -R $(id -un) build"
  [ "$(id -u)" != 0 ] || trap "find build -path build/roots -prune -o -user root -exec chown -h --reference=. {} +" EXIT
}

is_installed() { dpkg-query -W -f '${Status}' "$1" 2>/dev/null | grep -q '^install ok installed$'; }

# Installs those of the packages that are not there yet.
install_packages() {
  local package missing=()
  command -v dpkg-query apt-get >/dev/null ||
    die "This command installs packages with apt-get, which is not here. Elsewhere, build by hand: README.md says how."
  for package in "$@"; do is_installed "$package" || missing+=("$package"); done
  if [ ${#missing[@]} = 0 ]; then
    echo "all packages are there"
    return
  fi
  echo "installing: ${missing[*]}"
  [ "$(id -u)" = 0 ] || command -v sudo >/dev/null ||
    die "Root or sudo is needed to install packages. Have an administrator run: apt-get install ${missing[*]}"
  if ! { as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq &&
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null; }; then
    die "The packages could not be installed; apt-get says why above. Is there a network? Needed: ${missing[*]}"
  fi
}

# Configures one of the presets in CMakePresets.json; further arguments go to the configuration. A compiler may warn of what
# ours does not, so warnings end only the builds for which $AT_WARNINGS_AS_ERRORS is ON.
configure_preset() {
  local preset=$1
  shift
  local made_for
  made_for=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "build/$preset/CMakeCache.txt" 2>/dev/null || true)
  [ -z "$made_for" ] || [ "$made_for" = "$PWD" ] ||
    die "build/$preset was made for another folder, $made_for. Remove it and try again: rm -r build/$preset"
  cmake --preset "$preset" -DAT_WARNINGS_AS_ERRORS="${AT_WARNINGS_AS_ERRORS:-OFF}" "$@" >"build/$preset-cmake.log" 2>&1 || {
    cat "build/$preset-cmake.log"
    die "CMake could not configure build/$preset. If it was made by another version, remove it: rm -r build/$preset"
  }
}

# Configures and builds a preset, or only the targets in $build_target.
build_preset() {
  say "Building ($1)"
  configure_preset "$@"
  cmake --build --preset "$1" ${build_target:+--target $build_target} ||
    die "build/$1 could not be built; the compiler says why above."
}
