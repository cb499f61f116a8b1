#!/usr/bin/env bash
# What the idle host costs, side by side with the reference tile (a bare Qt program repainting one
# tile once a second) in the same run: the real executables on a private Xvfb with openbox,
# measured from outside through /proc. Cases, three runs each:
#   reference — the reference tile, built from its build.sh into the build directory
#   first     — the first desktop (clock, calendar, weather) with no desktop picture
#   glass     — the first desktop over a 3840 × 2160 desktop picture named by Xfce's settings
#   liquid    — the same with the liquid glass
#   twenty    — 20 tiles of kinds that show the time
#   readings  — the seven kinds that show the machine (system, activity, sensors, battery,
#               network, disk, devices), each at its default size, sampling while in view
#   weather   — two weather tiles whose skies move (High mode), air quality, moon and world map,
#               fed by recorded answers from a loopback server (serve_answers.py)
#   desk      — the first desktop with a running stopwatch and a music tile whose player (a fake
#               on a private session bus) plays: the stopwatch's digits and the music tile's bar
#               keep time
#   web       — the first desktop with a web tile in view showing a still page from loopback:
#               its helper and the web engine's processes are counted as "kids" (their processor
#               time in the window and their PSS), and the host's own figures against the first
#               desktop's
#   workspace — one tile of each workspace and tool kind (notes, quotes, photos, apps, shortcut,
#               clipboard, drop zone, folder, trash, calculator, converter, password generator,
#               toolbox, terminal) at its default size; the terminal runs `uptime` every minute
#   hidden    — no panel and the configuration window closed: the tick must not exist
#   many300, many1000 — 300 and 1,000 tiles, more than the screen holds: how start-up scales
# Per run: processor time (all threads, from schedstat) of the program and of the X server as % of
# one core over the window, RSS and PSS at its end, exec to the first window on screen, and
# voluntary context switches per second summed over all threads. Then min, median and max of each
# figure per case, and the median of program plus X server against the reference's; for glass,
# liquid, readings, weather and workspace also their median processor time, both and wake-ups against the
# first desktop's (desk too). Every case's weather services answer from loopback.
#
#   bench/desktop_idle.sh [BINARY]      (default build-release/tarnwick, else build/tarnwick)
#   SETTLE=5 WINDOW=60 RUNS=3 CASES="reference first glass" REFERENCE=/path/to/reference \
#     bench/desktop_idle.sh
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
  binary="$(readlink -f "$binary")"
  reference_src="${REFERENCE:-$root/../shared/reference}"
  [[ -x "$reference_src/build.sh" ]] ||
    { echo "desktop_idle: no reference at $reference_src (set REFERENCE)" >&2; exit 1; }
  reference="$("$reference_src/build.sh" "$(dirname "$binary")/reference" | tail -1)"
  exec python3 "$root/tests/e2e/xsession.py" -- bash "$0" --inside "$binary" "$reference"
fi

binary="$2"
reference="$3"
server="${XSESSION_SERVER_PID:?desktop_idle: run through xsession.py}"
settle="${SETTLE:-5}"
window="${WINDOW:-60}"
runs="${RUNS:-3}"
results="$(mktemp)"
pictures="$(mktemp -d)"
trap 'rm -rf "$results" "$pictures"' EXIT

