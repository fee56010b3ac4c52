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

# Each header alone must let a plain C++ program use what it declares: every
# class it names is complete, and each handle it declares answers the base
# members (Description and ClassType return strings).
classes=$(grep -ho 'class RV_EXPORT [A-Za-z]*' "$include_dir"/Rovani/*.h | awk '{print $3}' | sort -u)
for header in "$include_dir"/Rovani/*.h; do
  name=$(basename "$header")
  [ "$name" = RVDefines.h ] && continue  # declarations only
  unit="$work/use-$name.cpp"
  echo "#include <Rovani/$name>" > "$unit"
  for class in $classes; do
    grep -v '^\s*//' "$header" | grep -qw "$class" || continue
    echo "static_assert(sizeof($class) > 0, \"$class is complete\");" >> "$unit"
  done
  for class in $(grep -o 'class RV_EXPORT [A-Za-z]* : public RVObject' "$header" | awk '{print $3}'); do
    echo "bool Use(const $class& h) { return h.Description().Length() + $class::ClassType().Length() + h.ObjectsClassType().Length() > 0 && !h.IsEmpty(); }" >> "$unit"
  done
  if [ "$name" = RVObject.h ]; then
    echo "bool Use(const RVObject& h) { return h.Description().Length() + RVObject::ClassType().Length() > 0; }" >> "$unit"
  fi
  for compiler in g++ clang++; do
    "$compiler" -std=c++17 -Wall -Wextra -Werror -Wno-unused-function -fsyntax-only -I "$include_dir" "$unit" ||
      { echo "header $name is not usable on its own as plain C++ with $compiler"; exit 1; }
  done
done

g++ -std=c++17 -Wall -Wextra -Werror -I "$include_dir" "$source_dir/consumer.cpp" \
    -L "$lib_dir" -lrovani -Wl,-rpath,"$lib_dir" -o "$work/consumer"
# Its settings go to stores of its own, never the real ones.
printf 'GNUSTEP_USER_DEFAULTS_DIR=%s\n' "$work/user-defaults" > "$work/GNUstep.conf"
GNUSTEP_CONFIG_FILE="$work/GNUstep.conf" ROVANI_ALL_USERS_DEFAULTS_DIR="$work/all-users" \
  "$work/consumer"
test -f "$work/all-users/consumer.plist"
