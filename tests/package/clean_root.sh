#!/usr/bin/env bash
# The packages on a system that has nothing of ours: clean_root.sh PACKAGES PROJECT WORK. It makes the
# system of this machine's release in WORK, which takes minutes, a mirror and the rights of root;
# installs the packages of the folder with what they depend on; and there builds and runs their
# examples.
set -euo pipefail
packages=$1 project=$2 work=$3
root=$work/root
# shellcheck disable=SC1091
release=$(. /etc/os-release && echo "$VERSION_CODENAME")

rm -rf "$work"
mkdir -p "$work"
debootstrap --variant=minbase "$release" "$root" >"$work/debootstrap.log" 2>&1 ||
  { tail "$work/debootstrap.log" >&2; exit 1; }
mkdir "$root/packages"
cp "$packages"/*.deb "$project" "$root/packages"
cp /etc/resolv.conf "$root/etc/resolv.conf"
cat >"$root/packages/try" <<'END'
set -eu
export DEBIAN_FRONTEND=noninteractive
apt-get -q update
apt-get -qy install --no-install-recommends /packages/*.deb
lq fb /packages/plant.xml Mixing stirring
# The runtime and the tool are there without a compiler; now what a user builds with.
apt-get -qy install --no-install-recommends g++ cmake make pkg-config
examples=/usr/share/doc/liblq-data-dev/examples
cmake -S $examples -B /built
cmake --build /built
/built/embed/embed /packages/plant.xml Clamp /plant.lqt
c++ -std=c++20 $examples/embed/main.cpp -o /embed $(pkg-config --cflags --libs lq_data_host)
/embed /packages/plant.xml Clamp /again.lqt
cmp /plant.lqt /again.lqt
apt-get -qy purge lq 'liblq-data*'
! find / -xdev -path /packages -prune -o -name '*lq_data*' -print -o -name 'liblq*' -print | grep -v '^/built'
END
env -u CMAKE_CXX_COMPILER_LAUNCHER -u CC -u CXX -u CXXFLAGS chroot "$root" sh /packages/try >"$work/log" 2>&1 || { tail -20 "$work/log" >&2; exit 1; }
grep -c '(64-bit value)' "$work/log"
rm -rf "$root"
