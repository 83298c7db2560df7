#!/usr/bin/env bash
# Builds a C project that has the library as a subdirectory, in which a few files are compiled as
# one, and looks for what leaked into it.
#
#   subproject.sh SOURCE_DIR CC CXX
set -euo pipefail

source_dir=$1
export CC=$2 CXX=$3
unset CFLAGS CXXFLAGS
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

cmake -S "$source_dir/tests/install/subproject" -B "$scratch/build" -G Ninja \
  -DCMAKE_UNITY_BUILD=ON -DQORVII18N_SOURCE="$source_dir" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
grep -q 'CMAKE_BUILD_TYPE is not set' "$scratch/log" || fail "no word on the missing optimisation"
cmake --build "$scratch/build" -j2 >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
"$scratch/build/consumer"
"$scratch/build/mail_consumer"
"$scratch/build/text_consumer"

echo "== no flags of ours"
commands=$(grep '"command"' "$scratch/build/compile_commands.json")
[ "$(grep -c consumer.c <<<"$commands")" = 3 ] || fail "no compile command of the program"
if grep consumer.c <<<"$commands" | tr ' ' '\n' | grep -E '^-[^Ioc]'; then
  fail "the program is compiled with flags of ours"
fi
if tr ' ' '\n' <<<"$commands" | grep -E '^-W|/tests/|/bench/|/examples/' | grep -vE '/tests/install/((mail|text)_)?consumer.c'; then
  fail "warnings, tests, benchmarks or examples in a subproject"
fi

echo "== no tests, no files, no options but our own"
[ "$(cd "$scratch/build" && ctest -N | sed -n 's/^Total Tests: //p')" = 0 ] || fail "tests came along"
cmake --install "$scratch/build" --prefix "$scratch/prefix" >/dev/null
[ "$(cd "$scratch/prefix" && find . ! -type d)" = ./bin/consumer ] || fail "files came along"
if sed -n 's/:BOOL=.*//p' "$scratch/build/CMakeCache.txt" |
  grep -vE '^(QORVII18N_[A-Z_]+|CMAKE_[A-Z_]+|BUILD_TESTING)$'; then
  fail "options without our prefix"
fi
if grep -E '^QORVII18N_(BUILD_[A-Z]+|FUZZ|INSTALL):BOOL=ON' "$scratch/build/CMakeCache.txt"; then
  fail "options that are on in a subproject"
fi
