#!/usr/bin/env bash
# Runs zrx once and compares what it printed and its exit status with a
# golden file:
#
#   golden.sh ZRX GOLDEN [ARG...]
#
# The run starts in the current folder. In the arguments, @OUT@ stands for a
# fresh scratch folder, and corpus:REL for the first file under one of the
# folders of ZRX_CORPUS_DIRS (separated by :) whose path ends in /REL; without
# one the test is skipped (77). Environment: ZRX_STDIN, a file given to zrx as
# standard input; ZRX_SHOW, a file (after @OUT@ replacement) whose text is
# appended to the record; ZRX_EXISTS, a file whose presence is recorded. In
# the record the scratch folder reads OUT and the
# corpus folder CORPUS. ZRX_UPDATE_GOLDEN=1 rewrites the golden file.
set -u
zrx=$1 golden=$2
shift 2
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

args=()
corpus_root=
for arg in "$@"; do
  arg=${arg//@OUT@/$out}
  if [[ $arg == corpus:* ]]; then
    rel=${arg#corpus:}
    found=
    IFS=':' read -r -a roots <<<"${ZRX_CORPUS_DIRS:-}"
    for root in "${roots[@]}"; do
      [ -n "$root" ] && [ -d "$root" ] || continue
      found=$(find "$root" -type f -path "*/$rel" -print -quit)
      if [ -n "$found" ]; then corpus_root=${found%/"$rel"}; break; fi
    done
    if [ -z "$found" ]; then echo "corpus file $rel not found: skipped"; exit 77; fi
    arg=$found
  fi
  args+=("$arg")
done

stdin=${ZRX_STDIN:-/dev/null}
"$zrx" "${args[@]}" <"$stdin" >"$out/.stdout" 2>"$out/.stderr"
status=$?
{
  echo "== stdout"; cat "$out/.stdout"
  echo "== stderr"; cat "$out/.stderr"
  echo "== exit $status"
  if [ -n "${ZRX_SHOW:-}" ]; then
    show=${ZRX_SHOW//@OUT@/$out}
    echo "== ${ZRX_SHOW}"
    if [ -f "$show" ]; then cat "$show"; else echo "(no file)"; fi
  fi
  if [ -n "${ZRX_EXISTS:-}" ]; then
    if [ -e "${ZRX_EXISTS//@OUT@/$out}" ]; then echo "== ${ZRX_EXISTS} written"; else echo "== ${ZRX_EXISTS} not written"; fi
  fi
} >"$out/.record"
if [ -n "$corpus_root" ]; then
  sed -i "s|$corpus_root|CORPUS|g" "$out/.record"
fi
sed -i "s|$out|OUT|g" "$out/.record"

if [ "${ZRX_UPDATE_GOLDEN:-0}" = 1 ]; then
  cp "$out/.record" "$golden"
  echo "updated $golden"
  exit 0
fi
if ! diff -u "$golden" "$out/.record"; then
  echo "differs from $golden (ZRX_UPDATE_GOLDEN=1 rewrites it)"
  exit 1
fi
