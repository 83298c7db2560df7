#!/usr/bin/env bash
# Installs a build, moves the prefix, and uses what is there as programs outside the tree would.
#
#   package.sh SOURCE_DIR BUILD_DIR CONFIG LIBDIR CC CXX [FLAG...]
#
# The flags are what the libraries were built with and a program has to share: those of sanitizers.
set -euo pipefail
export LC_ALL=C

source_dir=$1 build_dir=$2 config=$3 libdir=$4 cc=$5 cxx=$6
shift 6
flags=("$@")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAILED: $*" >&2; exit 1; }
install_into() { # PREFIX COMPONENT...
  for component in "${@:2}"; do
    cmake --install "$build_dir" --config "$config" --prefix "$1" --component "$component" >/dev/null
  done
}
files_of() { (cd "$1" && find . ! -type d -printf '%P\n' | sort); }

echo "== every file belongs to one component, and only these are installed"
components=$(cut -d ' ' -f 1 "$source_dir/tests/install/files.txt" | uniq)
for component in $components; do
  install_into "$scratch/$component" $component
  files_of "$scratch/$component" |
    sed -E "s|^$libdir/|LIBDIR/|; s|(\.so\.[0-9]+)\.[0-9.]+$|\1.*|; s|-targets-[a-z]+\.|-targets-CONFIG.|
            /^share\/man\//d; s/^/$component /" | sort
done | diff "$source_dir/tests/install/files.txt" - || fail "other files than tests/install/files.txt has"
cmake --install "$build_dir" --config "$config" --prefix "$scratch/first" >/dev/null
diff <(files_of "$scratch/first") <(for component in "$scratch"/[!f]*; do files_of "$component"; done | sort) ||
  fail "files of no component or of two"

echo "== the public headers are all there, and each can be the first"
prefix=$scratch/moved
mv "$scratch/first" "$prefix"
diff <(ls "$source_dir/include/qorvii18n") \
  <(ls --ignore='*export.h' --ignore=version.h "$prefix/include/qorvii18n") || fail "headers"
for header in "$prefix"/include/qorvii18n/*.h "$prefix"/include/qorviks.h; do
  "$cc" -std=c99 -pedantic -Wall -Wextra -Wstrict-prototypes -Werror -I"$prefix/include" \
    -fsyntax-only -x c - < <(echo "#include <${header#"$prefix"/include/}>"; echo 'extern int last;')
done
for header in "$prefix"/include/qorvii18n/*; do
  "$cxx" -std=c++17 -pedantic -Wall -Wextra -Werror -I"$prefix/include" \
    -fsyntax-only -x c++ - < <(echo "#include <${header#"$prefix"/include/}>")
done
for header in "$prefix"/include/qorvii18n/*.hpp; do
  errors=$("$cxx" -std=c++14 -I"$prefix/include" -fsyntax-only -x c++-header "$header" 2>&1 || true)
  grep -q "${header##*/} needs C++17 or later" <<<"$errors" || fail "no word for C++14: $header"
done

echo "== sonames, links and run paths"
for name in qorvii18n qorvii18n-mail qorvii18n-text qorviks; do
  library=$prefix/$libdir/lib$name.so
  soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
  [[ $soname =~ ^lib$name\.so\.[0-9]+$ ]] || fail "lib$name: soname '$soname'"
  [ "$(readlink "$library")" = "$soname" ] || fail "lib$name.so does not lead to $soname"
  [[ $(readlink "$prefix/$libdir/$soname") == "$soname".* ]] || fail "$soname does not lead to the file"
done
runpath() { readelf -d "$prefix/$libdir/lib$1.so" | sed -n 's/.*(R.*PATH).*\[\(.*\)\]/\1/p'; }
[ "$(runpath qorvii18n)$(runpath qorvii18n-mail)$(runpath qorvii18n-text)$(runpath qorviks)" = '$ORIGIN' ] || fail "run path $(runpath qorvii18n)"
if grep -rIlE "$scratch|$build_dir|$source_dir" "$prefix"; then fail "a path of this machine inside"; fi

echo "== C99 program through pkg-config"
export PKG_CONFIG_LIBDIR=$prefix/$libdir/pkgconfig
read -ra cflags < <(pkg-config --cflags qorvii18n)
read -ra libs < <(pkg-config --libs qorvii18n)
[ "${#cflags[@]} ${#libs[@]}" = "1 2" ] || fail "more flags than needed: ${cflags[*]} ${libs[*]}"
pkg-config --exact-version="$(sed -n 's/^project(qorvii18n VERSION \([0-9.]*\).*/\1/p' \
  "$source_dir/CMakeLists.txt")" qorvii18n
