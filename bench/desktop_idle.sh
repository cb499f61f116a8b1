#!/usr/bin/env bash
# What the idle host costs: the real executable on a private Xvfb with openbox, measured from
# outside through /proc. Three cases, three runs each:
#   first    — the first desktop (clock, calendar, weather)
#   twenty   — 20 tiles of kinds that show the time
#   hidden   — no panel and the configuration window closed: the tick must not exist
# Per run: processor time (utime + stime) as % of one core over the window, RSS and PSS at its end,
# exec to the first panel on screen, and voluntary context switches per second. Then min, median
# and max of each figure per case.
#
#   bench/desktop_idle.sh [BINARY]      (default build-release/tarnwick, else build/tarnwick)
#   SETTLE=5 WINDOW=60 RUNS=3 bench/desktop_idle.sh
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"

if [[ "${1:-}" != "--inside" ]]; then
  binary="${1:-}"
  if [[ -z "$binary" ]]; then
    for candidate in "$root/build-release/tarnwick" "$root/build/tarnwick"; do
      [[ -x "$candidate" ]] && { binary="$candidate"; break; }
    done
  fi
  [[ -x "${binary:-}" ]] || { echo "desktop_idle: build the host first (make build)" >&2; exit 1; }
  exec python3 "$root/tests/e2e/xsession.py" -- bash "$0" --inside "$(readlink -f "$binary")"
fi

binary="$2"
settle="${SETTLE:-5}"
window="${WINDOW:-60}"
runs="${RUNS:-3}"
ticks="$(getconf CLK_TCK)"
results="$(mktemp)"
trap 'rm -f "$results"' EXIT

cpu_ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
voluntary() { awk '/^voluntary_ctxt_switches/ {print $2}' "/proc/$1/status"; }
rss_kb() { awk '/^VmRSS/ {print $2}' "/proc/$1/status"; }
pss_kb() { awk '/^Pss:/ {print $2}' "/proc/$1/smaps_rollup"; }

# A grid of 20 time-driven tiles, placed in rows from the top-left of a 1080-point-high screen.
write_twenty() {
  python3 - "$1/grid.json" <<'EOF'
import json, sys, uuid
kinds = ["clock", "simpleclock", "flipclock", "wordclock", "worldclock", "dayprogress",
         "yearprogress", "countdown"]
instances = []
for n in range(20):
    col, row = n % 5, n // 5
    instances.append({"id": str(uuid.uuid4()).upper(), "kind": kinds[n % len(kinds)],
                      "size": "small", "order": n, "page": 0, "col": -1, "row": -1,
                      "posX": 40 + col * 130, "posY": 1040 - row * 130})
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# Seconds since the epoch with nanoseconds, as a decimal.
now() { date +%s.%N; }

one_run() {
  local case="$1" data config pid start shown cpu0 cpu1 vol0 vol1 first_ms
  data="$(mktemp -d)"
  config="$(mktemp -d)"
  mkdir -p "$config/Tarnwick"
  printf '[General]\ntarnwick.openWindowAtLaunch=false\n' >"$config/Tarnwick/Tarnwick.conf"
  [[ "$case" == twenty ]] && write_twenty "$data"
  local -a env=(TKW_APP_SUPPORT_DIR="$data" XDG_CONFIG_HOME="$config" XDG_RUNTIME_DIR="$config"
                QT_LOGGING_RULES="*.info=false")
  [[ "$case" == hidden ]] && env+=(TKW_CONFIG_ONLY=1)

  # The first panel (or, hidden, the configuration window) taken on by the window manager: the
  # first client of this private display. One watching xprop, so that looking costs nothing.
  coproc SPY { exec xprop -root -spy _NET_CLIENT_LIST; }
  local spy_pid=$SPY_PID line
  read -r -t 5 line <&"${SPY[0]}" || true
  start="$(now)"
  env "${env[@]}" "$binary" >/dev/null 2>&1 &
  pid=$!
  shown=""
  while read -r -t 20 line <&"${SPY[0]}"; do
    if [[ "$line" == *"# 0x"* ]]; then
      shown="$(now)"
      break
    fi
  done
  kill "$spy_pid" 2>/dev/null || true
  wait "$spy_pid" 2>/dev/null || true
  first_ms="$(awk -v a="$start" -v b="${shown:-$start}" 'BEGIN {printf "%.0f", (b - a) * 1000}')"
  if [[ "$case" == hidden ]]; then
    # Close the configuration window the way a person does; its views go half a second later.
    local win
    win="$(xprop -root _NET_CLIENT_LIST | grep -o '0x[0-9a-f]*' | head -1 || true)"
    if [[ -n "$win" ]]; then
      sleep 1
      xdotool windowactivate --sync "$win" key --clearmodifiers alt+F4 2>/dev/null || true
    fi
    sleep 1
    if xprop -root _NET_CLIENT_LIST | grep -q "window id # 0x"; then
      echo "desktop_idle: the configuration window did not close" >&2
    fi
    first_ms="-"
  fi
  sleep "$settle"
  cpu0="$(cpu_ticks "$pid")"; vol0="$(voluntary "$pid")"
  sleep "$window"
  cpu1="$(cpu_ticks "$pid")"; vol1="$(voluntary "$pid")"
  local rss pss
  rss="$(rss_kb "$pid")"; pss="$(pss_kb "$pid")"
  kill "$pid"; wait "$pid" 2>/dev/null || true
  rm -rf "$data" "$config"
  local line
  line="$(awk -v c0="$cpu0" -v c1="$cpu1" -v t="$ticks" -v w="$window" -v v0="$vol0" -v v1="$vol1" \
              -v rss="$rss" -v pss="$pss" -v first="$first_ms" -v name="$case" 'BEGIN {
    printf "%s cpu=%.3f%% rss=%.1fMB pss=%.1fMB first_panel=%sms vcsw=%.2f/s\n",
      name, (c1 - c0) / t / w * 100, rss / 1024, pss / 1024, first, (v1 - v0) / w }')"
  echo "$line"
  echo "$line" >>"$results"
}

summary() {
  local case="$1" key
  for key in cpu rss pss first_panel vcsw; do
    grep "^$case " "$results" | tr ' ' '\n' | awk -F= -v k="$key" '$1 == k {print $2}' |
      sed 's/[^0-9.]//g' | grep -v '^$' | sort -g | awk -v k="$key" -v c="$case" '
        { v[NR] = $1 }
        END { if (NR) printf "%s %s min=%s median=%s max=%s\n", c, k, v[1], v[int((NR + 1) / 2)], v[NR] }'
  done
}

echo "host: $binary; settle ${settle}s, window ${window}s, $runs runs per case"
cases="${CASES:-first twenty hidden}"
for case in $cases; do
  for _ in $(seq 1 "$runs"); do
    one_run "$case"
  done
done
for case in $cases; do
  summary "$case"
done
