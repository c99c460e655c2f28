# Runs 32-bit Windows programs. Where the distribution's 32-bit packages can be installed beside the 64-bit ones, this
# machine's Wine runs them. Where they cannot (a mirror without that index, versions out of step), a small 32-bit system
# of the same distribution does (roots.sh).
# shellcheck shell=bash

root32=$cache_home/root32
wine32=/usr/lib/wine/wine
root32_way= # "beside", "chroot" or "none" once known

# Whether the 32-bit packages could be installed here. Package lists in a separate folder are queried, so that the
# machine's own set of architectures changes only when the answer is yes.
root32_fits_beside() {
  local lists config status=1
  is_installed wine32:i386 && return 0
  lists=$(mktemp -d)
  config=$lists/apt.conf
  mkdir -p "$lists/lists/partial"
  cat >"$config" <<END
APT::Architectures { "amd64"; "i386"; };
Dir::State::lists "$lists/lists";
Dir::Cache::pkgcache "";
Dir::Cache::srcpkgcache "";
END
  if APT_CONFIG=$config apt-get -qq update && APT_CONFIG=$config apt-get -s install --no-install-recommends wine32:i386; then
    status=0
  fi >"$logs/root32-beside.log" 2>&1
  rm -rf "$lists"
  return "$status"
}

make_root32() { make_root "$root32" i386 "$(own_suite)" win32 "$wine32" wine wine32 fonts-wine; }

# The driver that the database tests need; a system that was created earlier may lack it. Without it, those tests are
# skipped.
want_database32() {
  local log=$logs/root32-database.log
  if [[ $root32_way == beside ]]; then
    want libodbc2:i386 libsqliteodbc:i386
  elif ! ls "$root32"/usr/lib/i386-linux-gnu/odbc/libsqlite3odbc.so >/dev/null 2>&1; then
    say "Installing the database driver in $root32"
    install_in_root "$root32" unixodbc libsqliteodbc >"$log" 2>&1 ||
      warn "Going on without it; see build/logs/root32-database.log."
  fi
}

# prepare_root32: leaves in `root32_way` how 32-bit programs are run here; fails where they cannot be run.
prepare_root32() {
  if [[ -n $root32_way ]]; then
    [[ $root32_way != none ]]
    return
  fi
  mkdir -p "$logs"
  if ! can_be_root; then
    warn "32-bit programs cannot be run: that needs root or sudo."
    root32_way=none
    return 1
  fi
  if root_is_made "$root32" && can_mount_privately; then
    root32_way=chroot
  elif root32_fits_beside; then
    if ! is_installed wine32:i386; then
      as_root dpkg --add-architecture i386
      need wine32:i386
    fi
    root32_way=beside
  elif ! can_mount_privately; then
    warn "32-bit programs cannot be run: the root file system cannot be made private here, as in a plain chroot or a container that may not mount."
    root32_way=none
    return 1
  elif make_root32; then
    root32_way=chroot
  else
    warn "32-bit programs cannot be run: neither Wine's 32-bit packages nor a 32-bit system of the distribution could be had."
    root32_way=none
    return 1
  fi
  want_database32
}

# start_wine32: creates this run's 32-bit prefix and leaves it in `prefix32`; prepare_root32 must have succeeded.
start_wine32() {
  if [[ $root32_way == beside ]]; then
    prefix32=$(mktemp -d "${TMPDIR:-/tmp}/qvx-run32.XXXXXX")
    at_exit "end_wine '$prefix32'; rm -rf '$prefix32'"
    DISPLAY='' wine32_beside 180 wineboot -i >"$logs/root32-wineboot.log" 2>&1 || return 1
    end_wine "$prefix32"
    cp /usr/share/wine/fonts/*.ttf "$prefix32/drive_c/windows/Fonts/"
    keep_wine "$prefix32"
  else
    start_in_root "$root32" win32 || return 1
    prefix32=$root_prefix
  fi
}

wine32_beside() {
  local limit=$1
  shift
  env "${wine_environment[@]}" WINEARCH=win32 WINEPREFIX="$prefix32" timeout --foreground -k 5 "$limit" "$wine32" "$@" </dev/null
}

# run_in_root32 SECONDS PROGRAM ARGUMENT...
run_in_root32() {
  local limit=$1
  shift
  if [[ $root32_way == beside ]]; then
    wine32_beside "$limit" "$@"
  else
    in_root "$root32" "$limit" win32 "$prefix32" "$wine32" "$@"
  fi
}

# Ends what runs in this run's prefix, of either architecture, so that the registry is written.
settle_windows() {
  if [[ $wine_arch == x64 ]]; then
    end_wine "$prefix"
    keep_wine "$prefix"
  elif [[ $root32_way == beside ]]; then
    end_wine "$prefix32"
    keep_wine "$prefix32"
  else
    end_root "$root32" win32 "$prefix32"
    keep_root "$root32" win32 "$prefix32"
  fi
}
