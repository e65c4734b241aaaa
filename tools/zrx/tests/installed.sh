#!/usr/bin/env bash
# zrx as installed by cmake --install: it runs from its prefix and reads the
# schemas installed beside it, not those of the source tree.
#   installed.sh BUILD_DIR DATA_DIR
set -u
build=$1 data=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
cmake --install "$build" --prefix "$prefix" >/dev/null || fail "cmake --install"
zrx=$prefix/bin/zrx
schemas=$prefix/share/zrparsexmlr/schemas
[ -x "$zrx" ] || fail "no bin/zrx"
[ -f "$prefix/share/man/man1/zrx.1" ] || fail "no man page"
for v in 4-2 4-3 4-4; do [ -f "$schemas/pmml-$v.xsd" ] || fail "no pmml-$v.xsd"; done
"$zrx" --version | grep -q '^zrx ' || fail "--version"
"$zrx" validate -q "$data/version_4_2.pmml" "$data/regression.pmml" || fail "validate installed"
# Without its installed 4.2 schema, the program has none for 4.2.
rm "$schemas/pmml-4-2.xsd"
"$zrx" validate -q "$data/version_4_2.pmml" >/dev/null
status=$?
[ $status -eq 3 ] || fail "validate read a schema from outside the prefix (exit $status)"
echo "installed zrx: ok"
