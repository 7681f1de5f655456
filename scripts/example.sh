#!/bin/sh
# Builds libBase, installs it into install/ inside the checkout, then builds
# the example program against the installed package, once through CMake's
# find_package and once through pkg-config, and runs it.
set -eu
cd "$(dirname "$0")/.."
root=$(pwd)

scripts/deps.sh
cmake --preset default
cmake --build --preset default
cmake --install build/default --prefix "$root/install"

cmake -S examples -B build/example -G Ninja -DCMAKE_PREFIX_PATH="$root/install"
cmake --build build/example

PKG_CONFIG_PATH="$root/install/lib/pkgconfig" g++ -std=c++20 examples/main.cpp \
    $(PKG_CONFIG_PATH="$root/install/lib/pkgconfig" pkg-config --cflags --libs base) \
    -Wl,-rpath,"$root/install/lib" -o build/example/base-example-pkgconfig
build/example/base-example-pkgconfig >/dev/null

build/example/base-example "Grüße, 世界 😀"
