#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks that the unit suite catches typical faults: each mutant below is applied on its
# own to a copy of the tree (build-mutate/tree; src/ here is never touched), only what
# changed is rebuilt, and the unit suite (ctest label "unit") must then fail. Prints
# killed/survived per mutant and exits non-zero if any survived or no longer applies.
#   scripts/mutate.sh            every mutant
#   scripts/mutate.sh NAME...    only these
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
work="$root/build-mutate"
tree="$work/tree"
build="$work/build"

# NAME @@ FILE (under src/) @@ sed expression. A mutant whose expression no longer
# changes its file is reported as "stale": re-point it at the line's new form.
mutants() {
  cat << 'TABLE'
flipped-key-press   @@ input/Keypad.cpp @@ s/event.value == 1)/event.value >= 1)/
timeout-units       @@ input/Keypad.cpp @@ s/seconds \* kNanosPerSecond/seconds * 1000000/
no-eintr-retry      @@ input/Keypad.cpp @@ s/if (ready != -1 || errno != EINTR) return ready;/return ready;/
missed-cloexec      @@ input/Keypad.cpp @@ s/fcntl(opened, F_SETFD, FD_CLOEXEC);//
missed-close        @@ input/Keypad.cpp @@ s/if (fd > 0) {\n        close(fd);/if (fd > 0) {/
clip-off-by-one     @@ display/CanvasTransfers.cpp @@ s/(size - origin, first, to)/(size + 1 - origin, first, to)/
swapped-channel     @@ display/PixelFormat.cpp @@ s/& redMask) << redUp)/\& redMask) << blueUp)/
dropped-pan         @@ display/Screen.cpp @@ s/ioctl(fd, FBIOPAN_DISPLAY, &info);//
no-save-on-update   @@ display/Framebuffer.cpp @@ s/canvas.Refresh();\n    canvas.SaveBackground(screen);/canvas.Refresh();/
right-align         @@ graphics/AsciiText.cpp @@ s/return canvasWidth - x - textWidth;/return canvasWidth + x - textWidth;/
bar-fill            @@ graphics/ProgressBar.cpp @@ s/bar.topLeft.x + filled - 1/bar.topLeft.x + filled/
menu-wrap           @@ widgets/Menu.cpp @@ s/if (current == objects.end()) current = objects.begin();/if (current == objects.end()) --current;/
dropped-fsync       @@ interface/FileCopy.cpp @@ s/fsync(job.target) != 0/0 != 0/
TABLE
}

# The tree as it is in the worktree now (committed or not), copied only where it differs
# so that the build stays incremental between runs.
sync_tree() {
  mkdir -p "$tree"
  git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
    [ -f "$file" ] || continue
    cmp -s "$file" "$tree/$file" 2> /dev/null && continue
    mkdir -p "$tree/$(dirname "$file")" && cp -p "$file" "$tree/$file"
  done
}

unit_build() {
  cmake --build "$build" -j 2 > "$work/build.log" 2>&1
}

unit_suite_passes() {
  ctest --test-dir "$build" -L unit -j 2 --timeout 120 --stop-on-failure > "$work/ctest.log" 2>&1
}

mkdir -p "$work"
sync_tree
cmake -S "$tree" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTOR_BUILD_BENCH=OFF \
  > "$work/configure.log"
unit_build || { tail -20 "$work/build.log"; echo "the unmutated tree does not build" >&2; exit 1; }
unit_suite_passes || { tail -20 "$work/ctest.log"; echo "the unit suite fails unmutated" >&2; exit 1; }

survivors=0
while IFS= read -r line; do
  name=$(echo "${line%%@@*}" | xargs)
  rest=${line#*@@ }
  file="src/$(echo "${rest%%@@*}" | xargs)"
  expression=${rest#*@@ }
  [ $# -eq 0 ] || [[ " $* " == *" $name "* ]] || continue
  # -z reads the file as one line, so an expression may span lines with \n.
  sed -z "$expression" "$root/$file" > "$tree/$file"
  if cmp -s "$root/$file" "$tree/$file"; then
    result="stale"
  elif ! unit_build; then
    result="killed (does not build)"
  elif unit_suite_passes; then
    result="SURVIVED"
  else
    result="killed by $(grep -m1 -oE '[0-9]+ - [^ ]+ \((Failed|Timeout)\)' "$work/ctest.log" ||
      echo "the unit suite")"
  fi
  cp "$root/$file" "$tree/$file"  # a newer time stamp: the next build takes it again
  printf '%-20s %-28s %s\n' "$name" "${file#src/}" "$result"
  case $result in killed*) ;; *) survivors=$((survivors + 1)) ;; esac
done < <(mutants)
unit_build
[ "$survivors" -eq 0 ] || { echo "$survivors mutant(s) not killed" >&2; exit 1; }
echo "every mutant was killed"
