#!/usr/bin/env bash
# Set-up, build and checks of zrparsexmlr on a Debian machine.
#
#   ./build.sh example     install what is missing, build, run the example job
#   ./build.sh test        install what is missing, build, run the whole test suite
#   ./build.sh sanitize    the test suite under AddressSanitizer + UndefinedBehaviorSanitizer
#   ./build.sh fuzz [SEC]  build the fuzz targets with clang and run each for SEC seconds (60)
#   ./build.sh bench       build and run the benchmarks
#   ./build.sh setup       only install what is missing
set -euo pipefail
cd "$(dirname "$0")"
ROOT=$PWD
JOBS=${JOBS:-$(nproc)}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

setup() {
  local wanted=(cmake ninja-build g++ pkg-config libxerces-c-dev libicu-dev libgtest-dev
                libbenchmark-dev clang libclang-rt-14-dev libxml2-utils locales libcli11-dev nlohmann-json3-dev)
  local missing=()
  for p in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    echo "installing: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
  fi
  "$ROOT/scripts/make-locales.sh"
}

configure_build() {  # dir, cmake args...
  local dir=$1; shift
  cmake -S "$ROOT" -B "$ROOT/$dir" -G Ninja "$@" >/dev/null
  cmake --build "$ROOT/$dir" -j "$JOBS"
}

run_tests() {  # dir
  (cd "$ROOT/$1" && ctest --output-on-failure -j "$JOBS")
}

cmd=${1:-test}
case "$cmd" in
  setup)
    setup ;;
  example)
    setup
    configure_build build -DZRX_BUILD_TESTS=OFF -DZRX_BUILD_BENCH=OFF
    "$ROOT/build/examples/zrx_example" "$ROOT/examples" "$ROOT/build/example-out" ;;
  test)
    setup
    configure_build build -DZRX_REQUIRE_CORPUS=ON
    run_tests build ;;
  sanitize)
    setup
    configure_build build-asan -DZRX_SANITIZE=ON -DZRX_BUILD_BENCH=OFF -DZRX_REQUIRE_CORPUS=ON \
      -DCMAKE_BUILD_TYPE=Debug
    ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 \
      run_tests build-asan ;;
  fuzz)
    setup
    secs=${2:-60}
    configure_build build-fuzz -DZRX_FUZZ=ON -DZRX_BUILD_TESTS=OFF -DZRX_BUILD_BENCH=OFF \
      -DZRX_BUILD_EXAMPLES=OFF -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo
    mkdir -p "$ROOT/build-fuzz/artifacts"
    for f in "$ROOT"/build-fuzz/fuzz/fuzz_*; do
      [ -x "$f" ] || continue
      name=$(basename "$f")
      work="$ROOT/build-fuzz/corpus/$name"
      mkdir -p "$work"
      seeds=()
      [ -d "$ROOT/fuzz/seeds/$name" ] && seeds+=("$ROOT/fuzz/seeds/$name")
      echo "fuzzing $name for ${secs}s"
      (cd "$ROOT/build-fuzz" && "$f" -max_total_time="$secs" -rss_limit_mb=2048 -timeout=20 \
         -print_final_stats=1 -artifact_prefix="$ROOT/build-fuzz/artifacts/$name-" \
         "$work" "${seeds[@]}" 2>&1 | tail -n 12)
    done ;;
  bench)
    setup
    configure_build build-bench -DZRX_BUILD_TESTS=OFF -DCMAKE_BUILD_TYPE=Release
    for b in "$ROOT"/build-bench/bench/bench_*; do
      [ -x "$b" ] && "$b" "${@:2}"
    done ;;
  *)
    echo "usage: $0 {example|test|sanitize|fuzz [seconds]|bench|setup}" >&2; exit 2 ;;
esac
