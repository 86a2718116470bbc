#!/bin/sh
# Runs the fuzz target briefly: the seeds as given (bundled examples, kept reproducers), new
# inputs into a scratch corpus that is removed afterwards. GAE_FUZZ_SECONDS sets the time.
set -e
fuzzer=$1
shift
corpus=$(mktemp -d)
trap 'rm -rf "$corpus"' EXIT
cd "$corpus"
mkdir found
exec_status=0
"$fuzzer" -max_total_time="${GAE_FUZZ_SECONDS:-30}" -timeout=120 -rss_limit_mb=4096 \
  -print_final_stats=1 found "$@" || exec_status=$?
exit $exec_status
