#!/usr/bin/env bash
# Generates the C-library locales that the encoding tests switch to, when they
# are missing: a single-byte Western one and double-byte Chinese and Japanese
# ones, besides UTF-8.
set -euo pipefail
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi; }
have() { locale -a 2>/dev/null | tr 'A-Z' 'a-z' | sed 's/-//g' | grep -qx "$1"; }
make_locale() {  # input charmap name check
  have "$4" && return 0
  as_root localedef -i "$1" -f "$2" "$3" 2>/dev/null || true
}
make_locale en_US UTF-8 en_US.UTF-8 en_us.utf8
make_locale en_US CP1252 en_US.CP1252 en_us.cp1252
make_locale zh_CN GBK zh_CN.GBK zh_cn.gbk
make_locale ja_JP SHIFT_JIS ja_JP.SJIS ja_jp.sjis
