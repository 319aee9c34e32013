#!/usr/bin/env bash
# Installs the built project into a temporary prefix, then builds README's host application out
# of tree against it, once through the CMake package and once through pkg-config, and runs it.
# Also checks that the installed library exports the public API and nothing of its inner classes.
#
# Usage: out_of_tree_host.sh BUILD_DIR README [EXTRA_FLAGS]
#   EXTRA_FLAGS  compile and link flags the library was built with (its sanitizers), passed on
set -euo pipefail
build=${1:?build dir}
readme=${2:?README.md}
extra=${3:-}

work=$(mktemp -d /tmp/brovia-package.XXXXXX)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
host="$work/hello"
mkdir -p "$host"

cmake --install "$build" --prefix "$prefix" > "$work/install.log"

# README's "Using it" section: its C++ block is main.cpp, its CMake block the project file.
section() {
  awk -v lang="$1" '
    /^## / { inside = ($0 ~ /^## Using it/) }
    inside && $0 == "```" lang { copying = 1; next }
    copying && /^```/ { exit }
    copying { print }' "$readme"
}
section cpp > "$host/main.cpp"
section cmake > "$host/CMakeLists.txt"
[ -s "$host/main.cpp" ] && [ -s "$host/CMakeLists.txt" ] || { echo "README has no cpp and cmake blocks under 'Using it'"; exit 1; }

library=$(find "$prefix" -name 'libbrovia.so' | head -n 1)
[ -n "$library" ] || { echo "no libbrovia.so installed"; exit 1; }
exported=$(nm -D --defined-only -C "$library")
for wanted in 'QCefGlobalService::startup()' 'QCefViewImplService::create(' 'IQCefViewImpl::staticMetaObject' \
              'cef_common::addHostsToAllowList(' 'QCefDataTypes::staticMetaObject'; do
  grep -qF "$wanted" <<<"$exported" || { echo "libbrovia.so does not export $wanted"; exit 1; }
done
if inner=$(grep -E 'BrowserClient|RenderHandler|CCefManager|[ :]QCefViewImpl::|Conversions|brovia::' <<<"$exported"); then
  echo "libbrovia.so exports inner classes:"; echo "$inner" | head -n 20; exit 1
fi

launcher=()
command -v ccache > /dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$host" -B "$host/build" -DCMAKE_PREFIX_PATH="$prefix" "${launcher[@]}" \
      -DCMAKE_CXX_FLAGS="$extra" -DCMAKE_EXE_LINKER_FLAGS="$extra" > "$work/configure.log" \
  || { cat "$work/configure.log"; exit 1; }
cmake --build "$host/build" > "$work/build.log" || { cat "$work/build.log"; exit 1; }

pc_dir=$(dirname "$(find "$prefix" -name brovia.pc | head -n 1)")
# shellcheck disable=SC2046,SC2086
c++ -std=c++17 -fPIC $extra "$host/main.cpp" -o "$work/hello-pc" \
    $(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs brovia) -Wl,-rpath,"$(dirname "$library")"

# The host is not where leaks are hunted: the tests do that with their own suppressions.
export ASAN_OPTIONS=detect_leaks=0
export QT_QPA_PLATFORM=offscreen
for program in "$host/build/hello" "$work/hello-pc"; do
  output=$(timeout 120 "$program") || { echo "$program failed: $output"; exit 1; }
  echo "$program: $output"
  grep -q 'Hello' <<<"$output" || { echo "$program did not report the page's title"; exit 1; }
done
