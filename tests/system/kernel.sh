# SPDX-License-Identifier: MIT
# Debian's generic amd64 kernel for the test machine: downloaded with apt-get, unpacked,
# never installed. Sourced by run-system-tests.sh; every function fails loudly.

# Which linux-image-6.1.0-N-amd64 the meta package stands for today; the package lists
# are fetched first where this machine never fetched them.
kernel_package() {
  local package attempt
  for attempt in 0 1 2 3; do
    package=$(apt-cache depends linux-image-amd64 2> /dev/null |
      awk '/Depends: linux-image-/ {print $2; exit}')
    [ -n "$package" ] && { echo "$package"; return 0; }
    [ "$attempt" = 0 ] || sleep 5
    apt-get update -q > /dev/null || true
  done
  echo "cannot tell which kernel linux-image-amd64 stands for" >&2
  return 1
}

# The bzImage holds an xz stream whose contents are the plain ELF kernel. QEMU boots that
# ELF through its PVH entry in about half the time it takes to decompress the bzImage.
extract_vmlinux() {
  local image=$1 out=$2 offset
  for offset in $(LC_ALL=C grep -obUaP '\xfd7zXZ\x00' "$image" | cut -d: -f1); do
    # xz complains about what follows the stream; the ELF header says whether it worked.
    tail -c +$((offset + 1)) "$image" | xz -dc > "$out" 2> /dev/null || true
    [ "$(head -c 4 "$out" | od -An -c | tr -d ' ')" = '177ELF' ] && return 0
  done
  echo "no ELF kernel inside $image" >&2
  return 1
}

# Sets KERNEL_IMAGE (the ELF kernel) and KERNEL_MODULES (the modules' tree), downloading
# and unpacking the package into the cache directory $1 the first time.
fetch_kernel() {
  local cache=$1 package dir
  package=$(kernel_package)
  dir="$cache/$package"
  if [ ! -f "$dir/done" ]; then
    rm -rf "$dir" && mkdir -p "$dir"
    (cd "$cache" && for attempt in 1 2 3; do apt-get download "$package" && break; sleep 5; done)
    dpkg-deb -x "$cache/${package}"_*.deb "$dir"
    rm -f "$cache/${package}"_*.deb
    touch "$dir/done"
  fi
  [ -f "$dir/vmlinux" ] || extract_vmlinux "$dir"/boot/vmlinuz-* "$dir/vmlinux"
  KERNEL_IMAGE="$dir/vmlinux"
  KERNEL_MODULES=$(echo "$dir"/lib/modules/*)
}

# Prints the module files that must be loaded for the named modules, each after those it
# needs, once. The unpacked package has no modules.dep: each module names its own needs.
modules_in_order() {
  local tree=$1 name file
  shift
  for name in "$@"; do
    file=$(find "$tree" -name "$name.ko" -print -quit)
    [ -n "$file" ] || { echo "module $name is not in $tree" >&2; return 1; }
    case " ${MODULES_SEEN:-} " in *" $name "*) continue ;; esac
    MODULES_SEEN="${MODULES_SEEN:-} $name"
    # shellcheck disable=SC2046 # the list is comma separated names
    modules_in_order "$tree" $(modinfo -F depends "$file" | tr ',' ' ') || return 1
    echo "$file"
  done
}
