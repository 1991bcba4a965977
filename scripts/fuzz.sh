#!/usr/bin/env bash
# Builds every fuzz target and runs each for some seconds on its corpus; fails on the first finding
# of any, whose input then lies in build-fuzz/artifacts/.
#   scripts/fuzz.sh [seconds]               all targets, 30 seconds each
#   scripts/fuzz.sh seconds fuzz_track ...  the named targets
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
shift || true

scripts/install-packages.sh build fuzz
cmake --preset fuzz

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/fuzz_*.cpp; do targets+=("$(basename "$source" .cpp)"); done
fi

cmake --build --preset fuzz -j "$(scripts/cores.sh)" --target "${targets[@]}"

failed=()
for target in "${targets[@]}"; do
  subject=${target#fuzz_}
  # What a run finds of interest is kept beside the build; the seeds in the repository stay few.
  mkdir -p "build-fuzz/corpus/$subject" build-fuzz/artifacts
  options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
           -artifact_prefix="$PWD/build-fuzz/artifacts/$target-")
  [ -f "fuzz/dict/$subject.dict" ] && options+=(-dict="$PWD/fuzz/dict/$subject.dict")
  corpora=("$PWD/build-fuzz/corpus/$subject")
  [ -d "fuzz/corpus/$subject" ] && corpora+=("$PWD/fuzz/corpus/$subject")
  echo "== $target, $seconds s"
  "build-fuzz/fuzz/$target" "${options[@]}" "${corpora[@]}" || failed+=("$target")
done

if [ ${#failed[@]} -ne 0 ]; then
  echo "Findings in: ${failed[*]} (inputs in build-fuzz/artifacts/)" >&2
  exit 1
fi
