# A private Wine session: its own prefix, an X display (the user's, or a virtual one) and a
# Wine virtual desktop whose taskbar holds the notification area. Source after common.sh.
#   wine_session_start PREFIX_DIR [WIDTHxHEIGHT]   wine_session_stop   wine_screenshot FILE.png
WINE_PIDS=()
WINE_OWN_XVFB=""

wine_session_start() {
  export WINEPREFIX=$1
  local size=${2:-1280x800}
  export WINEDEBUG=${WINEDEBUG:--all}
  # No Mono or Gecko installers: nothing here needs them.
  export WINEDLLOVERRIDES="mscoree,mshtml="
  if [ -z "${DISPLAY:-}" ] || [ "${MARQUILL_VIRTUAL_DISPLAY:-}" = 1 ]; then
    local n=90
    while [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
    Xvfb ":$n" -screen 0 "${size}x24" -nolisten tcp >/dev/null 2>&1 &
    WINE_OWN_XVFB=$!
    export DISPLAY=":$n"
    for _ in $(seq 50); do [ -e "/tmp/.X11-unix/X$n" ] && break; sleep 0.1; done
  fi
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    say "Creating the Wine prefix $WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    wineboot -i >/dev/null 2>&1 || true
    wineserver -w
  fi
  if [ -n "${MARQUILL_DPI:-}" ]; then
    wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$MARQUILL_DPI" /f >/dev/null 2>&1
  fi
  # "shell" desktops get a taskbar, so tray icons have a place to live.
  wine explorer /desktop=shell,"$size" >/dev/null 2>&1 &
  WINE_PIDS+=($!)
  sleep 2
}

wine_session_stop() {
  local pid
  for pid in "${WINE_PIDS[@]}"; do kill "$pid" 2>/dev/null || true; done
  WINE_PIDS=()
  [ -n "${WINEPREFIX:-}" ] && wineserver -k 2>/dev/null || true
  if [ -n "$WINE_OWN_XVFB" ]; then
    kill "$WINE_OWN_XVFB" 2>/dev/null || true
    wait "$WINE_OWN_XVFB" 2>/dev/null || true
    WINE_OWN_XVFB=""
  fi
}

wine_screenshot() {
  xwd -root -silent -display "$DISPLAY" | convert xwd:- "$1"
}

# The Unix process id of a Windows program running in this session's prefix. pgrep first: a
# scan of every /proc entry takes longer than a program is held still on a busy machine.
wine_unix_pid() {
  local name=$1 p
  for p in $(pgrep -f -- "$name" || true); do
    # The program itself (its path perhaps quoted), not a process that merely names it among
    # its arguments.
    tr '\0' '\n' 2>/dev/null <"/proc/$p/cmdline" | head -1 | grep -qiE "$name\"?\$" || continue
    tr '\0' '\n' 2>/dev/null <"/proc/$p/environ" | grep -qx "WINEPREFIX=$WINEPREFIX" || continue
    echo "$p"
    return
  done
}

# Its resident anonymous memory (the Unix side of its private memory), in KB.
wine_private_kb() {
  awk '/RssAnon/ {print $2}' "/proc/$1/status" 2>/dev/null
}
