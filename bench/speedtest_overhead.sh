#!/usr/bin/env bash
# What the speed test itself costs: `tarnwick --speedtest-cli` against the build's speed test host
# (tkw_speedtest_server) held to RATE Mbit/s on loopback, RUNS times. Per run: the processor time
# of the test (user + system, all threads) per gigabit it moved (what the host served and
# swallowed), its measured download against the line's rate, and the host's own processor time.
# A download well under the rate while the test's processor time is far from a whole core means
# the host or the machine was the limit, not the measuring.
#
#   bench/speedtest_overhead.sh [BINARY] [SERVER]   (default build-release/, else build/)
#   RATE=1000 RUNS=3 bench/speedtest_overhead.sh
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
rate="${RATE:-1000}"
runs="${RUNS:-3}"

find_built() {
  for candidate in "$root/build-release/$1" "$root/build/$1"; do
    [[ -x "$candidate" ]] && { echo "$candidate"; return; }
  done
}
binary="${1:-$(find_built tarnwick)}"
server="${2:-$(find_built tkw_speedtest_server)}"
[[ -x "${binary:-}" && -x "${server:-}" ]] ||
  { echo "speedtest_overhead: build tarnwick and tkw_speedtest_server first" >&2; exit 1; }

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

printf '%-4s %10s %10s %12s %12s %10s\n' run moved_GB down_Mbit cpu_s cpu_s/Gbit host_cpu_s
for run in $(seq "$runs"); do
  fifo="$scratch/in$run"
  mkfifo "$fifo"
  /usr/bin/time -f "%U %S" -o "$scratch/host$run" "$server" --mbit "$rate" \
    <"$fifo" >"$scratch/served$run" &
  exec 3>"$fifo"
  until grep -q '^port=' "$scratch/served$run" 2>/dev/null; do sleep 0.05; done
  port="$(sed -n 's/^port=//p' "$scratch/served$run")"
  XDG_CONFIG_HOME="$scratch/config" TKW_ENDPOINT_BASE="http://127.0.0.1:$port" \
    QT_LOGGING_RULES='*.info=false' /usr/bin/time -f "%U %S" -o "$scratch/cli$run" \
    "$binary" --speedtest-cli >"$scratch/out$run"
  exec 3>&-
  wait
  read -r served swallowed < <(sed -n 's/^served=\([0-9]*\) swallowed=\([0-9]*\)/\1 \2/p' \
    "$scratch/served$run")
  down="$(tail -1 "$scratch/out$run" | sed -n 's/.* down=\([0-9.]*\).*/\1/p')"
  read -r user sys <"$scratch/cli$run"
  read -r huser hsys < <(tail -1 "$scratch/host$run")
  awk -v r="$run" -v s="$served" -v w="$swallowed" -v d="${down:-0}" -v u="$user" -v y="$sys" \
    -v hu="$huser" -v hy="$hsys" 'BEGIN {
      bits = (s + w) * 8; cpu = u + y
      printf "%-4s %10.2f %10.1f %12.2f %12.3f %10.2f\n", r, (s + w) / 1e9, d, cpu,
             cpu / (bits / 1e9), hu + hy }'
  tail -1 "$scratch/out$run" | sed 's/^/     last line: /'
done
