#!/usr/bin/env bash
# Compares what the built libraries export and import with the lists beside this script.
#
#   check.sh exports LIBRARY             everything that it exports
#   check.sh imports LIBRARY SERVICES    what it takes from libqorviks, and from ICU
set -euo pipefail
export LC_ALL=C

here=$(cd "$(dirname "$0")" && pwd)

exports() { nm -DC --defined-only "$1" | cut -d ' ' -f 3- | sort; }

imports() { nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//' | sort; }

# LIST: standard input against the list. Clang leaves out variants of constructors that nobody can
# call, those of complete objects of abstract classes: so a name counts once.
compare() {
  local differences
  differences=$(diff <(grep -v '^#' "$here/$1" | uniq) <(uniq) | sed -n 's/^< /  missing: /p; s/^> /  not in the list: /p') || true
  [ -n "$differences" ] || return 0
  echo "different from tests/exports/$1:"
  echo "$differences"
  return 1
}

library=$2
case $1 in
  exports)
    name=$(basename "$library")
    exports "$library" | compare "${name%%.so*}.txt" || {
      echo "If the change is meant: tools/abi-check --update. What libqorviks exports is fixed."
      exit 1
    }
    ;;
  imports)
    comm -12 <(imports "$library") <(exports "$3") | compare libqorviks.txt
    # ICU's names end with its version. Only the C interface of its converters is meant to be used.
    if imports "$library" | grep -E '^[A-Za-z].*_[0-9]+$' | grep -vE '^(ucnv|UCNV)_'; then
      echo "imports of ICU other than its converters"
      exit 1
    fi
    ;;
esac
