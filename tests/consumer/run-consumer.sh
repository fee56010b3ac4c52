#!/usr/bin/env bash
# Installs the library into a scratch prefix, checks that every installed
# header compiles on its own as plain C++17 under g++ and clang++, then
# builds consumer.cpp with g++ against that prefix and runs it.
set -euo pipefail
build_dir=$1
source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" > /dev/null
include_dir="$work/prefix/include"
lib_dir=$(dirname "$(find "$work/prefix" -name 'librovani.so' | head -n 1)")

for header in "$include_dir"/Rovani/*.h; do
  for compiler in g++ clang++; do
    echo "#include <Rovani/$(basename "$header")>" |
      "$compiler" -std=c++17 -Wall -Wextra -Werror -fsyntax-only -x c++ -I "$include_dir" - ||
      { echo "header $(basename "$header") does not compile as plain C++ with $compiler"; exit 1; }
  done
done

g++ -std=c++17 -Wall -Wextra -Werror -I "$include_dir" "$source_dir/consumer.cpp" \
    -L "$lib_dir" -lrovani -Wl,-rpath,"$lib_dir" -o "$work/consumer"
# Its settings go to stores of its own, never the real ones.
printf 'GNUSTEP_USER_DEFAULTS_DIR=%s\n' "$work/user-defaults" > "$work/GNUstep.conf"
GNUSTEP_CONFIG_FILE="$work/GNUstep.conf" ROVANI_ALL_USERS_DEFAULTS_DIR="$work/all-users" \
  "$work/consumer"
test -f "$work/all-users/consumer.plist"
