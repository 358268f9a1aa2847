#!/usr/bin/env bash
# Runs every test program of a build directory under valgrind (memcheck) and reports.
# Usage: tests/valgrind.sh BUILD_DIR [SECONDS_PER_PROGRAM]   (default 900 s)
# A program fails on any memory error or on a definite or indirect leak. Children of tests
# that fork or run the library's tools are followed (--trace-children=yes); system programs
# they start (sh, cmp, ...) are left alone. glibc's clean-up at exit is off: it empties the
# process environment, which would turn the strings handed to putenv (owned by the
# environment for the rest of the process) into false leaks. Exits non-zero when any
# program failed.
set -uo pipefail
build=${1:?usage: tests/valgrind.sh BUILD_DIR [SECONDS_PER_PROGRAM]}
limit=${2:-900}
command -v valgrind >/dev/null || { echo "valgrind: not installed"; exit 2; }

logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT
mapfile -t programs < <(find -L "$build/tests" -maxdepth 2 -type f -name 'test_*' -perm -u+x | sort)
[ ${#programs[@]} -gt 0 ] || { echo "valgrind: no test programs under $build/tests"; exit 2; }

failed=0
# TIV_VALGRIND_SKIP: names of programs to leave out, separated by blanks.
skip=" ${TIV_VALGRIND_SKIP:-} "
for p in "${programs[@]}"; do
  name=$(basename "$p")
  if [[ $skip == *" $name "* ]]; then echo "valgrind: $name skipped"; continue; fi
  start=$SECONDS
  # Tests run in their own temporary directories; the log of a program goes next to it.
  timeout --kill-after=30 "$limit" valgrind --error-exitcode=1 --leak-check=full \
      --errors-for-leak-kinds=definite,indirect --show-leak-kinds=definite,indirect -q \
      --trace-children=yes --trace-children-skip='/bin/*,/usr/bin/*,*/sh,*/cmp' \
      --child-silent-after-fork=no --run-libc-freeres=no \
      "$p" --gtest_brief=1 >"$logs/$name.log" 2>&1
  code=$?
  took=$((SECONDS - start))
  case $code in
    0) echo "valgrind: $name clean (${took}s)" ;;
    124|137) echo "valgrind: $name TIMED OUT after ${limit}s"; failed=1 ;;
    *) echo "valgrind: $name FAILED (exit $code, ${took}s)"
       grep -E '^==[0-9]+==|FAILED|Failure' "$logs/$name.log" | head -n 80
       failed=1 ;;
  esac
done
exit $failed
