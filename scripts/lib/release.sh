# The help file, the installer and the portable zip. Source after common.sh.
#   build_help [OUT_DIR]   mq2_help.chm from docs/help/ (default: build/windows/)
#   check_help CHM         the CHM holds the topic "main" and every page its contents name
#   build_installer        build/dist/marquill-setup-<version>.exe
#   build_portable_zip     build/dist/marquill-<version>-portable.zip
RELEASE_PACKAGES=(fp-utils libchm-bin nsis zip imagemagick)

# The version has one home: the CMake project version, which also feeds the version resource.
project_version() {
  sed -n 's/^project(Marquill VERSION \([0-9][0-9.]*\).*/\1/p' "$ROOT/CMakeLists.txt"
}

# A screenshot for the help: build/screenshots/NAME-96.png as the screenshot scripts save it,
# else the committed docs/images/NAME.png. Prints the path, or nothing when there is none.
help_screenshot() {
  local name=$1
  if [ -f "$ROOT/build/screenshots/$name-96.png" ]; then
    echo "$ROOT/build/screenshots/$name-96.png"
  elif [ -f "$ROOT/docs/images/$name.png" ]; then
    echo "$ROOT/docs/images/$name.png"
  fi
}

# Cuts a full-screen screenshot down to the windows on the desktop: the box of what differs
# from the desktop's colour (its top-left pixel's), looked for between the tray strip at the
# top and the taskbar at the bottom; a box that reaches the taskbar goes on to the screen's
# bottom edge, since menus there open over it.
crop_screenshot() {
  local src=$1 dst=$2 w h top bar bg box bw bh bx by
  read -r w h < <(identify -format '%w %h\n' "$src")
  if [ "$w" -lt 1000 ]; then cp "$src" "$dst"; return; fi   # already cut
  top=$(( h * 50 / 800 )) bar=$(( h * 21 / 800 ))
  bg=$(convert "$src" -format '%[pixel:p{0,0}]' info:)
  box=$(convert "$src" -crop "${w}x$((h - top - bar))+0+$top" +repage -fuzz 3% -format '%@' info:)
  IFS='x+' read -r bw bh bx by <<<"$box"
  if [ "$bw" -ge "$w" ] && [ "$bh" -ge "$((h - top - bar))" ]; then cp "$src" "$dst"; return; fi
  by=$((by + top))
  [ $((by + bh)) -ge $((h - bar - 2)) ] && bh=$((h - by))
  convert "$src" -crop "${bw}x${bh}+${bx}+${by}" +repage -bordercolor "$bg" -border 8 "$dst"
}

build_help() {
  local out=${1:-$ROOT/build/windows} stage=$ROOT/build/help name src page
  rm -rf "$stage"
  mkdir -p "$stage/images" "$out"
  cp "$ROOT"/docs/help/* "$stage/"
  # Each picture stands alone on a line: <p class="shot"><img src="images/NAME.png" ...></p>.
  # A picture whose screenshot has not been made yet is left out with its line.
  for name in $(grep -ho 'src="images/[a-z0-9-]*\.png"' "$stage"/*.htm | sed 's/.*images\/\(.*\)\.png"/\1/' | sort -u); do
    src=$(help_screenshot "$name")
    if [ -n "$src" ]; then
      crop_screenshot "$src" "$stage/images/$name.png"
      printf 'images/%s.png\n' "$name" >>"$stage/mq2_help.hhp"
    else
      for page in "$stage"/*.htm; do sed -i "/src=\"images\/$name\.png\"/d" "$page"; done
    fi
  done
  (cd "$stage" && chmcmd --no-html-scan mq2_help.hhp >chmcmd.log 2>&1) || { cat "$stage/chmcmd.log" >&2; return 1; }
  cp "$stage/mq2_help.chm" "$out/mq2_help.chm"
  say "Help: $out/mq2_help.chm ($(stat -c %s "$out/mq2_help.chm") bytes)"
}

check_help() {
  bash "$ROOT/tests/help/check-chm" "$1"
}

build_installer() {
  local version dist=$ROOT/build/dist win=$ROOT/build/windows
  version=$(project_version)
  mkdir -p "$dist"
  makensis -V2 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DBUILD_DIR="$win" -DROOT="$ROOT" \
    -DOUT_FILE="$dist/marquill-setup-$version.exe" "$ROOT/installer/marquill.nsi" >&2
  say "Installer: $dist/marquill-setup-$version.exe ($(stat -c %s "$dist/marquill-setup-$version.exe") bytes)"
}

build_portable_zip() {
  local version dist=$ROOT/build/dist win=$ROOT/build/windows stage
  version=$(project_version)
  stage=$ROOT/build/portable/marquill-$version
  rm -rf "$ROOT/build/portable"
  mkdir -p "$stage" "$dist"
  cp "$win/marquill.exe" "$win/mq2_help.chm" "$win/mqlist.exe" "$stage/"
  sed "s/@VERSION@/$version/g" "$ROOT/installer/README-portable.txt" | sed 's/$/\r/' >"$stage/README.txt"
  sed 's/$/\r/' "$ROOT/LICENSE" >"$stage/LICENSE.txt"
  rm -f "$dist/marquill-$version-portable.zip"
  (cd "$ROOT/build/portable" && zip -q -X -r "$dist/marquill-$version-portable.zip" "marquill-$version")
  say "Portable zip: $dist/marquill-$version-portable.zip ($(stat -c %s "$dist/marquill-$version-portable.zip") bytes)"
}
