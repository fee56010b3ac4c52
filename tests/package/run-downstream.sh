#!/usr/bin/env bash
# Installs the library into a staging prefix, then builds and runs a small
# downstream program against it twice: with find_package(Rovani) and with
# pkg-config. Neither build names GNUstep or the C++ standard itself.
set -euo pipefail
build_dir=$1
source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" > /dev/null

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
