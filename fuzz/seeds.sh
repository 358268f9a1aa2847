#!/usr/bin/env bash
# Seeds of every size class for one fuzz target, generated into a corpus directory at run
# time (nothing large is kept in the repository): the sample files, the same with CR LF line
# ends and Windows-1252 bytes, long lines, many siblings and deep nesting.
# Usage: fuzz/seeds.sh TARGET DIR   (TARGET as "env_read" or "fuzz_env_read")
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
name=${1#fuzz_}
dir=$2
mkdir -p "$dir"

repeat() { local n=$1 text=$2 i; for ((i = 0; i < n; i++)); do printf '%s' "$text"; done; }
crlf() { sed 's/$/\r/' "$1"; }
# Windows-1252 letters in names and values: u-umlaut, e-acute, the euro sign, 0xA0.
highbytes() { sed $'s/e/\xe9/g; s/u/\xfc/g; s/0/\x80/g; s/ /\xa0/g' "$1"; }
samples() {
  local f
  for f in "$@"; do
    [ -f "$f" ] || continue
    local base
    base=$(basename "$f")
    cp "$f" "$dir/sample-$base"
    crlf "$f" >"$dir/crlf-$base"
    highbytes "$f" >"$dir/cp1252-$base"
  done
}

case "$name" in
  env_*)
    samples "$root"/examples/data/*.env
    { echo '[Long]'; printf '  value ='; repeat 20000 x; echo; } >"$dir/long-line.env"
    { echo '[Many]'; for ((i = 0; i < 3000; i++)); do echo "  v$((i % 700)) =$i"; done; } \
      >"$dir/many-siblings.env"
    { echo '[Deep]'; repeat 2000 $'  b ={\n'; repeat 2000 $'  }\n'; } >"$dir/deep.env"
    { echo '[Deep]'; repeat 3000 $'  b ={\n'; } >"$dir/deep-open.env"
    ;;
  ini* | mini*)
    samples "$root"/examples/data/*.ini
    { echo '[Long]'; printf 'a='; repeat 600 x; echo; printf 'b='; repeat 5000 y; echo; echo 'c=3'; } \
      >"$dir/long-lines.ini"
    { for ((s = 0; s < 40; s++)); do echo "[S$s]"; for ((i = 0; i < 50; i++)); do
        echo "e$i = v$s.$i"; done; done; } >"$dir/many-entries.ini"
    { echo '[A]'; repeat 3000 $'x=1\n'; echo '[a]'; echo 'X = 2'; } >"$dir/repeats.ini"
    ;;
  profil)
    samples "$root"/examples/catalog/*.PRO
    { head -n 3 "$root/examples/catalog/IPE.PRO"
      for ((i = 0; i < 2000; i++)); do tail -n 1 "$root/examples/catalog/IPE.PRO"; done; } \
      >"$dir/many-rows.PRO"
    ;;
  scan | escapes)
    samples "$root"/examples/data/loads.txt
    { repeat 3000 'a+b*(c-1.5e3) "str" '"'x'"$'\n'; } >"$dir/long-source.txt"
    { printf '"'; repeat 20000 'q'; printf '"\n'; } >"$dir/long-string.txt"
    ;;
  calc)
    { repeat 3000 '('; printf '1'; repeat 3000 ')'; echo; } >"$dir/deep-parens"
    { printf '1'; repeat 8000 '+1'; echo; } >"$dir/long-sum"
    ;;
  tiv_json)
    samples "$root"/examples/data/*.env "$root"/examples/data/*.ini "$root"/examples/data/loads.txt
    ;;
  fio_open)
    cp "$root/examples/data/motorola.bin" "$dir/sample-motorola.bin"
    { cat "$root/examples/data/motorola.bin"; head -c 60000 /dev/zero; } >"$dir/large.bin"
    ;;
esac
