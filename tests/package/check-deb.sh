#!/usr/bin/env bash
# Builds the Debian package from the build tree and checks what it holds and
# what it depends on.
set -euo pipefail
build_dir=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

(cd "$build_dir" && cpack -G DEB -B "$work" > /dev/null)
deb=$(ls "$work"/rovani_*.deb)
contents=$(dpkg-deb -c "$deb" | awk '{print $6}')
for wanted in ./usr/include/Rovani/Rovani.h ./usr/include/Rovani/RVString.h \
              ./usr/lib/cmake/Rovani/RovaniConfig.cmake ./usr/lib/cmake/Rovani/RovaniConfigVersion.cmake \
              ./usr/lib/pkgconfig/rovani.pc ./usr/lib/librovani.so.0 ./usr/bin/rovani \
              "./usr/lib/librovani.so.$(dpkg-deb -f "$deb" Version)"; do
  grep -qxF "$wanted" <<< "$contents" || { echo "missing from the package: $wanted"; exit 1; }
done
if grep -q 'Platform/' <<< "$contents"; then echo "private headers were packaged"; exit 1; fi
depends=$(dpkg-deb -f "$deb" Depends)
for wanted in libgnustep-base libobjc4 libstdc++6; do
  grep -q "$wanted" <<< "$depends" || { echo "no dependency on $wanted: $depends"; exit 1; }
done
echo "package ok: $(basename "$deb") depends on $depends"
