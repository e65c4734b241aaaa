#!/usr/bin/env bash
# The progress bar of zrx combine:
#   progress.sh ZRX MANIFEST
# under a pseudo-terminal (script) it is drawn and ends on "4/4 ... done";
# into a file it is drawn only with --progress; --quiet silences it.
set -u
zrx=$1 manifest=$2
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
bar='\[#{30}\] 4/4  [0-9.]+/s  done [0-9]+:[0-9]{2}'

# Under a terminal: stderr is the pty, whose text script writes to its log.
script -qec "'$zrx' combine --split region -m '$manifest' -o '$out/tty.pmml'" "$out/tty.log" \
  >/dev/null </dev/null || fail "combine under a terminal failed"
grep -Eq "$bar" "$out/tty.log" || { cat -v "$out/tty.log"; fail "no finished bar on the terminal"; }
[ -s "$out/tty.pmml" ] || fail "nothing written under a terminal"

script -qec "'$zrx' combine -q --split region -m '$manifest' -o '$out/quiet.pmml'" \
  "$out/quiet.log" >/dev/null </dev/null || fail "combine --quiet under a terminal failed"
if grep -q '#' "$out/quiet.log"; then cat -v "$out/quiet.log"; fail "bar drawn with --quiet"; fi

# Into a file.
"$zrx" combine --split region -m "$manifest" -o "$out/file.pmml" 2>"$out/file.err" \
  || fail "combine into a file failed"
if grep -q '#' "$out/file.err"; then cat "$out/file.err"; fail "bar drawn into a file"; fi
"$zrx" combine --progress --split region -m "$manifest" -o "$out/forced.pmml" 2>"$out/forced.err" \
  || fail "combine --progress failed"
grep -Eq "$bar" "$out/forced.err" || { cat -v "$out/forced.err"; fail "no bar with --progress"; }
"$zrx" combine --progress --quiet --split region -m "$manifest" -o "$out/both.pmml" \
  2>"$out/both.err" || fail "combine --progress --quiet failed"
[ ! -s "$out/both.err" ] || { cat "$out/both.err"; fail "output with --quiet"; }
echo "progress bar: ok"
