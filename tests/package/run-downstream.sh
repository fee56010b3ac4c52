#!/usr/bin/env bash
# Installs the library into a staging prefix, then builds and runs a small
# downstream program against it twice: with find_package(Rovani) and with
# pkg-config. Neither build names GNUstep or the C++ standard itself. Also
# checks what the installation holds and what the library exports.
set -euo pipefail
build_dir=$1
source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" > /dev/null
test -f "$work/prefix/share/man/man1/rovani.1"
test -f "$work/prefix/share/bash-completion/completions/rovani"

# The library exports its interface and nothing the compilers add on their
# own: no standard-library template instances, no selector strings or
# class-reference caches. Callers still find what they must: the class
# BoolNumber, and the type information that catches RVError* and RVString*.
exports=$(nm -D --defined-only "$(find "$work/prefix" -name 'librovani.so.*.*.*')" | awk '{print $3}')
stray=$(grep -E '^(_ZNSt|_ZSt|_ZN9__gnu_cxx|_ZZNSt|\.objc_sel_name|__objc_class_ref|__objc_class_name_RVUUID)' <<< "$exports" || true)
if [ -n "$stray" ]; then echo "the library exports names outside its interface:"; echo "$stray" | head; exit 1; fi
for wanted in _OBJC_CLASS_BoolNumber __objc_class_name_BoolNumber _ZTIP7RVError _ZTIP8RVString \
              _ZplRK8RVStringPKc kNullStringBuffer; do
  grep -qxF "$wanted" <<< "$exports" || { echo "the library does not export $wanted"; exit 1; }
done

cmake -S "$source_dir/downstream" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_CXX_COMPILER=g++ > /dev/null
cmake --build "$work/cmake-build" > /dev/null
"$work/cmake-build/downstream"

pc_dir=$(dirname "$(find "$work/prefix" -name rovani.pc | head -n 1)")
export PKG_CONFIG_PATH=$pc_dir
pkg-config --atleast-version 0.2 rovani
# The installed program runs and finds the installed library on its own.
version=$("$work/prefix/bin/rovani" --version)
if [ "$version" != "rovani $(pkg-config --modversion rovani)" ]; then
  echo "unexpected version line from the installed rovani: $version"
  exit 1
fi
lib_dir=$(pkg-config --variable=libdir rovani)
# shellcheck disable=SC2046
g++ "$source_dir/downstream/main.cpp" $(pkg-config --cflags --libs rovani) \
    -Wl,-rpath,"$lib_dir" -o "$work/pkg-config-downstream"
"$work/pkg-config-downstream"
