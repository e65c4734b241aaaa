#!/usr/bin/env bash
# Installs the built project into a scratch prefix, then builds a tiny consumer
# against it twice, through find_package and through pkg-config, and runs it.
set -euo pipefail
build=$1 consumer=$2 work=$3 cxx=$4
rm -rf "$work"; mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" >/dev/null
libdir=$(ls -d "$work"/prefix/lib*/ | head -n1)
cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
LD_LIBRARY_PATH="$libdir" "$work/cmake-build/consumer"
PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --exists zrparsexmlr
# shellcheck disable=SC2046
"$cxx" -std=c++17 "$consumer/consumer.cpp" -o "$work/consumer-pc" \
  $(PKG_CONFIG_PATH="$libdir/pkgconfig" pkg-config --cflags --libs zrparsexmlr)
LD_LIBRARY_PATH="$libdir" "$work/consumer-pc"
