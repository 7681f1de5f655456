#!/bin/sh
# Installs the Debian packages that building and testing libBase need, but
# only those that are missing, so that it also runs for an ordinary user on
# a machine that has them all.
set -eu

packages="cmake ninja-build g++ pkg-config libgtest-dev"

missing=""
for package in $packages; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "ok installed"; then
        missing="$missing $package"
    fi
done
[ -z "$missing" ] && exit 0

echo "Installing:$missing"
if [ "$(id -u)" -eq 0 ]; then
    sudo=""
elif command -v sudo >/dev/null 2>&1; then
    sudo="sudo"
else
    echo "Missing packages:$missing; install them as root (apt-get install -y$missing)." >&2
    exit 1
fi
$sudo apt-get update -qq
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
