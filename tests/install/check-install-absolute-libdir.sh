#!/usr/bin/env bash
# Configures the libraries alone with an absolute CMAKE_INSTALL_LIBDIR, as
# some packaging does, builds them, installs them with a prefix other than the
# configured one, and builds the encoding consumer against the pkg-config
# file, which must name the libdir as given and the install's own prefix.
set -euo pipefail
source=$1 consumer=$2 work=$3 cxx=$4 generator=$5
rm -rf "$work"; mkdir -p "$work"
prefix="$work/prefix"
libdir="$work/prefix/arch/lib"
cmake -S "$source" -B "$work/build" -G "$generator" -DCMAKE_CXX_COMPILER="$cxx" \
      -DCMAKE_BUILD_TYPE=Debug -DZRX_BUILD_TESTS=OFF -DZRX_BUILD_BENCH=OFF -DZRX_BUILD_EXAMPLES=OFF \
      -DCMAKE_INSTALL_PREFIX=/nonexistent/zrparsexmlr -DCMAKE_INSTALL_LIBDIR="$libdir" >/dev/null
cmake --build "$work/build" --parallel 2 >/dev/null
cmake --install "$work/build" --prefix "$prefix" >/dev/null
unset LD_LIBRARY_PATH

export PKG_CONFIG_PATH="$libdir/pkgconfig"
expect() {  # variable, value
  local got
  got=$(pkg-config --variable="$1" zrparsexmlr)
  [ "$got" = "$2" ] || { echo "check-install: $1 is '$got', not '$2'" >&2; exit 1; }
}
expect prefix "$prefix"
expect libdir "$libdir"
expect includedir "$prefix/include"
# shellcheck disable=SC2046
"$cxx" -std=c++17 -Wl,--as-needed "$consumer/EncodingConsumer.cpp" -o "$work/encoding-consumer-pc" \
  $(pkg-config --cflags --libs zrparsexmlr) -Wl,-rpath,"$libdir"
"$work/encoding-consumer-pc"