# One desktop picture for every run that wants one: vivid bands of changing width and colour.
python3 - "$pictures/picture.ppm" <<'EOF'
import sys
width, height = 3840, 2160
rows = [bytes(v for x in range(width)
              for v in ((x * 3 + y * 40) % 256, (x // (40 + y)) * 50 % 256, (x + 2 * y) % 256))
        for y in range(8)]
with open(sys.argv[1], "wb") as f:
    f.write(b"P6 %d %d 255\n" % (width, height))
    for y in range(height):
        f.write(rows[(y // 120) % len(rows)])
EOF

# Xfce's settings naming the picture, zoomed, for the display's first monitor.
write_picture_setting() {
  local settings="$1/xfce4/xfconf/xfce-perchannel-xml"
  mkdir -p "$settings"
  cat >"$settings/xfce4-desktop.xml" <<EOF
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-desktop"><property name="backdrop"><property name="screen0">
<property name="monitorscreen"><property name="workspace0">
<property name="last-image" type="string" value="$pictures/picture.ppm"/>
<property name="image-style" type="int" value="5"/>
</property></property></property></property></channel>
EOF
}

# Per thread: id, nanoseconds on a processor (finer than the clock ticks of stat) and voluntary
# switches. Threads come and go (a pool lets an idle one go after 30 s), so a window's cost is
# the sum over the threads alive at its end of what each spent since the start, or since it began.
threads() {
  local task
  for task in /proc/"$1"/task/*; do
    printf '%s %s %s\n' "${task##*/}" "$(awk '{print $1}' "$task/schedstat" 2>/dev/null)" \
      "$(awk '/^voluntary_ctxt_switches/ {print $2}' "$task/status" 2>/dev/null)"
  done
}
# "<cpu ns> <voluntary switches>" spent between two snapshots of threads().
spent() {
  awk 'NR == FNR {cpu[$1] = $2; vol[$1] = $3; next}
       $2 != "" {c += $2 - cpu[$1]; v += $3 - vol[$1]}
       END {printf "%.0f %d\n", c, v}' "$1" "$2"
}
rss_kb() { awk '/^VmRSS/ {print $2}' "/proc/$1/status"; }
pss_kb() { awk '/^Pss:/ {print $2}' "/proc/$1/smaps_rollup"; }

# A grid of `count` time-driven small tiles in rows of 14 from the top-left of a 1080-point-high
# screen; past eight rows they lie below the screen and must be brought back and spread out.
write_tiles() {
  python3 - "$1/grid.json" "$2" <<'EOF'
import json, sys, uuid
kinds = ["clock", "simpleclock", "flipclock", "wordclock", "worldclock", "dayprogress",
         "yearprogress", "countdown"]
count = int(sys.argv[2])
columns = 5 if count <= 20 else 14
instances = []
for n in range(count):
    col, row = n % columns, n // columns
    instances.append({"id": str(uuid.uuid4()).upper(), "kind": kinds[n % len(kinds)],
                      "size": "small", "order": n, "page": 0, "col": -1, "row": -1,
                      "posX": 40 + col * 130, "posY": 1040 - row * 130})
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# One tile of each kind that reads the machine, at its default size.
# The sky's tiles: two weather tiles, whose skies move in High mode, air quality, moon and map.
write_weather() {
  python3 - "$1/grid.json" <<'EOF'
import json, sys, uuid
tiles = [("weather", "wide", 40, 1040), ("weather", "large", 340, 1040),
         ("airquality", "small", 640, 1040), ("moon", "wide", 40, 740),
         ("worldmap", "panorama", 340, 740)]
instances = [{"id": str(uuid.uuid4()).upper(), "kind": kind, "size": size, "order": n, "page": 0,
              "col": -1, "row": -1, "posX": x, "posY": y}
             for n, (kind, size, x, y) in enumerate(tiles)]
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

write_readings() {
  python3 - "$1/grid.json" <<'EOF'
import json, sys, uuid
tiles = [("system", "large", 40, 1040), ("activity", "large", 340, 1040),
         ("sensors", "wide", 640, 1040), ("network", "wide", 40, 740),
         ("disk", "large", 340, 740), ("btdevices", "wide", 640, 740),
         ("battery", "small", 640, 600)]
instances = [{"id": str(uuid.uuid4()).upper(), "kind": kind, "size": size, "order": n, "page": 0,
              "col": -1, "row": -1, "posX": x, "posY": y}
             for n, (kind, size, x, y) in enumerate(tiles)]
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# One tile of each workspace and tool kind, at its default size, in rows from the top-left; the
# photo tile's folder holds three 12-megapixel pictures (a new one each minute, as by default).
write_workspace() {
  mkdir -p "$1/pictures"
  for colours in navy-orange teal-pink olive-white; do
    convert -size 4000x3000 "gradient:$colours" "$1/pictures/$colours.jpg"
  done
  python3 - "$1/grid.json" "$1/pictures" <<'EOF'
import json, sys, uuid
tiles = [("stickynote", "small", {}), ("quote", "wide", {}),
         ("photos", "large", {"folder": sys.argv[2]}), ("apps", "large", {}),
         ("shortcut", "small", {"type": "url", "url": "example.org"}), ("clipboard", "large", {}),
         ("dropzone", "small", {}), ("folder", "large", {}), ("trash", "small", {}),
         ("calculator", "large", {}), ("unitconverter", "wide", {}),
         ("passwordgenerator", "wide", {}), ("toolbox", "wide", {}),
         ("terminal", "large", {"command": "uptime", "interval": "60"})]
instances = []
x, y = 40, 1040
for n, (kind, size, settings) in enumerate(tiles):
    width = {"small": 96, "wide": 204, "large": 204}[size]
    if x + width > 1880:
        x, y = 40, y - 240
    instances.append({"id": str(uuid.uuid4()).upper(), "kind": kind, "size": size, "order": n,
                      "page": 0, "col": -1, "row": -1, "posX": x, "posY": y,
                      "settings": settings})
    x += width + 36
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# The first desktop's three tiles with a stopwatch started a minute ago and a music tile beside.
write_desk() {
  python3 - "$1/grid.json" <<'EOF'
import json, sys, time, uuid
tiles = [("clock", "large", 40, 1040, {}), ("calendar", "large", 340, 1040, {}),
         ("weather", "wide", 640, 1040, {}),
         ("stopwatch", "small", 40, 700, {"swAnchor": str(int(time.time()) - 60)}),
         ("nowplaying", "wide", 340, 700, {})]
instances = [{"id": str(uuid.uuid4()).upper(), "kind": kind, "size": size, "order": n, "page": 0,
              "col": -1, "row": -1, "posX": x, "posY": y, "settings": settings}
             for n, (kind, size, x, y, settings) in enumerate(tiles)]
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# The first desktop's three tiles and a web tile showing the page of the loopback page server.
write_web() {
  python3 - "$1/grid.json" "$page_url" <<'EOF'
import json, sys, uuid
tiles = [("clock", "large", 40, 1040, {}), ("calendar", "large", 340, 1040, {}),
         ("weather", "wide", 640, 1040, {}),
         ("web", "wideTall", 40, 700, {"url": sys.argv[2], "refresh": "15"})]
instances = [{"id": str(uuid.uuid4()).upper(), "kind": kind, "size": size, "order": n, "page": 0,
              "col": -1, "row": -1, "posX": x, "posY": y, "settings": settings}
             for n, (kind, size, x, y, settings) in enumerate(tiles)]
json.dump({"instances": instances, "pageCount": 1}, open(sys.argv[1], "w"))
EOF
}

# Every process below `pid`, one a line.
descendants() {
  local child
  for child in $(pgrep -P "$1" || true); do
    echo "$child"
    descendants "$child"
  done
}
# "<cpu ns> <pss kB>" of the processes below `pid`: processor time since each started and PSS now.
kids() {
  local kid cpu=0 pss=0 more
  for kid in $(descendants "$1"); do
    more="$(cat /proc/"$kid"/task/*/schedstat 2>/dev/null | awk '{s += $1} END {printf "%.0f", s}')"
    cpu=$((cpu + ${more:-0}))
    more="$(awk '/^Pss:/ {print $2}' "/proc/$kid/smaps_rollup" 2>/dev/null)"
    pss=$((pss + ${more:-0}))
  done
  echo "$cpu $pss"
}

# A private session bus with one player that plays a long track; sets bus_pid, player_pid and
# bus_address.
start_player() {
  local log="$1/player.log"
  # Forked, not a coprocess: the pointer spy and the answers already are.
  { read -r bus_address; read -r bus_pid; } < <(dbus-daemon --session --fork --print-address=1 \
                                                --print-pid=1)
  DBUS_SESSION_BUS_ADDRESS="$bus_address" /usr/bin/python3 \
    "$root/tests/support/fake_mpris_player.py" bench --json \
    '{"PlaybackStatus": "Playing", "Position": 1000000, "Metadata": {"xesam:title": "Long Play",
      "xesam:artist": ["The Bench"], "mpris:length": 3600000000}}' \
    </dev/null >"$log" 2>&1 &
  player_pid=$!
  local tries=0
  until grep -q ready "$log" 2>/dev/null || ((tries++ > 50)); do sleep 0.1; done
}

# Seconds since the epoch with nanoseconds, as a decimal.
now() { date +%s.%N; }

one_run() {
  local case="$1" data config pid start shown first_ms span
  data="$(mktemp -d)"
  config="$(mktemp -d)"
  mkdir -p "$config/Tarnwick"
  printf '[General]\ntarnwick.openWindowAtLaunch=false\n' >"$config/Tarnwick/Tarnwick.conf"
  case "$case" in
    twenty) write_tiles "$data" 20 ;;
    readings) write_readings "$data" ;;
    weather) write_weather "$data" ;;
    many300) write_tiles "$data" 300 ;;
    many1000) write_tiles "$data" 1000 ;;
    desk) write_desk "$data" ;;
    web) write_web "$data" ;;
    workspace) write_workspace "$data" ;;
  esac
  local desktop=""
  if [[ "$case" == glass || "$case" == liquid ]]; then
    write_picture_setting "$config"
    desktop=XFCE
  fi
  [[ "$case" == liquid ]] && printf 'tarnwick.glassLiquid=true\n' >>"$config/Tarnwick/Tarnwick.conf"
  [[ "$case" == weather ]] && printf 'tarnwick.energyMode=high\n' >>"$config/Tarnwick/Tarnwick.conf"
  local -a env=(TKW_APP_SUPPORT_DIR="$data" XDG_CONFIG_HOME="$config" XDG_RUNTIME_DIR="$config"
                XDG_CURRENT_DESKTOP="$desktop" QT_LOGGING_RULES="*.info=false"
                TKW_ENDPOINT_BASE="$endpoints")
  [[ "$case" == hidden ]] && env+=(TKW_CONFIG_ONLY=1)
  local bus_pid="" player_pid="" bus_address=""
  if [[ "$case" == desk ]]; then
    start_player "$config"
    env+=(DBUS_SESSION_BUS_ADDRESS="$bus_address")
  fi
  local -a command=("$binary")
  [[ "$case" == reference ]] && command=("$reference")
  # Large desktops are measured for their start; their idle window is short.
  span="$window"
  [[ "$case" == many* ]] && span=$((window < 15 ? window : 15))

  # The first panel (or, hidden, the configuration window) taken on by the window manager: the
  # first client of this private display. One watching xprop, so that looking costs nothing.
  coproc SPY { exec xprop -root -spy _NET_CLIENT_LIST; }
  local spy_pid=$SPY_PID line
  read -r -t 5 line <&"${SPY[0]}" || true
  start="$(now)"
  env "${env[@]}" "${command[@]}" >/dev/null 2>&1 &
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
  [[ -n "$shown" ]] || first_ms="never"
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
  local host0 host1 server0 server1 cpu vol xcpu
  host0="$(mktemp)"; host1="$(mktemp)"; server0="$(mktemp)"; server1="$(mktemp)"
  threads "$pid" >"$host0"; threads "$server" >"$server0"
  local kids0 kids1 kcpu kpss
  read -r kids0 _ < <(kids "$pid")
  sleep "$span"
  threads "$pid" >"$host1"; threads "$server" >"$server1"
  read -r kids1 kpss < <(kids "$pid")
  kcpu=$((kids1 > kids0 ? kids1 - kids0 : 0))
  read -r cpu vol < <(spent "$host0" "$host1")
  read -r xcpu _ < <(spent "$server0" "$server1")
  rm -f "$host0" "$host1" "$server0" "$server1"
  local rss pss
  rss="$(rss_kb "$pid")"; pss="$(pss_kb "$pid")"
  kill "$pid"; wait "$pid" 2>/dev/null || true
  if [[ -n "$player_pid" ]]; then
    kill "$player_pid" "$bus_pid" 2>/dev/null || true
    wait "$player_pid" 2>/dev/null || true
  fi
  rm -rf "$data" "$config"
  line="$(awk -v c="$cpu" -v xc="$xcpu" -v w="$span" -v v="$vol" -v rss="$rss" -v pss="$pss" \
              -v first="$first_ms" -v name="$case" -v kc="$kcpu" -v kp="$kpss" 'BEGIN {
    cpu = c / 1e9 / w * 100; x = xc / 1e9 / w * 100
    printf "%s cpu=%.3f%% xserver=%.3f%% both=%.3f%% rss=%.1fMB pss=%.1fMB first_panel=%sms vcsw=%.2f/s kids_cpu=%.3f%% kids_pss=%.1fMB\n",
      name, cpu, x, cpu + x, rss / 1024, pss / 1024, first, v / w, kc / 1e9 / w * 100, kp / 1024 }')"
  echo "$line"
  echo "$line" >>"$results"
}

