#!/usr/bin/env bash
# zrx validate against xmllint --schema, on a corpus of PMML documents:
#   corpus.sh ZRX SCHEMA_DIR REQUIRE FOLDER...
# Every file under the folders (absent ones are skipped) whose document
# element is in the namespace of PMML 4.2, 4.3 or 4.4 is validated by both
# against the bundled schema of that version; their verdicts must agree.
# Each tool validates all files in one run, so that each schema is loaded
# once. zrx inspect must answer every such file with status 0 or 1, never
# crash. Without any such file the test is skipped (77), or fails if REQUIRE
# is 1.
set -u
zrx=$1 schemas=$2 require=$3
shift 3
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
files=() xsds=()
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
    files+=("$file") xsds+=("$xsd")
  done < <(find "$folder" -type f -print0 | sort -z)
done
checked=${#files[@]}
if [ "$checked" -eq 0 ]; then
  echo "corpus: no document in a PMML 4.2-4.4 namespace"
  [ "$require" = 1 ] && exit 1
  exit 77
fi
for xsd in pmml-4-2.xsd pmml-4-3.xsd pmml-4-4.xsd; do
  group=()
  for i in "${!files[@]}"; do [ "${xsds[$i]}" = "$xsd" ] && group+=("${files[$i]}"); done
  [ ${#group[@]} -gt 0 ] &&
    xmllint --noout --nonet --schema "$schemas/$xsd" "${group[@]}" >>"$out/lint" 2>&1
done
"$zrx" validate "${files[@]}" >"$out/zrx" 2>&1
if grep -Eq 'Sanitizer|runtime error:' "$out/zrx"; then
  cat "$out/zrx"
  exit 1
fi
agreed=0 valid=0
for file in "${files[@]}"; do
  grep -qxF "$file validates" "$out/lint" && lint=valid || lint=invalid
  ours=$(grep -xE "$(printf '%s' "$file" | sed 's/[][\.*^$/]/\\&/g'): (valid|invalid)" "$out/zrx" |
         sed 's/.*: //')
  if [ "$lint" = "$ours" ]; then
    agreed=$((agreed + 1))
    [ "$ours" = valid ] && valid=$((valid + 1))
  else
    echo "DISAGREE $file: xmllint $lint, zrx validate ${ours:-no verdict}"
  fi
  "$zrx" inspect --json "$file" >/dev/null 2>"$out/inspect"
  status=$?
  if [ $status -gt 1 ] || grep -Eq 'Sanitizer|runtime error:' "$out/inspect"; then
    echo "INSPECT $file: exit $status"
    cat "$out/inspect"
    agreed=$((agreed - 1))
  fi
done
[ "$agreed" -eq "$checked" ] || grep -v ': valid$\|: invalid$' "$out/zrx"
echo "corpus: $checked documents in a PMML 4.2-4.4 namespace, $agreed agree ($valid valid)"
[ "$agreed" -eq "$checked" ]
