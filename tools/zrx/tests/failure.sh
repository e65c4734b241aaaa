#!/usr/bin/env bash
# zrx when the machine fails under it:
#   failure.sh ZRX MANIFEST
# A combine into a full disk (a file size limit, unprivileged) exits 5 and
# leaves yesterday's output as it was, permission bits included, with
# nothing beside it, also when the limit's signal ends zrx; the output may be
# a symbolic link, which stays one. A reader that goes away ends inspect
# quietly; an unwritable standard output gives status 5 and a message.
set -u
zrx=$1 manifest=$2
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
old="yesterday's combined model"

# Limits the files of zrx to 1 KiB, with SIGXFSZ ignored (a failed write) or
# at its default (zrx ends on it), and expects the status and the old file.
full_disk() {
  local how=$1 expected=$2
  mkdir -p "$out/real" && echo "$old" >"$out/real/churn.pmml" && chmod 640 "$out/real/churn.pmml"
  (ulimit -f 1; trap "$how" XFSZ; exec "$zrx" combine -q --split region -m "$manifest" \
    -o "$out/real/churn.pmml") 2>"$out/err"
  local status=$?
  [ "$status" = "$expected" ] || fail "full disk ($how): exit $status, not $expected"
  [ "$(cat "$out/real/churn.pmml")" = "$old" ] || fail "full disk ($how): old file changed"
  [ "$(stat -c %a "$out/real/churn.pmml")" = 640 ] || fail "full disk ($how): mode changed"
  [ "$(ls -A "$out/real")" = churn.pmml ] || fail "full disk ($how): left $(ls -A "$out/real")"
}
full_disk '' 5
grep -q 'status 118' "$out/err" || fail "full disk: no status 118 in: $(cat "$out/err")"
full_disk - $((128 + 25))

# Through a symbolic link.
ln -s real/churn.pmml "$out/link.pmml"
"$zrx" combine -q --split region -m "$manifest" -o "$out/link.pmml" || fail "combine via link"
[ -L "$out/link.pmml" ] || fail "the link was replaced"
grep -q '<Segmentation' "$out/real/churn.pmml" || fail "the link's file was not written"
[ "$(stat -c %a "$out/real/churn.pmml")" = 640 ] || fail "mode changed through the link"

# Standard output: a reader that goes away, with SIGPIPE at its default or
# ignored by the caller; a full one; a closed one.
for i in $(seq 3000); do echo "<Field name=\"f$i\" storage=\"real\" measure=\"continuous\"/>"; done |
  { echo "<DataModel><Fields>"; cat; echo "</Fields></DataModel>"; } >"$out/big.xml"
for how in - ''; do
  (trap "$how" PIPE; "$zrx" inspect "$out/big.xml" 2>"$out/err" | head -1 >/dev/null)
  [ -s "$out/err" ] && fail "inspect | head (SIGPIPE '$how') said: $(cat "$out/err")"
done
"$zrx" inspect "$out/big.xml" >/dev/full 2>"$out/err"
[ $? = 5 ] || fail "inspect >/dev/full: not exit 5"
grep -q "can't write standard output" "$out/err" || fail "inspect >/dev/full: no message"
"$zrx" inspect "$out/big.xml" >&- 2>"$out/err"
[ $? = 5 ] || fail "inspect >&-: not exit 5"
echo "ok"
