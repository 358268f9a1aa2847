#!/usr/bin/env bash
# Writes the manual page tiv(1) to standard output from the command line's own help texts, so
# that the page says what `tiv --help` says. Usage: tools/make-man.sh PATH-OF-TIV VERSION
set -euo pipefail
tiv=$1
version=${2:-}
commands=("env get" "env set" "env delete" "env dump" "env check" "env merge" "env fmt"
          "ini get" "ini set" "ini delete" "ini rename" "ini list"
          "calc" "scan" "fio header"
          "profil list" "profil get" "profil search" "profil next" "profil prev" "demo")

# Help text as preformatted roff: backslashes escaped, lines that roff would take for requests
# guarded.
verbatim() {
  echo '.nf'
  sed -e 's/\\/\\e/g' -e "s/^\([.']\)/\\\\\&\1/"
  echo '.fi'
}

cat <<ROFF
.TH TIV 1 "" "Tivlib $version" "User Commands"
.SH NAME
tiv \\- read, check and change Tivlib data files from the command line
.SH SYNOPSIS
.B tiv
[\\fIOPTIONS\\fR] \\fICOMMAND\\fR [\\fIARGUMENTS\\fR]
.SH DESCRIPTION
ROFF
"$tiv" --help | verbatim
echo '.SH COMMANDS'
for c in "${commands[@]}"; do
  echo ".SS \"tiv $c\""
  # shellcheck disable=SC2086
  "$tiv" $c --help | verbatim
done
cat <<'ROFF'
.SH EXIT STATUS
.TP
.B 0
done
.TP
.B 1
not found: a section, entry, element, catalogue section or binary header
.TP
.B 2
usage: a wrong command line, a bad path or number on it
.TP
.B 3
bad format: a syntax error, a value not of the asked type, an expression error, a file a
change would lose or garble
.TP
.B 4
I/O: a file that can't be read or written, what is no regular file, out of memory
.SH FILES
The library's log goes to a private temporary directory of the run (under TMPDIR or /tmp)
and is shown on standard error when a command fails.
.SH SEE ALSO
The README of Tivlib: "Files from Windows" and "Safe changes".
ROFF
