#!/usr/bin/env bash
# Installs what building, running and testing grainmill needs on Debian 12, when missing.
set -euo pipefail

packages=(qt6-base-dev libqt6sql6-sqlite libqt6sql6-psql libsqlite3-dev cmake g++ ninja-build
          postgresql xvfb xauth poppler-utils fonts-dejavu-core)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    if [[ $(id -u) -ne 0 ]]; then sudo_cmd=(sudo); fi
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}" >/dev/null
fi
