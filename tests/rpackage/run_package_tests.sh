#!/bin/sh
# The R package's testthat tests: the package is copied, installed into a temporary library
# against this build's archive, and tested there. Exit 77 (skipped) when R lacks testthat or
# R/qtl, which the tests check against.
R="$1"; root="$2"; build="$3"
"$R" --vanilla --slave -e 'ok <- all(c("testthat", "qtl") %in% rownames(installed.packages())); quit(status = if (ok) 0 else 77)'
status=$?
[ "$status" -eq 0 ] || exit "$status"
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
mkdir "$work/lib" "$work/src"
# The glue compiles through ccache when there is one, and without debug information.
{ printf 'CXX20FLAGS = -O2\n'; command -v ccache >/dev/null && printf 'CXX20 = ccache g++\n'; } >"$work/Makevars"
cp -R "$root/rpackage/gaengine" "$work/src/" && rm -f "$work"/src/gaengine/src/*.o "$work"/src/gaengine/src/*.so
R_MAKEVARS_USER="$work/Makevars" GAENGINE_ROOT="$root" GAENGINE_BUILD="$build" "$R" CMD INSTALL --no-docs -l "$work/lib" "$work/src/gaengine" \
  >"$work/install.log" 2>&1 || { cat "$work/install.log"; exit 1; }
cd "$work/src/gaengine/tests" && R_LIBS="$work/lib" "$R" --vanilla --slave -e \
  'library(testthat); library(gaengine); test_dir("testthat", reporter = "summary", stop_on_failure = TRUE)'
