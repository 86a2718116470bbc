#!/bin/sh
# Runs the fuzz target briefly: the seeds as given (bundled examples, kept reproducers), new
# inputs into a scratch corpus that is removed afterwards; an input that fails is kept in the
# folder the test runs in. GAE_FUZZ_SECONDS sets the time (5 s by default). Paths must be
# absolute: the target works in a scratch folder of its own.
fuzzer=$1
shift
here=$(pwd)
corpus=$(mktemp -d)
trap 'rm -rf "$corpus"' EXIT
"$fuzzer" -max_total_time="${GAE_FUZZ_SECONDS:-5}" -timeout=120 -rss_limit_mb=4096 \
  -print_final_stats=1 -artifact_prefix="$here/" "$corpus" "$@"
