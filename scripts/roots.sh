# SPDX-License-Identifier: MIT
# Sourced after setup.sh: bare Debian systems in folders of build/roots. Needs root.

# Makes build/roots/NAME anew, a bare system with a copy of the project. What was downloaded for a suite is kept.
make_root() {  # SUITE NAME
  local base=$PWD/build/roots/$1.base root=$PWD/build/roots/$2 mirror
  [ "$(id -u)" = 0 ] || die "Root is needed to make a system in a folder: sudo $0"
  install_packages debootstrap
  mkdir -p build/roots
  if [ ! -d "$base" ]; then
    mirror=$(awk '/^URIs:/ { print $2; exit }' /etc/apt/sources.list.d/*.sources /dev/null 2>/dev/null || true)
    rm -rf "$base.new"
    debootstrap --variant=minbase "$1" "$base.new" ${mirror:+"$mirror"} >"$base.log" || die "debootstrap failed; $base.log says why"
    { apt-config dump | grep '^Acquire::[a-z]*::Proxy' || true
      echo 'APT::Get::Assume-Yes "true"; APT::Install-Recommends "false"; Dpkg::Use-Pty "false";'; } >"$base.new/etc/apt/apt.conf.d/typed"
    printf '#!/bin/sh\nexit 101\n' >"$base.new/usr/sbin/policy-rc.d" && chmod 755 "$base.new/usr/sbin/policy-rc.d"
    mv "$base.new" "$base"
  fi
  rm -rf --one-file-system "$root"
  cp -a "$base" "$root"
  cp /etc/resolv.conf "$root/etc/"
  copy_project "$root/srv/project"
  in_root "$2" "apt-get update -qq"
}

copy_project() {  # FOLDER
  mkdir -p "$1" && tar --exclude=./build --exclude=./.git --exclude=__pycache__ -c . | tar -xC "$1"
}

# Runs a command in the folder of the project there, with processes and mounts of its own, which end with it.
in_root() {  # NAME COMMAND
  unshare --mount --pid --fork --kill-child bash -c 'mount --rbind /dev "$0/dev" && mount -t proc proc "$0/proc" &&
    exec chroot "$0" env -i HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive PATH=/usr/sbin:/usr/bin:/sbin:/bin \
      bash -c "cd /srv/project || exit; $1"' "$PWD/build/roots/$1" "$2" </dev/null
}
