# A small full disk for the list-file save test (listfiles_test.cpp): a 64 KB tmpfs under the
# build folder, named to the tests in MARQUILL_FULL_DISK. Mounting needs root (or a system
# that allows it); without it the test reports itself skipped. Source after common.sh.
#   full_disk_mount DIR   full_disk_unmount
FULL_DISK_DIR=""

full_disk_mount() {
  mkdir -p "$1"
  if mount -t tmpfs -o size=64k,mode=0777 marquill-full-disk "$1" 2>/dev/null; then
    FULL_DISK_DIR=$1
    export MARQUILL_FULL_DISK=$1
  else
    say "No tmpfs could be mounted at $1: the full-disk save test will be skipped"
  fi
}

full_disk_unmount() {
  [ -n "$FULL_DISK_DIR" ] && umount "$FULL_DISK_DIR" 2>/dev/null || true
  FULL_DISK_DIR=""
}
