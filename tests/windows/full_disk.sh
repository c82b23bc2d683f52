# For the list-file save tests (listfiles_test.cpp): a small full disk, a 64 KB tmpfs at DIR
# named to the tests in MARQUILL_FULL_DISK, and a read-only folder, a tmpfs at DIR-read-only
# holding one file and then mounted read-only (even root cannot write there), named in
# MARQUILL_READ_ONLY_FOLDER. Mounting needs root (or a system that allows it); without it the
# tests report themselves skipped. Source after common.sh.
#   full_disk_mount DIR   full_disk_unmount
FULL_DISK_DIR=""
READ_ONLY_DIR=""

full_disk_mount() {
  mkdir -p "$1"
  if mount -t tmpfs -o size=64k,mode=0777 marquill-full-disk "$1" 2>/dev/null; then
    FULL_DISK_DIR=$1
    export MARQUILL_FULL_DISK=$1
  else
    say "No tmpfs could be mounted at $1: the full-disk save test will be skipped"
  fi
  local ro="$1-read-only"
  mkdir -p "$ro"
  if mount -t tmpfs -o size=64k,mode=0777 marquill-read-only "$ro" 2>/dev/null; then
    READ_ONLY_DIR=$ro
    printf 'a list that was already there' >"$ro/kept.mql"
    mount -o remount,ro "$ro" 2>/dev/null && export MARQUILL_READ_ONLY_FOLDER=$ro
  fi
}

full_disk_unmount() {
  [ -n "$FULL_DISK_DIR" ] && umount "$FULL_DISK_DIR" 2>/dev/null || true
  [ -n "$READ_ONLY_DIR" ] && umount "$READ_ONLY_DIR" 2>/dev/null || true
  FULL_DISK_DIR=""
  READ_ONLY_DIR=""
}
