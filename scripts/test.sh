#!/usr/bin/env bash
# Installs what is missing, builds everything with AddressSanitizer and UndefinedBehaviorSanitizer,
# and runs every test.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
build="${BROVIA_TEST_BUILD_DIR:-$top/build-test}"
cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBROVIA_SANITIZE=ON
cmake --build "$build" -j"$(nproc)"
cd "$build"
ctest --output-on-failure -j"$(nproc)" --timeout 300 "$@"
