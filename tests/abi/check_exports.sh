#!/usr/bin/env bash
# The library's dynamic symbol table must equal the set of functions its public header declares.
set -euo pipefail
lib=$1
header=$2
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /^[TtWi]$/ {print $3}' | sort -u)
declared=$(grep -oE 'GAE_API[[:space:]]+[A-Za-z_][A-Za-z0-9_ *]*[[:space:]*]([A-Za-z_][A-Za-z0-9_]*)[[:space:]]*\(' "$header" \
  | sed -E 's/.*[[:space:]*]([A-Za-z_][A-Za-z0-9_]*)[[:space:]]*\($/\1/' | sort -u)
if [ "$exported" != "$declared" ]; then
  echo "Exported but not declared:"; comm -23 <(echo "$exported") <(echo "$declared")
  echo "Declared but not exported:"; comm -13 <(echo "$exported") <(echo "$declared")
  exit 1
fi
# Nothing else may leak: every defined dynamic symbol is one of the exports.
others=$(nm -D --defined-only "$lib" | awk '$2 !~ /^[TtWi]$/ {print $3}' | grep -vE '^(_init|_fini|_edata|_end|__bss_start)$' || true)
if [ -n "$others" ]; then echo "Unexpected dynamic symbols:"; echo "$others"; exit 1; fi
echo "$(echo "$exported" | wc -l) exports match the header"
