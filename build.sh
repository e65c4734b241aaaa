#!/usr/bin/env bash
# Set-up, build and checks of zrparsexmlr on a Debian machine. Each command has
# its own CMake preset and build folder (build/<preset>, see CMakePresets.json),
# so the commands can be run in any order without undoing each other.
#
#   ./build.sh example     install what is missing, build, run the example job  (build/default)
#   ./build.sh test        install what is missing, build, run the whole test suite  (build/default)
#   ./build.sh sanitize    the test suite under AddressSanitizer + UndefinedBehaviorSanitizer  (build/asan)
#   ./build.sh tsan        the test suite under ThreadSanitizer  (build/tsan)
#   ./build.sh fuzz [SEC]  build the fuzz targets with clang and run each for SEC seconds (60),
#                          JOBS targets at a time  (build/fuzz)
#   ./build.sh bench       build and run the benchmarks; further arguments go to each  (build/bench)
#   ./build.sh format      format the C++ sources (.clang-format); --check only checks
#   ./build.sh setup       only install what is missing
#
# ZRX_EXTRA_CORPUS_DIR=/path/to/corpus adds that folder's PMML documents (under
# pmml/) to the corpus tests of test, sanitize and tsan. JOBS sets the number of
# parallel jobs (all cores by default).
set -euo pipefail
cd "$(dirname "$0")"
ROOT=$PWD
JOBS=${JOBS:-$(nproc)}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs only the packages that dpkg does not list as installed, and makes
# the locales only when `locale -a` lacks one the tests need.
setup() {
  local wanted=(cmake ninja-build g++ pkg-config libxerces-c-dev libicu-dev libgtest-dev
                libbenchmark-dev clang libclang-rt-14-dev libxml2-utils locales
                libcli11-dev nlohmann-json3-dev clang-format git)
  local missing
  mapfile -t missing < <(dpkg-query -W -f='${Status} ${Package}\n' "${wanted[@]}" 2>/dev/null |
                          awk '$3 == "installed" { print $4 }' |
                          sort | comm -13 - <(printf '%s\n' "${wanted[@]}" | sort))
  if [ ${#missing[@]} -gt 0 ]; then
    echo "installing: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
  fi
  "$ROOT/scripts/make-locales.sh"
}

configure() {  # preset, cmake args...
  local preset=$1; shift
  cmake --preset "$preset" "$@" >/dev/null
}

# The corpus option is given every time, so that a run without it drops an
# extra corpus that an earlier run added.
corpus_args() {
  echo "-DZRX_EXTRA_CORPUS_DIR=${ZRX_EXTRA_CORPUS_DIR:-}"
}

build() {  # build preset
  cmake --build --preset "$1" -j "$JOBS"
}

run_tests() {  # test preset
  ctest --preset "$1" -j "$JOBS"
}

cmd=${1:-test}
case "$cmd" in
  setup)
    setup ;;
  example)
    setup
    configure default "$(corpus_args)"
    build example
    "$ROOT/build/default/examples/zrx_example" "$ROOT/examples" "$ROOT/build/default/example-out" ;;
  test)
    setup
    configure default "$(corpus_args)"
    build default
    run_tests default ;;
  sanitize)
    setup
    configure asan "$(corpus_args)"
    build asan
    run_tests asan ;;
  tsan)
    setup
    configure tsan "$(corpus_args)"
    build tsan
    if [ -f "$ROOT/tests/tsan.supp" ]; then
      export TSAN_OPTIONS="suppressions=$ROOT/tests/tsan.supp"
    fi
    run_tests tsan ;;
  fuzz)
    setup
    secs=${2:-60}
    configure fuzz
    build fuzz
    out="$ROOT/build/fuzz"
    mkdir -p "$out/artifacts" "$out/logs"
    # As many targets at a time as there are jobs, each with its own log.
    names=()
    for f in "$out"/fuzz/fuzz_*; do
      [ -x "$f" ] || continue
      name=$(basename "$f")
      names+=("$name")
      work="$out/corpus/$name"
      mkdir -p "$work"
      inputs=()
      for folder in seeds regressions; do
        [ -d "$ROOT/fuzz/$folder/$name" ] && inputs+=("$ROOT/fuzz/$folder/$name")
      done
      dict=()
      case "$name" in
        fuzz_pmml|fuzz_combiner) dict=(-dict="$ROOT/fuzz/pmml.dict") ;;
        fuzz_settings) dict=(-dict="$ROOT/fuzz/settings.dict") ;;
        fuzz_datamodel) dict=(-dict="$ROOT/fuzz/datamodel.dict") ;;
      esac
      while [ "$(jobs -rp | wc -l)" -ge "$JOBS" ]; do wait -n || true; done
      echo "fuzzing $name for ${secs}s"
      (cd "$out" && rc=0 && "$f" -max_total_time="$secs" -rss_limit_mb=2048 -timeout=20 \
         -print_final_stats=1 -artifact_prefix="$out/artifacts/$name-" "${dict[@]}" \
         "$work" "${inputs[@]}" > "$out/logs/$name.log" 2>&1 || rc=$?
       echo "$rc" > "$out/logs/$name.rc") &
    done
    wait
    failed=0
    for name in "${names[@]}"; do
      echo "== $name"
      tail -n 12 "$out/logs/$name.log"
      [ "$(cat "$out/logs/$name.rc")" = 0 ] || { echo "$name failed (log: $out/logs/$name.log)"; failed=1; }
    done
    exit $failed ;;
  format)
    # Formats every C++ source of the repository with .clang-format; with
    # --check, changes nothing and fails if a file is not formatted.
    setup
    mapfile -t sources < <(git -C "$ROOT" ls-files '*.cpp' '*.h')
    if [ "${2:-}" = --check ]; then
      (cd "$ROOT" && clang-format --dry-run -Werror "${sources[@]}")
      echo "format: ${#sources[@]} files formatted"
    else
      (cd "$ROOT" && clang-format -i "${sources[@]}")
    fi ;;
  bench)
    setup
    configure bench
    build bench
    for b in "$ROOT"/build/bench/bench/bench_*; do
      [ -x "$b" ] && "$b" "${@:2}"
    done ;;
  *)
    echo "usage: $0 {example|test|sanitize|tsan|fuzz [seconds]|bench|format [--check]|setup}" >&2; exit 2 ;;
esac
