#!/usr/bin/env bash
# Builds and installs static libraries, moves the prefix, and links C and C++ programs against them.
#
#   static.sh SOURCE_DIR CC CXX
set -euo pipefail

source_dir=$1
export CC=$2 CXX=$3
unset CFLAGS CXXFLAGS
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
quietly() { "$@" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }; }

quietly cmake -S "$source_dir" -B "$scratch/build" -G Ninja -DBUILD_SHARED_LIBS=OFF \
  -DCMAKE_UNITY_BUILD=ON -DCMAKE_INSTALL_LIBDIR=lib -DQORVII18N_BUILD_TESTS=OFF -DQORVII18N_BUILD_EXAMPLES=OFF
quietly cmake --build "$scratch/build" -j2
quietly cmake --install "$scratch/build" --prefix "$scratch/first"
prefix=$scratch/moved
mv "$scratch/first" "$prefix"
if find "$prefix" -name '*.so*' | grep .; then exit 1; fi
if readelf -SW "$prefix"/lib/*.a | grep gnu.lto; then exit 1; fi # code, for any linker

echo "== C99 programs through pkg-config"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
programs=$source_dir/tests/install
"$CC" -std=c99 "$programs/consumer.c" -o "$scratch/consumer" $(pkg-config --cflags --libs qorvii18n)
"$scratch/consumer"
for name in mail text; do
  "$CC" -std=c99 "$programs/${name}_consumer.c" -o "$scratch/${name}_consumer" \
    $(pkg-config --cflags --libs qorvii18n-$name)
  "$scratch/${name}_consumer"
done

# The C++ program has an imsg_print of its own, and takes the other services from the library.
for project in find_package find_package_c; do
  echo "== programs through $project"
  quietly cmake -S "$programs/$project" -B "$scratch/$project" -DCMAKE_PREFIX_PATH="$prefix"
  quietly cmake --build "$scratch/$project"
  for program in "$scratch/$project"/*consumer; do "$program"; done
done