# Nothing for a case not run (the reference among them), rather than the end of the script.
median_of() {
  { grep "^$1 " "$results" || true; } | tr ' ' '\n' | awk -F= -v k="$2" '$1 == k {print $2}' |
    sed 's/[^0-9.]//g' | awk 'NF' | sort -g | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)] }'
}

summary() {
  local case="$1" key
  for key in cpu xserver both rss pss first_panel vcsw kids_cpu kids_pss; do
    grep "^$case " "$results" | tr ' ' '\n' | awk -F= -v k="$key" '$1 == k {print $2}' |
      sed 's/[^0-9.]//g' | awk 'NF' | sort -g | awk -v k="$key" -v c="$case" '
        { v[NR] = $1 }
        END { if (NR) printf "%s %s min=%s median=%s max=%s\n", c, k, v[1], v[int((NR + 1) / 2)], v[NR] }'
  done
  local mine theirs
  mine="$(median_of "$case" both)"; theirs="$(median_of reference both)"
  if [[ "$case" != reference && -n "$mine" && -n "$theirs" ]]; then
    awk -v a="$mine" -v b="$theirs" -v c="$case" \
      'BEGIN { if (b > 0) printf "%s both/reference=%.2f\n", c, a / b }'
  fi
  if [[ "$case" == glass || "$case" == liquid || "$case" == readings || "$case" == weather ||
        "$case" == desk || "$case" == web || "$case" == workspace ]]; then
    for key in cpu both vcsw pss; do
      mine="$(median_of "$case" "$key")"; theirs="$(median_of first "$key")"
      [[ -n "$mine" && -n "$theirs" ]] || continue
      awk -v a="$mine" -v b="$theirs" -v c="$case" -v k="$key" \
        'BEGIN { if (b > 0) printf "%s %s/first=%.2f\n", c, k, a / b }'
    done
  fi
}

