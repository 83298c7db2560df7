#!/usr/bin/env bash
# Compares what the built libraries export and import with the lists beside this script.
#
#   check.sh [--update] [LIBQORVII18N LIBQORVIKS]
#
# The libraries are those of build/release unless they are named. --update writes the list of
# libqorvii18n anew; that of the kernel services is fixed.
set -euo pipefail
export LC_ALL=C

here=$(cd "$(dirname "$0")" && pwd)
update=false
if [ "${1-}" = --update ]; then update=true; shift; fi
library=${1-$here/../../build/release/lib/i18n/libqorvii18n.so}
services=${2-$here/../../build/release/lib/ks/libqorviks.so}
status=0

exports() { nm -DC --defined-only "$1" | cut -d ' ' -f 3- | sort; }

imports() { nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//' | sort; }

# WHAT LIST_FILE: standard input against the list, as a list of differences. Clang leaves out variants of
# constructors that nobody can call, those of complete objects of abstract classes.
compare() {
  local differences
  if differences=$(diff <(grep -v '^#' "$here/$2" | uniq) <(uniq) | sed -n 's/^< /  missing: /p; s/^> /  not in the list: /p'); then
    echo "$1: as listed"
  else
    echo "$1 differ from tests/exports/$2:"
    echo "$differences"
    status=1
  fi
}

if $update; then
  { grep '^#' "$here/libqorvii18n.txt"; exports "$library"; } >"$here/new.txt"
  mv "$here/new.txt" "$here/libqorvii18n.txt"
fi
compare "exports of libqorvii18n" libqorvii18n.txt < <(exports "$library")
compare "exports of libqorviks" libqorviks.txt < <(exports "$services")
compare "imports from libqorviks" libqorviks.txt \
  < <(comm -12 <(imports "$library") <(exports "$services"))
# ICU's names end with its version. Only the C interface of its converters is meant to be used.
if imports "$library" | grep -E '^[A-Za-z].*_[0-9]+$' | grep -vE '^(ucnv|UCNV)_'; then
  echo "imports of ICU other than its converters"
  status=1
fi
exit $status
