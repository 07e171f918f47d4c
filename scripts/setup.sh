# SPDX-License-Identifier: MIT
# Sourced by the commands in the project's top folder: messages, and the installation of missing Debian packages.

build_packages="g++ cmake ninja-build pkg-config libcups2-dev libfmt-dev liburiparser-dev libutf8proc-dev
  nlohmann-json3-dev"
demo_packages="$build_packages cups-client diffutils"
test_packages="$demo_packages clang-14 libclang-rt-14-dev libgtest-dev libgmock-dev librapidcheck-dev libbenchmark-dev
  openprinting-ppds python3 valgrind cups cups-daemon dbus-daemon colord clang-tidy-14 cppcheck lintian gobjc++
  libgnustep-base-dev libc++-14-dev musl-dev lld-14 llvm-14"

say() { printf '\n==> %s\n' "$*"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs those of the packages that are not there yet.
install_packages() {
  local package missing=()
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  if [ ${#missing[@]} = 0 ]; then
    echo "all packages are there"
    return
  fi
  echo "installing: ${missing[*]}"
  [ "$(id -u)" = 0 ] || command -v sudo >/dev/null || die "root or sudo is needed to install packages"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
    >/dev/null || die "the packages could not be installed"
}

# Configures (once) and builds one of the presets in CMakePresets.json; further arguments go to the configuration.
build_preset() {
  local preset=$1
  shift
  say "Building ($preset)"
  cmake --preset "$preset" "$@" >"build-$preset.log" 2>&1 || { cat "build-$preset.log"; die "cmake failed"; }
  rm "build-$preset.log"
  cmake --build --preset "$preset" ${build_target:+--target $build_target}
}
