#!/usr/bin/env bash
# Generates the C-library locales that the tests switch to, when they are
# missing: UTF-8, a single-byte Western one (windows-1252), a double-byte
# Chinese one (GBK), the plain "en_US" that a process in the C locale is moved
# to, a German one whose decimal separator is a comma, under which the reader
# and combiner tests run a second time, and a Pashto one whose separator is
# not even one byte (U+066B). Japanese Shift-JIS is made too where glibc
# manages it; it is not ASCII-compatible, so localedef warns and exits
# non-zero even when it writes the locale, and no test depends on it.
# Exits non-zero if a locale that the tests need is still missing.
set -euo pipefail
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
normal() { tr 'A-Z' 'a-z' | sed 's/[-_]//g'; }
have() { locale -a 2>/dev/null | normal | grep -qx "$(echo "$1" | normal)"; }
make_locale() {  # input charmap name
  have "$3" && return 0
  as_root localedef -i "$1" -f "$2" "$3" >/dev/null 2>&1 || true
}
make_locale en_US UTF-8 en_US.UTF-8
make_locale en_US CP1252 en_US.CP1252
make_locale en_US ISO-8859-1 en_US
make_locale zh_CN GBK zh_CN.GBK
make_locale de_DE UTF-8 de_DE.UTF-8
make_locale ps_AF UTF-8 ps_AF.UTF-8
make_locale ja_JP SHIFT_JIS ja_JP.SJIS
# A code set that ICU does not know: the default converter cannot be opened.
make_locale hy_AM ARMSCII-8 hy_AM.ARMSCII-8

missing=0
for needed in en_US en_US.UTF-8 en_US.CP1252 zh_CN.GBK de_DE.UTF-8 ps_AF.UTF-8; do
  if ! have "$needed"; then
    echo "make-locales: locale $needed could not be generated (package 'locales' and localedef needed)" >&2
    missing=1
  fi
done
exit $missing
