#!/usr/bin/env bash
# Installs what is missing, builds the demo host application and runs it on its bundled page.
# Without a display it saves a screenshot instead of opening a window.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
build="${BROVIA_DEMO_BUILD_DIR:-$top/build}"
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBROVIA_BUILD_TESTS=OFF
cmake --build "$build" -j"$(nproc)" --target brovia-demo
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  shot="${BROVIA_DEMO_SCREENSHOT:-$top/demo-screenshot.png}"
  "$build/app/brovia-demo" --screenshot "$shot" "$@"
  echo "demo: no display, so the window was saved as $shot"
else
  exec "$build/app/brovia-demo" "$@"
fi
