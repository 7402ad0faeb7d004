#!/usr/bin/env bash
# Installs what is missing, builds, starts a throwaway PostgreSQL cluster on a loopback port and
# runs every test on SQLite and on PostgreSQL. The cluster is removed however the run ends.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh

cmake --preset default
cmake --build --preset default

pgbin=$(dirname "$(dpkg -L postgresql-15 2>/dev/null | grep '/bin/initdb$' | head -n1)")
if [[ ! -x "$pgbin/initdb" ]]; then
    echo "PostgreSQL server programs not found" >&2
    exit 1
fi

pgdir=$(mktemp -d /tmp/grainmill-pg.XXXXXX)
as_pg=()
if [[ $(id -u) -eq 0 ]]; then
    chown postgres:postgres "$pgdir"
    as_pg=(runuser -u postgres --)
fi

port=55432
while (echo >"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do port=$((port + 1)); done

stop_cluster() {
    "${as_pg[@]}" "$pgbin/pg_ctl" -D "$pgdir/data" -m immediate stop >/dev/null 2>&1 || true
    rm -rf "$pgdir"
}
trap stop_cluster EXIT

"${as_pg[@]}" "$pgbin/initdb" -D "$pgdir/data" -U grainmill -A trust -E UTF8 --locale=C.UTF-8 >/dev/null
"${as_pg[@]}" "$pgbin/pg_ctl" -D "$pgdir/data" -l "$pgdir/server.log" -w \
    -o "-p $port -k $pgdir -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off -c full_page_writes=off -c max_connections=100" \
    start >/dev/null
echo "Test PostgreSQL server on 127.0.0.1:$port"

export GRAINMILL_TEST_PG_URL="postgresql://grainmill@127.0.0.1:$port/postgres"
export QT_QPA_PLATFORM=offscreen
ctest --preset default "$@"
