#!/usr/bin/env bash
# Installs what is missing, builds grainmill and starts it on its default database.
# Extra arguments go to grainmill (for example --database LOCATION).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target grainmill
exec build/release/app/grainmill "$@"
