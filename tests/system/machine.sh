# The test machine: its initramfs, its fonts and one boot of it. Sourced by
# run-system-tests.sh after kernel.sh, which sets KERNEL_IMAGE and KERNEL_MODULES.

# The build's fonts: the guest installs them where the library reads them.
font_dir() {
  [ -f "$1/fonts/lr.tf" ] && [ -f "$1/fonts/lb.tf" ] ||
    fail "no fonts in $1/fonts: the system tests need a build with VANTOR_BUILD_FONTS on"
  echo "$1/fonts"
}

# busybox as /init's shell, /init itself, and the modules with lists in loading order:
# the shares and input (base), vfb, and the bochs display with the DRM layer under it.
make_initramfs() {
  local out=$1 root="$work/initramfs" list module
  rm -rf "$root" && mkdir -p "$root/bin" "$root/modules"
  cp "$(command -v busybox)" "$root/bin/busybox"
  cp "$here/guest-init.sh" "$root/init" && chmod +x "$root/init"
  for list in "base:virtio_pci 9pnet_virtio 9p evdev uinput" "vfb:vfb" "bochs:bochs"; do
    MODULES_SEEN=""
    : > "$root/modules/${list%%:*}.order"
    # shellcheck disable=SC2086 # a list of module names
    for module in $(modules_in_order "$KERNEL_MODULES" ${list#*:}); do
      cp "$module" "$root/modules/"
      basename "$module" >> "$root/modules/${list%%:*}.order"
    done
  done
  (cd "$root" && find . | busybox cpio -o -H newc 2> /dev/null | gzip -1 > "$out")
}

# Answers the guest's requests for QEMU's own picture of the bochs display: the guest
# touches screendump-wanted-NAME in its results, QEMU's monitor writes NAME.ppm, and
# screendump-done-NAME lets the guest go on. Runs until the boot ends.
serve_screendumps() {
  local results=$1 monitor=$2 wanted name
  for tick in $(seq 3000); do
    for wanted in "$results"/screendump-wanted-*; do
      name=${wanted##*/screendump-wanted-}
      [ -f "$wanted" ] && [ ! -f "$results/screendump-done-$name" ] || continue
      dump_screen "$monitor" "$results/$name.ppm"
      touch "$results/screendump-done-$name"
    done
    sleep 0.1
  done
}

dump_screen() {
  local monitor=$1 ppm=$2 tick
  echo "screendump $ppm" > "$monitor.in"
  for tick in $(seq 100); do
    [ "$(stat -c %s "$ppm" 2> /dev/null || echo 0)" -ge $((800 * 480 * 3)) ] && break
    sleep 0.1
  done
  sleep 0.2  # the header comes first, the last row last
}

# One boot: $1 names it (64 or 32), $2 is the scenario program, $3 the screen program
# (empty: no screen readings, and no bochs display). Results land in results-$1.
boot() {
  local name=$1 results="$work/results-$1" monitor="$work/monitor-$1" display=() server=""
  rm -rf "$results" && mkdir -p "$results"
  cat > "$results/config" << CONFIG
BUILD=$build
FONTS=$fonts
PROGRAM=$2
SCREEN=$3
SHOW=$build/tests/system/vantor_system_show
BOCHS=$([ -n "$3" ] && echo 1 || echo 0)
CONFIG
  rm -f "$monitor.in" "$monitor.out" && mkfifo "$monitor.in" "$monitor.out"
  if [ -n "$3" ]; then
    display=(-device bochs-display,xres=800,yres=480)
    serve_screendumps "$results" "$monitor" &
    server=$!
  fi
  local start=$SECONDS status=0
  timeout 300 qemu-system-x86_64 -nodefaults -machine pc,i8042=off -accel tcg -m 768 -smp 1 \
    -kernel "$KERNEL_IMAGE" -initrd "$work/initramfs.gz" \
    -append "console=ttyS0 quiet panic=-1 rdinit=/init vt.global_cursor_default=0" \
    -virtfs local,path=/,mount_tag=hostroot,security_model=none,readonly=on,multidevs=remap \
    -virtfs local,path="$results",mount_tag=results,security_model=none,multidevs=remap \
    -chardev pipe,id=monitor,path="$monitor" -mon chardev=monitor,mode=readline \
    "${display[@]}" -serial file:"$results/console.log" -display none -no-reboot || status=$?
  [ -z "$server" ] || kill "$server" 2> /dev/null || true
  wait 2> /dev/null || true
  echo "machine $name ran $((SECONDS - start)) s (QEMU status $status):" \
    "$(cat "$results/uptime" 2> /dev/null || echo "no uptime recorded")"
  [ "$status" = 0 ] || { tail -40 "$results/console.log"; fail "the $name-bit machine failed"; }
}
