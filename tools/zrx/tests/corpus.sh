#!/usr/bin/env bash
# zrx validate against xmllint --schema, on a corpus of PMML documents:
#   corpus.sh ZRX SCHEMA_DIR REQUIRE FOLDER...
# Every file under the folders (absent ones are skipped) whose document
# element is in the namespace of PMML 4.2, 4.3 or 4.4 is validated by both
# against the bundled schema of that version; their verdicts must agree.
# zrx inspect must answer every such file with status 0 or 1, never crash.
# Without any such file the test is skipped (77), or fails if REQUIRE is 1.
set -u
zrx=$1 schemas=$2 require=$3
shift 3
checked=0 agreed=0 valid=0
for folder in "$@"; do
  [ -d "$folder" ] || { echo "absent, skipped: $folder"; continue; }
  while IFS= read -r -d '' file; do
    space=$(xmllint --xpath 'namespace-uri(/*)' "$file" 2>/dev/null) || continue
    case "$space" in
      http://www.dmg.org/PMML-4_2) xsd=pmml-4-2.xsd ;;
      http://www.dmg.org/PMML-4_3) xsd=pmml-4-3.xsd ;;
      http://www.dmg.org/PMML-4_4) xsd=pmml-4-4.xsd ;;
      *) continue ;;
    esac
    checked=$((checked + 1))
    xmllint --noout --nonet --schema "$schemas/$xsd" "$file" >/dev/null 2>&1
    lint=$?
    "$zrx" validate -q "$file" >/tmp/zrx-corpus-$$.out 2>&1
    ours=$?
    # A sanitizer's report (its exit status may look like a verdict).
    if grep -Eq 'Sanitizer|runtime error:' /tmp/zrx-corpus-$$.out; then
      ours="sanitizer: $(grep -Em1 'Sanitizer|runtime error:' /tmp/zrx-corpus-$$.out)"
    fi
    if { [ $lint -eq 0 ] && [ "$ours" = 0 ]; } || { [ $lint -ne 0 ] && [ "$ours" = 1 ]; }; then
      agreed=$((agreed + 1))
      [ "$ours" = 0 ] && valid=$((valid + 1))
    else
      echo "DISAGREE $file: xmllint $lint, zrx validate $ours"
      cat /tmp/zrx-corpus-$$.out
    fi
    "$zrx" inspect --json "$file" >/dev/null 2>/tmp/zrx-corpus-$$.out
    status=$?
    if [ $status -gt 1 ] || grep -Eq 'Sanitizer|runtime error:' /tmp/zrx-corpus-$$.out; then
      echo "INSPECT $file: exit $status"
      cat /tmp/zrx-corpus-$$.out
      agreed=$((agreed - 1))
    fi
  done < <(find "$folder" -type f -print0 | sort -z)
done
rm -f /tmp/zrx-corpus-$$.out
echo "corpus: $checked documents in a PMML 4.2-4.4 namespace, $agreed agree ($valid valid)"
if [ $checked -eq 0 ]; then
  [ "$require" = 1 ] && { echo "no corpus document found"; exit 1; }
  exit 77
fi
[ $agreed -eq $checked ]
