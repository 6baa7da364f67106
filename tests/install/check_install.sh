#!/bin/sh
# Installs a build into a temporary prefix, compares what is there with a list, and builds and runs a program and a
# plug-in against it, once through CMake and once through pkg-config.
#
# Usage: check_install.sh <build directory> <library directory below the prefix> [<flags for compilers>]
# CMAKE, CC and CXX name the tools.
set -eu

build=$1
libdir=$2
flags=${3:-}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

fail() {
  echo "$*" >&2
  exit 1
}

expect() {
  [ "$1" = "$2" ] || fail "$3: expected '$2', got '$1'"
}

# Runs a command quietly; when it fails, shows what it said and ends with the message given first.
quietly() {
  message=$1
  shift
  "$@" > "$work/log" 2>&1 || {
    cat "$work/log"
    fail "$message"
  }
}

quietly "install failed" "$CMAKE" --install "$build" --prefix "$prefix"

# What is installed, with the place of libraries written as LIB and the kind of build as CONFIG.
(cd "$prefix" && find . ! -type d) |
  sed -e 's|^\./||' -e "s|^$libdir/|LIB/|" -e 's|qxpafTargets-[a-z]*\.|qxpafTargets-CONFIG.|' |
  LC_ALL=C sort > "$work/files.txt"
diff -u "$here/installed_files.txt" "$work/files.txt" || fail "the installed files are not those of installed_files.txt"

library=$prefix/$libdir/libqxpaf.so
dynamic=$(readelf -d "$library")
soname=$(echo "$dynamic" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
expect "$soname" "libqxpaf.so.5" "soname"
# DT_RPATH would come before LD_LIBRARY_PATH; plug-ins beside the library must come after it.
expect "$(echo "$dynamic" | sed -n 's/.*(RUNPATH).*\[\(.*\)\]/\1/p')" '$ORIGIN' "run path"
expect "$(echo "$dynamic" | grep -c '(RPATH)' || true)" 0 "entries of the old run path"
if [ -z "$flags" ]; then
  others=$(echo "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
    grep -Ev '^(libstdc\+\+|libgcc_s|libc|libm|libpthread|libdl|ld-linux.*)\.so' || true)
  expect "$others" "" "libraries beyond the standard ones"
fi
if grep -rlF -e "$build" -e "$here" "$prefix/include" "$prefix/$libdir/cmake" "$prefix/$libdir/pkgconfig"; then
  fail "installed files name the build tree"
fi

run() {
  (cd "$work" && LD_LIBRARY_PATH=$1 "$2")
}
answer="0 found 1 High St"

quietly "find_package failed" "$CMAKE" -S "$here/consumer" -B "$work/by-cmake" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_CXX_STANDARD=17
quietly "building by CMake failed" "$CMAKE" --build "$work/by-cmake"
expect "$(run "$work/by-cmake" "$work/by-cmake/application")" "$answer" "the program built by CMake"

PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
export PKG_CONFIG_PATH
expect "$(pkg-config --modversion qxpaf)" "5.10.246" "version of the pkg-config file"
mkdir "$work/by-hand"
strict="-Wall -Wextra -Wpedantic -Werror"
# shellcheck disable=SC2046,SC2086  # the flags are lists
quietly "building by pkg-config failed" "$CC" -std=c99 $strict $flags "$here/consumer/application.c" \
  -o "$work/by-hand/application" $(pkg-config --cflags --libs qxpaf) -Wl,-rpath,"$prefix/$libdir"
# shellcheck disable=SC2046,SC2086
quietly "building the plug-in failed" "$CXX" -std=c++17 $strict $flags -fPIC -shared -fvisibility=hidden \
  $(pkg-config --cflags qxpaf) "$here/consumer/plugin.cpp" -o "$work/by-hand/libconsumer.so"
expect "$(run "$work/by-hand" "$work/by-hand/application")" "$answer" "the program built by pkg-config"

# A plug-in installed beside the library is found without any environment.
cp "$work/by-hand/libconsumer.so" "$prefix/$libdir/"
expect "$(cd "$work" && env -u LD_LIBRARY_PATH "$work/by-hand/application")" "$answer" "a plug-in beside the library"
