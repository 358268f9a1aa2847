#!/usr/bin/env bash
# Builds Tivlib, installs it into a scratch prefix, then builds and runs the example consumer
# against the installed package twice: once through CMake's find_package, once through
# pkg-config. Usage: examples/check-install.sh [WORKDIR]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
work=${1:-$(mktemp -d)}
mkdir -p "$work"
work=$(cd "$work" && pwd)
prefix=$work/prefix

cmake -S "$root" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DTIVLIB_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX="$prefix" >/dev/null
cmake --build "$work/build"
cmake --install "$work/build" >/dev/null

echo "-- consumer through find_package(Tivlib)"
cmake -S "$root/examples/consumer" -B "$work/consumer-cmake" -G Ninja \
      -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer-cmake"
"$work/consumer-cmake/consumer"

echo "-- consumer through pkg-config"
libdir=$(ls -d "$prefix"/lib*/pkgconfig | head -n 1)
export PKG_CONFIG_PATH=$libdir
mkdir -p "$work/consumer-pc"
# shellcheck disable=SC2046
cc -std=c11 -Wall -Wextra -Werror $(pkg-config --cflags tivlib) \
   "$root/examples/consumer/consumer.c" -o "$work/consumer-pc/consumer" \
   $(pkg-config --libs tivlib) -Wl,-rpath,"$(dirname "$libdir")"
"$work/consumer-pc/consumer"
echo "check-install: ok"
