#!/usr/bin/env bash
# Runs the demo's tour headless and checks its pictures: every required step saved one, and none
# is a blank page (a page picture with text and colour is several times larger than a blank one).
#
# Usage: run_tour.sh DEMO_PROGRAM
set -euo pipefail
demo=${1:?demo program}
out=$(mktemp -d /tmp/brovia-tour.XXXXXX)
trap 'rm -rf "$out"' EXIT

# Leaks are hunted by the tests with their own suppressions, not in the demo.
ASAN_OPTIONS=detect_leaks=0 QT_QPA_PLATFORM=offscreen timeout 240 "$demo" --tour "$out" --timeout 20000 > "$out/list.txt"
for step in page host-runs-script page-calls-host find zoom context-menu script-dialog; do
  picture=$(ls "$out"/[0-9][0-9]-"$step".png 2> /dev/null || true)
  [ -n "$picture" ] || { echo "the tour saved no picture of $step"; ls "$out"; exit 1; }
  size=$(stat -c %s "$picture")
  [ "$size" -gt 40000 ] || { echo "$picture looks blank ($size bytes)"; exit 1; }
done
cat "$out/list.txt"
