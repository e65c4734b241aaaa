#!/usr/bin/env bash
# Installs the built project into a scratch prefix and moves the installed
# tree elsewhere: nothing in it may depend on where it was first put. Then
# builds the consumers against it, through find_package and through
# pkg-config, and runs them with no LD_LIBRARY_PATH. The encoding consumer
# links with --as-needed, so it does not itself load libzrcommonr: the
# library must find it by its own run path.
set -euo pipefail
build=$1 consumer=$2 work=$3 cxx=$4
rm -rf "$work"; mkdir -p "$work"
cmake --install "$build" --prefix "$work/staged" >/dev/null
mv "$work/staged" "$work/prefix"
libdir=$(ls -d "$work"/prefix/lib*/ | head -n1)
libdir=${libdir%/}
unset LD_LIBRARY_PATH

not_needed() {  # program, library: the library is not among the program's own needs
  if readelf -d "$1" | grep NEEDED | grep -q "$2"; then
    echo "check-install: $1 loads $2 itself; --as-needed did not drop it" >&2
    exit 1
  fi
}

cmake -S "$consumer" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer"
not_needed "$work/cmake-build/encoding_consumer" libzrcommonr
"$work/cmake-build/encoding_consumer"

export PKG_CONFIG_PATH="$libdir/pkgconfig"
pkg-config --exists zrparsexmlr
# shellcheck disable=SC2046
"$cxx" -std=c++17 "$consumer/Consumer.cpp" -o "$work/consumer-pc" \
  $(pkg-config --cflags --libs zrparsexmlr) -Wl,-rpath,"$libdir"
"$work/consumer-pc"
# shellcheck disable=SC2046
"$cxx" -std=c++17 -Wl,--as-needed "$consumer/EncodingConsumer.cpp" -o "$work/encoding-consumer-pc" \
  $(pkg-config --cflags --libs zrparsexmlr) -Wl,-rpath,"$libdir"
not_needed "$work/encoding-consumer-pc" libzrcommonr
"$work/encoding-consumer-pc"
