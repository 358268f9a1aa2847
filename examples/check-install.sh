#!/usr/bin/env bash
# Builds Tivlib, installs it into a scratch prefix, moves the installed tree elsewhere (the
# package must work from any prefix), then builds and runs the example consumer against it four
# ways: CMake's find_package and pkg-config, each with the shared and with the static library.
# Usage: examples/check-install.sh [WORKDIR]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
work=${1:-$(mktemp -d)}
mkdir -p "$work"
work=$(cd "$work" && pwd)
installed=$work/installed
prefix=$work/moved/prefix
rm -rf "$installed" "$work/moved"

cmake -S "$root" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DTIVLIB_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX="$installed" >/dev/null
cmake --build "$work/build"
cmake --install "$work/build" >/dev/null
mkdir -p "$work/moved"
mv "$installed" "$prefix"
echo "-- installed to $installed, moved to $prefix"

libdir=$(dirname "$(ls -d "$prefix"/lib*/pkgconfig | head -n 1)")
for kind in shared static; do
  target=Tivlib::tivlib
  [ "$kind" = static ] && target=Tivlib::tivlib_static
  echo "-- consumer through find_package(Tivlib), $kind"
  cmake -S "$root/examples/consumer" -B "$work/consumer-cmake-$kind" -G Ninja \
        -DCMAKE_PREFIX_PATH="$prefix" -DTIVLIB_TARGET="$target" >/dev/null
  cmake --build "$work/consumer-cmake-$kind" >/dev/null
  "$work/consumer-cmake-$kind/consumer" >/dev/null
done

export PKG_CONFIG_PATH=$libdir/pkgconfig
[ "$(pkg-config --variable=prefix tivlib)" -ef "$prefix" ] || {
  echo "check-install: tivlib.pc names the prefix $(pkg-config --variable=prefix tivlib)" >&2
  exit 1
}
mkdir -p "$work/consumer-pc"
echo "-- consumer through pkg-config, shared"
# shellcheck disable=SC2046
cc -std=c11 -Wall -Wextra -Werror $(pkg-config --cflags tivlib) \
   "$root/examples/consumer/consumer.c" -o "$work/consumer-pc/consumer-shared" \
   $(pkg-config --libs tivlib) -Wl,-rpath,"$libdir"
"$work/consumer-pc/consumer-shared" >/dev/null
echo "-- consumer through pkg-config, static"
# The static library with what its static link needs (pkg-config --static): -lstdc++ -lm.
# shellcheck disable=SC2046
cc -std=c11 -Wall -Wextra -Werror $(pkg-config --cflags tivlib) \
   "$root/examples/consumer/consumer.c" -o "$work/consumer-pc/consumer-static" \
   $(pkg-config --static --libs tivlib | sed 's/-ltivlib/-Wl,-Bstatic -ltivlib -Wl,-Bdynamic/')
"$work/consumer-pc/consumer-static" >/dev/null
if ldd "$work/consumer-pc/consumer-static" | grep -q libtivlib; then
  echo "check-install: the static consumer loads libtivlib.so" >&2
  exit 1
fi
echo "check-install: ok (shared and static, CMake and pkg-config, from a moved prefix)"