pkg-config --exists qorviks
"$cc" "${flags[@]}" -std=c99 -pedantic -Wall -Werror -Wstrict-prototypes "${cflags[@]}" \
  "$source_dir/tests/install/consumer.c" -o "$scratch/consumer_c" "${libs[@]}"
LD_LIBRARY_PATH=$prefix/$libdir "$scratch/consumer_c"

for name in mail text; do
  echo "== $name programs in C99 and C++17 through pkg-config"
  read -ra needed < <(pkg-config --cflags --libs "qorvii18n-$name")
  [ "${#needed[@]}" = 3 ] || fail "more flags than needed: ${needed[*]}"
  program=$source_dir/tests/install/${name}_consumer.c
  "$cc" "${flags[@]}" -std=c99 -pedantic -Wall -Werror -Wstrict-prototypes \
    "$program" -o "$scratch/${name}_c" "${needed[@]}"
  "$cxx" "${flags[@]}" -std=c++17 -pedantic -Wall -Wextra -Werror -x c++ \
    "$program" -o "$scratch/${name}_cpp" "${needed[@]}"
  for program in "${name}_c" "${name}_cpp"; do LD_LIBRARY_PATH=$prefix/$libdir "$scratch/$program"; done
done

# Configures the C++ program against the prefixes in $1, with more arguments for cmake.
configure() {
  rm -rf "$scratch/build"
  CXX=$cxx CXXFLAGS="${flags[*]} -Wall -Wextra -Werror" cmake -S "$source_dir/tests/install/find_package" \
    -B "$scratch/build" -DCMAKE_PREFIX_PATH="$1" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF "${@:2}" >"$scratch/log" 2>&1
}
build_and_run() {
  cmake --build "$scratch/build" >"$scratch/log" 2>&1 || { cat "$scratch/log"; fail "build"; }
  for program in "$scratch"/build/*consumer; do "$program"; done
}

echo "== C++17 program through find_package"
configure "$prefix" || { cat "$scratch/log"; fail "configure"; }
build_and_run
given="^(-isystem|-Wall|-Wextra|-Werror|-DPACKAGE_VERSION=.*|-std=.*|-xc\+\+)$"
for flag in "${flags[@]}"; do given+="|^$flag$"; done
if grep '"command"' "$scratch/build/compile_commands.json" | tr ' ' '\n' |
  grep -E '^-[^Ioc]' | grep -vE -- "$given"; then
  fail "the package adds flags"
fi

[ -x "$scratch/build/mail_consumer" ] && [ -x "$scratch/build/text_consumer" ] || fail "a program is missing"

# PREFIXES COMPONENT REASON: find_package fails, and says why.
refused() {
  if configure "$1" -DCOMPONENTS="$2"; then fail "found $2 in $1"; fi
  tr -s ' \n' ' ' <"$scratch/log" | grep -qF "$3" || { cat "$scratch/log"; fail "no reason: $3"; }
}

for name in text mail; do
  echo "== the $name library alone"
  install_into "$scratch/${name}_alone" common_development $name ${name}_development
  configure "$scratch/${name}_alone" -DCOMPONENTS=$name || { cat "$scratch/log"; fail "configure"; }
  build_and_run
  [ "$(cd "$scratch/build" && ls -- *consumer)" = ${name}_consumer ] || fail "a program with another library"
done
refused "$scratch/mail_alone" qorvii18n "the development files of component qorvii18n are not installed"
refused "$scratch/mail_alone" "" "the development files of component qorvii18n are not installed"
refused "$prefix" "mail;fax" "there is no component fax, but qorviks, qorvii18n, mail, text"

echo "== a libqorviks from elsewhere, without a CMake package"
install_into "$scratch/alone" runtime development common_development
install_into "$scratch/other" kernel_services kernel_services_development
rm -r "$scratch/other/$libdir/cmake" "$scratch/other/$libdir/libqorviks.so"
refused "$scratch/alone" "" "libqorviks, which libqorvii18n loads, was not found"
configure "$scratch/alone;$scratch/other" || { cat "$scratch/log"; fail "configure"; }
LD_LIBRARY_PATH=$scratch/other/$libdir build_and_run
