# Sourced from the project's folder: a simulated device as COM1 in a configuration folder of its own, a display where there
# is none, and the console on them, all from the folder $bin. What was started ends with the script that sourced this.

bin=${bin:-$PWD/build/release/bin}
mkdir -p build/run
# The operator's own stored properties and port map stay untouched.
run=$(mktemp -d "$PWD/build/run/XXXXXX")
export XDG_CONFIG_HOME=$run/config

children=()
finish() {
  trap - EXIT
  for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
  wait
  rm -rf "$run" ${sway:+"$sway"}
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# wait_until PID COMMAND...: until the command holds; false when the process ends first or ten seconds have gone.
wait_until() {
  local pid=$1
  shift
  for _ in {1..1000}; do
    "$@" && return 0
    kill -0 "$pid" 2>/dev/null || return 1
    sleep 0.01
  done
  return 1
}

# Its standard input is the script's: what is typed goes to the simulator.
start_simulator() {
  local link=$XDG_CONFIG_HOME/tarnwell/ports/com1
  mkdir -p "$(dirname "$link")"
  "$bin/vorel-sim" --link "$link" "$@" <&0 &
  children+=($!)
  wait_until $! test -e "$link" || { echo "$0: the simulator did not start" >&2; exit 1; }
}

start_server() {
  # Without -noreset the server starts anew when a first look at it ends before the window manager is there.
  Xvfb -noreset -displayfd 3 -screen 0 1280x1024x24 -dpi 96 -nolisten tcp 3>"$run/display" 2>"$run/xvfb.log" &
  children+=($!)
  wait_until $! test -s "$run/display" || { cat "$run/xvfb.log" >&2; exit 1; }
  export DISPLAY=":$(<"$run/display")" QT_QPA_PLATFORM=xcb
}

start_window_manager() {
  for _ in 1 2 3; do
    openbox --sm-disable >>"$run/openbox.log" 2>&1 &
    children+=($!)
    # A window that is there before its manager may stay where no picture finds it.
    wait_until $! has_window_manager && return
  done
  cat "$run/openbox.log" >&2
  echo "$0: the window manager did not start" >&2
  exit 1
}

start_display() { start_server && start_window_manager; }

# sway, whose output is a window of the display, and the console as its client. Keys go through that window. Forms float,
# as their sizes are their own.
start_sway() {
  local as_other=()
  sway=$(mktemp -d)  # short, since a socket's path is
  printf '%s\n' 'for_window [app_id=".*"] floating enable' 'xwayland disable' >"$sway/config"
  if [[ $(id -u) -eq 0 ]]; then  # root it refuses
    as_other=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    chown -R 65534:65534 "$sway"
  fi
  WLR_BACKENDS=x11 WLR_RENDERER=pixman HOME=$sway XDG_RUNTIME_DIR=$sway \
    "${as_other[@]}" sway -c "$sway/config" >"$run/sway.log" 2>&1 &
  children+=($!)
  wait_until $! has_sway || { cat "$run/sway.log" >&2; exit 1; }
  export XDG_RUNTIME_DIR=$sway WAYLAND_DISPLAY=wayland-1 QT_QPA_PLATFORM=wayland
}

# The manager gives its window the focus.
has_sway() { [[ -S $sway/wayland-1 ]] && xdotool getactivewindow >/dev/null 2>&1; }

has_window_manager() { xdotool get_num_desktops >/dev/null 2>&1; }

console_window() { xdotool search --onlyvisible --name 'Vorel Tarnwell' 2>/dev/null; }
console_title() { xdotool getwindowname "$(console_window)"; }
is_connected() { [[ $(console_title) == *"Connected to"* ]]; }

start_console() {
  "$bin/tarnwell" 2>/dev/null &
  console=$!
  children+=("$console")
  wait_until "$console" console_window >/dev/null
}

end_console() {
  kill "$console"
  wait "$console" 2>/dev/null || true
}