# The weather's services answer from loopback; nothing reaches the internet.
coproc ANSWERS { exec python3 "$(dirname "$0")/serve_answers.py"; }
answers_pid=$ANSWERS_PID
read -r endpoints <&"${ANSWERS[0]}"
trap 'kill "$answers_pid" 2>/dev/null; rm -rf "$results" "$pictures"' EXIT

# The web case's page: still, a heading, text and a block of colour, from loopback.
page_dir="$(mktemp -d)"
python3 - "$page_dir/index.html" <<'EOF'
import sys
para = "<p>" + "A still page for the web tile, with enough words to wrap over lines. " * 6 + "</p>"
open(sys.argv[1], "w").write("<title>Bench page</title><body style='font-family:sans-serif'>"
                             "<h1>Bench page</h1><div style='height:120px;background:#4a8'></div>"
                             + para * 8 + "</body>")
EOF
coproc PAGES { exec python3 -u -c '
import http.server, os, sys
os.chdir(sys.argv[1])
quiet = type("Quiet", (http.server.SimpleHTTPRequestHandler,), {"log_message": lambda *a: None})
server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), quiet)
print("http://127.0.0.1:%d/" % server.server_address[1], flush=True)
server.serve_forever()' "$page_dir"; }
pages_pid=$PAGES_PID
read -r page_url <&"${PAGES[0]}"
trap 'kill "$answers_pid" "$pages_pid" 2>/dev/null; rm -rf "$results" "$pictures" "$page_dir"' EXIT

echo "host: $binary; reference: $reference; settle ${settle}s, window ${window}s, $runs runs per case"
cases="${CASES:-reference first glass liquid twenty readings hidden many300 many1000}"
# Runs alternate between the cases so that a drift of the machine spreads over all of them.
for _ in $(seq 1 "$runs"); do
  for case in $cases; do
    one_run "$case"
  done
done
for case in $cases; do
  summary "$case"
done
