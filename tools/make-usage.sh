#!/bin/bash
# Writes the usage guide (docs/usage.md) to standard output from real runs of a built tiv on a
# copy of the samples. Usage: tools/make-usage.sh [PATH-OF-TIV] > docs/usage.md
root=$(cd "$(dirname "$0")/.." && pwd)
T=$(realpath "${1:-$root/build/release/tools/tiv}")
W=$(mktemp -d /tmp/tiv-usage.XXXXXX)
cp "$root"/examples/data/* "$W"; cp -r "$root/examples/catalog" "$W/catalog"
cd "$W"
show() {
  echo '```console'
  printf '$ tiv'; for a in "$@"; do if [[ "$a" =~ [[:space:]\"\*\?\<\>\|\&\;\(\)\$] || -z "$a" ]]; then printf ' "%s"' "$a"; else printf ' %s' "$a"; fi; done; echo
  "$T" "$@" 2>&1; rc=$?
  [ $rc -ne 0 ] && echo "(exit code $rc)"
  echo '```'
  echo
}
showin() { # stdin text, then args
  local input="$1"; shift
  echo '```console'
  printf "\$ printf '%s' | tiv" "$input"; for a in "$@"; do printf ' %s' "$a"; done; echo
  printf "$input" | "$T" "$@" 2>&1; rc=$?
  [ $rc -ne 0 ] && echo "(exit code $rc)"
  echo '```'
  echo
}
cat <<'MD'
## Using the `tiv` command line

`tiv` reads, checks and changes the library's data files without a program of your own: environment
files, settings files, binary files, the section catalogue, and it evaluates expressions and
tokenises text. It uses only the library's public C interface. Build it with the rest
(`cmake --workflow --preset demo` builds everything and runs `tiv demo`); it is installed as
`<prefix>/bin/tiv`, with the sample files under `<prefix>/share/tivlib/examples`.

```console
$ tiv --help
MD
"$T" --help
cat <<'MD'
```

Conventions:

- Results go to standard output, messages to standard error as `tiv: FILE:LINE: message` (the
  parts that are not known are left out). Every subcommand has `--help` with an example.
- Exit codes: **0** done, **1** not found (section, entry, element, section of the catalogue, a
  binary header), **2** usage (a wrong command line, a bad path or number on it), **3** bad format
  (a syntax error, a value that is not of the asked type, an expression error), **4** I/O (a file
  that cannot be read or written). A command that goes on after a failure (several files or
  expressions) ends with the largest code it met.
- `--json` prints structured results (values, lists, dumps, tokens, headers, catalogue rows) as
  JSON for scripts.
- Lines and columns that `tiv` prints count from 1.
- The library's log: `tiv` points it (`zv_set_log_file`) into a private temporary directory of
  the run, removed at the end. When a command fails, what the library reported follows the
  message on standard error (`tiv: the library reported:`). A `zv.err` in the working directory
  is never created, emptied or overwritten.
- A value that begins with a minus sign and a letter or a parenthesis needs `--` in front of
  it, as with other Unix tools: `tiv calc -- "-(2+3)"`. Negative numbers pass as they are.
- Numbers are read and written in the C locale whatever locale is set.

The examples below run on a copy of `examples/data` and `examples/catalog`.

### Environment files: `tiv env`

An environment file holds `[Section]` headers, `name =value` entries and blocks `name ={ ... }`.
An element is addressed by its section and a path of names joined by `@`; a number behind a
name picks one of several elements of that name.

```console
$ cat wall.env
MD
cat wall.env
echo '```'; echo
echo '`get` prints a value, as text or typed (`--double`, `--long`, `--list`), or the names of a block (`--names`):'; echo
show env get wall.env Wall height --double
show env get wall.env Wall layer@2@name
show env get wall.env Wall openings --list --long --json
show env get wall.env Wall --names
show env get wall.env Wall layer@2
show env get wall.env Wall width
echo '`dump` prints every value with its full position path, as the leaf walk of the library gives it:'; echo
show env dump wall.env
echo '`set` stores a value (creating the file, the section and the path when missing), `delete` removes an element with all below it or a whole section. Both write the file back in normal form: two blanks of indentation per level, `name =value`, and no comments.'; echo
show env set wall.env Wall layer@3@thickness 0.14
show env delete wall.env Wall layer@1
show env get wall.env Wall layer@2@thickness
echo '`check` checks the syntax of files and tells the line of the first error:'; echo
echo '```console'; echo '$ cat broken.env'; cat broken.env; echo '```'; echo
show env check wall.env broken.env
echo '`merge` copies the values of a source into a target in one of the four modes of `env_sink`: `add` (only where the target has nothing), `append` (as new last elements), `replace` (always) and `update` (only where the target has a value). `-o` writes the result elsewhere; `-` is standard output.'; echo
show env merge wall.env defaults.env --mode update -o -
echo '`fmt` writes files back in normal form; `--check` only tells, `--stdout` prints.'; echo
show env fmt defaults.env --check
show env fmt defaults.env --stdout

cat <<'MD'
### Settings files: `tiv ini`

Settings files hold `[section]` headers and `entry=value` lines, read and changed directly on
disk by the `ini_` family. An empty section name (`""`) is the part in front of the first header.
A change rewrites the part of the file in front of the change in normal form and keeps the rest
byte for byte.

MD
show ini list project.ini
show ini list project.ini Units --values
show ini get project.ini Project storeys --long
show ini get project.ini Grid spacing --list --json
show ini get project.ini Units mass
show ini set project.ini Units mass t
show ini rename project.ini Units Measures
show ini delete project.ini Grid
echo '```console'; echo '$ cat project.ini'; cat project.ini; echo; echo '```'; echo

cat <<'MD'
### Expressions: `tiv calc`

Each argument, or each line of standard input, is one expression: `+ - * / ^`, comparisons,
`AND OR NOT`, `cond ? a : b`, `PI` and the functions `SIN COS TAN COT ASN ACS ATN ACT SQRT EXP LGT
LOG MIN MAX`, with angles in degrees. `--decimals N` rounds the results; without it the
`[Calculator]` setting `Nachkommastellen` of the central settings file applies. An error
prints its number, the column and a caret under the expression.

MD
show calc "2*(3+4)" "sin(30)" "MAX(1, 7, 3) ^ 2" "-2^2"
show calc --decimals 3 "PI/7"
show calc "1 + 2 * (3 - x)"
showin '10/4\n(1+2\n' calc --json

cat <<'MD'
### Tokens: `tiv scan`

The token stream of a file (or `-` for standard input) under the scanner's flags, one token a
line: position, kind and text. `--keywords` turns words into keywords. A token with a problem
is reported on standard error (exit code 3).

MD
echo '```console'; echo '$ cat loads.txt'; cat loads.txt; echo '```'; echo
show scan loads.txt --flags line-comment,relations --keywords IF,THEN
showin 'x = "open\n' scan - --flags eol

cat <<'MD'
### Binary files: `tiv fio header`

The 16-byte header of a binary file and the byte order its tag gives. A file without a header
gives exit code 1.

MD
show fio header motorola.bin
show fio header motorola.bin --json
show fio header project.ini

cat <<'MD'
### The section catalogue: `tiv profil`

The catalogue is a directory of `*.PRO` tables, one per family of sections. `--dir` names it;
without `--dir` the `Profile` entry of `[System]` in the central settings file `zv2.ini` (in
the working directory, or in the directory `$ZV`) does. A query names a section by kind and size:
`IPE 200` is the first IPE of size 200 or more, `IPE (200)` exactly 200, `100x50` any kind.
Values are in the units of the files unless `--si` converts them to metres.

MD
show profil list --dir catalog
show profil list "100x50" --dir catalog
show profil get "HEB 150" --dir catalog --items h,b,A,Iy
show profil get "L (50x5)" --dir catalog --si --json
show profil search IPE --where "Iy>=1000" --where "h<=250" --dir catalog --items h,b,Iy
show profil next IPE "IPE 300" --limit 3 --dir catalog --items h,Iy
show profil prev UPN --limit 2 --dir catalog --items h,Iy
show profil get "HEB 999" --dir catalog

cat <<'MD'
### The tour: `tiv demo`

`tiv demo` copies the sample files to a scratch directory and runs every family on them, showing
each command line and its output; the samples themselves do not change. It finds the samples
beside the installed tool, or takes `--examples DIR`. The start of its output:

MD
echo '```console'; echo '$ tiv demo'; "$T" demo --examples "$root/examples" 2>&1 | sed -n '1,12p'; echo '...'; echo '```'
cd /; rm -rf "$W"
