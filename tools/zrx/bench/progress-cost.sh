#!/usr/bin/env bash
# The cost of zrx combine's progress bar: combines N generated split models
# (TreeModels of 50 fields, 30 of them shared, and a 40-node tree, one split
# value per model) with --progress and with --quiet, alternating, and prints
# the median CPU time (user + system) of each and their ratio.
#
#   progress-cost.sh ZRX [MODELS (3000)] [RUNS (5)]
set -euo pipefail
zrx=$1 models=${2:-3000} runs=${3:-5}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

awk -v n="$models" -v dir="$work" 'BEGIN {
  shared = 30; own = 20; nodes = 40
  for (m = 0; m < n; ++m) {
    f = dir "/model" m ".pmml"
    printf "<?xml version=\"1.0\"?>\n<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" version=\"4.4\">\n<Header copyright=\"bench\"/>\n<DataDictionary>\n" > f
    for (k = 0; k < shared + own; ++k) {
      name[k] = k < shared ? "s" k : "m" m "_" k
      if (k % 5 == 0) {
        printf "<DataField name=\"%s\" optype=\"categorical\" dataType=\"string\">", name[k] > f
        for (v = 0; v < 4; ++v) printf "<Value value=\"c%d\"/>", (v + m) % 6 > f
        printf "</DataField>\n" > f
      } else
        printf "<DataField name=\"%s\" optype=\"continuous\" dataType=\"double\"/>\n", name[k] > f
    }
    printf "</DataDictionary>\n<TreeModel functionName=\"classification\">\n<MiningSchema>\n" > f
    for (k = 0; k < shared + own; ++k)
      printf "<MiningField name=\"%s\"%s/>\n", name[k], k == 0 ? " usageType=\"target\"" : "" > f
    printf "</MiningSchema>\n" > f
    # A binary tree in document order, written by an explicit stack.
    top = 0; stack[top++] = 0
    while (top > 0) {
      i = stack[--top]
      if (i < 0) { printf "</Node>\n" > f; continue }
      printf "<Node score=\"c%d\">", i % 4 > f
      if (i == 0) printf "<True/>" > f
      else printf "<SimplePredicate field=\"%s\" operator=\"lessThan\" value=\"%d.5\"/>", name[1 + i % (shared + own - 1)], i > f
      stack[top++] = -1
      if (2 * i + 2 < nodes) stack[top++] = 2 * i + 2
      if (2 * i + 1 < nodes) stack[top++] = 2 * i + 1
    }
    printf "</TreeModel>\n</PMML>\n" > f
    close(f)
    printf "model%d.pmml\tr%d\n", m, m > (dir "/manifest.tsv")
  }
}'

run() {  # flag -> CPU seconds (user + system) of the combine
  local TIMEFORMAT='%U %S' times
  times=$( { time "$zrx" combine "$1" --split region -m "$work/manifest.tsv" \
                  -o "$work/out.pmml" 2>/dev/null; } 2>&1 )
  awk -v t="$times" 'BEGIN { split(t, p, " "); printf "%.6f\n", p[1] + p[2] }'
}
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

run --quiet >/dev/null  # warm the page cache
: >"$work/quiet" ; : >"$work/progress"
for ((r = 0; r < runs; ++r)); do
  run --quiet >>"$work/quiet"
  run --progress >>"$work/progress"
done
q=$(median <"$work/quiet")
p=$(median <"$work/progress")
awk -v n="$models" -v r="$runs" -v q="$q" -v p="$p" 'BEGIN {
  printf "%d models, %d runs each: --quiet %.3f s, --progress %.3f s (median CPU), ratio %.4f\n", n, r, q, p, p / q }'
