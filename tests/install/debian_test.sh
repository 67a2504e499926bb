#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian packages from a copy of the source, checks their dependencies and
# lintian's verdict, unpacks them into a scratch root, builds the README's example
# against that root through pkg-config, and runs it in the packaged simulator.
#   debian_test.sh SOURCE_DIR WORK_DIR
set -euo pipefail
source_dir=$1
work=$2/debian
root=$work/root
fail() {
  echo "debian packages: $*" >&2
  exit 1
}
for tool in dpkg-buildpackage dh lintian; do
  command -v "$tool" > /dev/null || fail "$tool is missing: run scripts/system-deps.sh"
done
rm -rf "$work"
mkdir -p "$work/src" "$root"

# The source as a checkout has it, without build trees.
if git -C "$source_dir" rev-parse --is-inside-work-tree > /dev/null 2>&1; then
  git -C "$source_dir" ls-files -z --cached --others --exclude-standard |
    tar -C "$source_dir" --null --ignore-failed-read -T - -cf - | tar -C "$work/src" -xf -
else
  tar -C "$source_dir" --exclude='./build*' --exclude=./out -cf - . | tar -C "$work/src" -xf -
fi
(cd "$work/src" && dpkg-buildpackage -us -uc -b -j2) > "$work/build.log" 2>&1 ||
  { tail -40 "$work/build.log"; fail "dpkg-buildpackage failed"; }

arch=$(dpkg-architecture -qDEB_HOST_ARCH)
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
version=$(dpkg-parsechangelog -l "$source_dir/debian/changelog" -SVersion)
deb() { echo "$work/$1_${version}_$arch.deb"; }
depends() { dpkg-deb -f "$(deb "$1")" Depends; }
depends libvantor1 | grep -q 'libstdc++6' || fail "libvantor1 does not depend on libstdc++6"
depends libvantor-dev | grep -qF "libvantor1 (= $version)" || fail "libvantor-dev: wrong libvantor1"
depends vantor-tools | grep -q 'libpng' || fail "vantor-tools does not depend on libpng"

lintian --tag-display-limit 0 "$work/vantor_${version}_$arch.changes" > "$work/lintian.log" 2>&1 || true
cat "$work/lintian.log"
grep -q '^E: ' "$work/lintian.log" && fail "lintian reports errors"
grep -q 'no-manual-page' "$work/lintian.log" && fail "a program of the packages has no manual page"

for package in libvantor1 libvantor-dev vantor-tools; do
  dpkg -x "$(deb "$package")" "$root"
done
"$source_dir/tests/install/readme-example.sh" "$source_dir/README.md" > "$work/example.c"
flags=$(PKG_CONFIG_SYSROOT_DIR=$root PKG_CONFIG_LIBDIR=$root/usr/lib/$multiarch/pkgconfig \
  pkg-config --cflags --libs vantor)
# shellcheck disable=SC2086
cc -std=c99 -Wall -Wextra -Werror "$work/example.c" -o "$work/example" $flags

# The packaged simulator must not need the tree it was built in.
rm -rf "$work/src"
LD_LIBRARY_PATH=$root/usr/lib/$multiarch "$root/usr/bin/vantor-sim" --screen 480x272 \
  --fonts "$root/usr/share/fonts/vantor" --shots "$work/shots" --keys "down,ok" \
  -- "$work/example" > "$work/run.log" 2>&1 || { cat "$work/run.log"; fail "the example fails in vantor-sim"; }
grep -q '^chosen: 2$' "$work/run.log" || { cat "$work/run.log"; fail "the menu did not choose entry 2"; }
echo "Debian packages build, install and run the README example"
