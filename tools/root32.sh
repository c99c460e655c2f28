# Runs 32-bit Windows programs. Where the distribution's 32-bit packages can be installed beside the 64-bit ones, this
# machine's Wine runs them. Where they cannot (a mirror without that index, versions out of step), a small 32-bit system
# of the same distribution is kept in a folder outside the source tree and entered with chroot. Mounts are made in a
# mount namespace of each call's own, so none can be left behind.
# shellcheck shell=bash

root32=$cache_home/root32
wine32=/usr/lib/wine/wine
root32_way= # "beside", "chroot" or "none" once known

# The package archive that this machine installs from, in either of apt's two formats.
configured_mirror() {
  # shellcheck disable=SC2016
  apt-get indextargets --format '$(CREATED_BY) $(SITE) $(RELEASE) $(REPO_URI)' 2>/dev/null |
    awk -v suite="$1" '$1 == "Packages" && $3 == suite { print $4; exit }'
}

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

# Whether a mount namespace of its own keeps a call's mounts from everybody else. In a chroot whose root is not a mount
# point the system refuses that, and in most containers it refuses every mount.
root32_can_mount() { as_root unshare --mount --propagation private true >/dev/null 2>&1; }

make_root32() {
  local suite mirror new=$root32.new
  suite=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
  mirror=$(configured_mirror "$suite")
  [[ -n $suite && -n $mirror ]] || {
    warn "The package sources do not say where $suite comes from."
    return 1
  }
  need "${packages_root32[@]}"
  say "Making a small 32-bit system in $root32 (once)"
  as_root mkdir -p "$cache_home"
  as_root rm -rf --one-file-system "$new"
  with_log root32-debootstrap as_root unshare --mount --propagation private \
    debootstrap --variant=minbase --arch=i386 "$suite" "$new" "$mirror" || return 1
  with_log root32-wine as_root chroot "$new" env DEBIAN_FRONTEND=noninteractive LC_ALL=C \
    apt-get install -q -y --no-install-recommends wine wine32 fonts-wine || return 1
  as_root chroot "$new" apt-get clean
  as_root mkdir -p "$new/qvx" "$new/var/qvx" "$new/tmp/.X11-unix"
  in_root32 "$new" 180 /var/qvx/template "$wine32" wineboot -i >"$logs/root32-wineboot.log" 2>&1 || {
    warn "Wine did not start in the 32-bit system; see build/logs/root32-wineboot.log."
    return 1
  }
  end_root32 "$new" /var/qvx/template
  as_root sh -c "cp $new/usr/share/wine/fonts/*.ttf $new/var/qvx/template/drive_c/windows/Fonts/"
  as_root rm -rf --one-file-system "$root32"
  as_root mv "$new" "$root32"
}

# The driver that the database tests need; a system that was created earlier may lack it. Without it, those tests are
# skipped.
want_database32() {
  local log=$logs/root32-database.log
  if [[ $root32_way == beside ]]; then
    want libodbc2:i386 libsqliteodbc:i386
  elif ! ls "$root32"/usr/lib/i386-linux-gnu/odbc/libsqlite3odbc.so >/dev/null 2>&1; then
    say "Installing the database driver in $root32"
    as_root chroot "$root32" sh -c 'export DEBIAN_FRONTEND=noninteractive LC_ALL=C
      install="apt-get install -q -y --no-install-recommends unixodbc libsqliteodbc"
      $install || { apt-get -q update && $install; }' </dev/null >"$log" 2>&1 ||
      warn "Going on without it; see build/logs/root32-database.log."
  fi
}

# in_root32 SYSTEM SECONDS PREFIX COMMAND...: runs the command in the 32-bit system, with the source tree at its own
# path, so that paths mean the same.
in_root32() {
  local system=$1 limit=$2 inner_prefix=$3
  shift 3
  # shellcheck disable=SC2016
  as_root env "${wine_environment[@]}" WINEARCH=win32 WINEPREFIX="$inner_prefix" HOME=/root LC_ALL=C.UTF-8 DISPLAY="${DISPLAY:-}" \
    unshare --mount --propagation private sh -c '
      set -e
      system=$1 tree=$2 limit=$3
      shift 3
      mkdir -p "$system$tree" "$system/tmp/.X11-unix"
      mount -t proc proc "$system/proc"
      mount --rbind /dev "$system/dev"
      mount --bind "$tree" "$system$tree"
      if [ -d /tmp/.X11-unix ]; then mount --bind /tmp/.X11-unix "$system/tmp/.X11-unix"; fi
      cd /
      exec timeout --foreground -k 5 "$limit" chroot "$system" "$@"
    ' sh "$system" "$root" "$limit" "$@" </dev/null
}

keep_root32() { in_root32 "$1" 20 "$2" wineserver -p60 >/dev/null 2>&1 || true; }

end_root32() {
  in_root32 "$1" 20 "$2" wineserver -k >/dev/null 2>&1 || true
  in_root32 "$1" 20 "$2" wineserver -w >/dev/null 2>&1 || true
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
  if [[ -d $root32/var/qvx/template ]] && root32_can_mount; then
    root32_way=chroot
  elif root32_fits_beside; then
    if ! is_installed wine32:i386; then
      as_root dpkg --add-architecture i386
      need wine32:i386
    fi
    root32_way=beside
  elif ! root32_can_mount; then
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
    prefix32=/var/qvx/run.$$
    at_exit "end_root32 '$root32' '$prefix32'; as_root rm -rf '$root32$prefix32'"
    as_root cp -a --reflink=auto "$root32/var/qvx/template" "$root32$prefix32"
    keep_root32 "$root32" "$prefix32"
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
    in_root32 "$root32" "$limit" "$prefix32" "$wine32" "$@"
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
    end_root32 "$root32" "$prefix32"
    keep_root32 "$root32" "$prefix32"
  fi
}

remove_root32() {
  local folder
  for folder in "$root32" "$root32.new"; do
    [[ -d $folder ]] || continue
    as_root rm -rf --one-file-system "$folder"
    say "Removed $folder."
  done
}
