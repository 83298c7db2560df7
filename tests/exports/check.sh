#!/usr/bin/env bash
# Compares what the built libraries export and import with the symbols of Debian packages.
#
#   check.sh exports SYMBOLS LIBRARY    LIBRARY exports these symbols
#   check.sh imports SYMBOLS LIBRARY    LIBRARY takes all of them, those of libqorviks, and nothing
#                                       from ICU but its converters
set -euo pipefail
export LC_ALL=C

# Clang leaves out variants of constructors that nobody can call, those of complete objects of
# abstract classes: so a name counts once, as it does in the packages.
exports() { nm -DC --defined-only "$1" | cut -d ' ' -f 3- | sort -u; }
imports() { nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//' | sort; }
recorded() { sed -n 's/^ \((c++)"\)\?\(.*\)@Base.*/\2/p' "$1" | sort; }

symbols=$2
library=$3
case $1 in
  exports)
    diff -U 0 --label "$symbols" --label "$library" \
      <(recorded "$symbols") <(exports "$library") || {
      echo "If the change is meant: tools/abi-check --update. What libqorviks exports is fixed."
      exit 1
    }
    ;;
  imports)
    if comm -23 <(recorded "$symbols") <(imports "$library") | grep .; then
      echo "not imported"
      exit 1
    fi
    # ICU's names end with its version. Only the C interface of its converters is meant to be used.
    if imports "$library" | grep -E '^[A-Za-z].*_[0-9]+$' | grep -vE '^(ucnv|UCNV)_'; then
      echo "imports of ICU other than its converters"
      exit 1
    fi
    ;;
esac
