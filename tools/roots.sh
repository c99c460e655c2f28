# Small systems of a distribution in folders outside the source tree, entered with chroot: a 32-bit one where the 32-bit
# packages cannot be installed beside the 64-bit ones (root32.sh), and other releases, with their version of Wine
# (system.sh). Mounts are made in a mount namespace of each call's own, so none can be left behind.
# shellcheck shell=bash

# The package archive that this machine installs from, in either of apt's two formats; any release of the distribution is
# there, too.
configured_mirror() {
  # shellcheck disable=SC2016
  apt-get indextargets --format '$(CREATED_BY) $(SITE) $(RELEASE) $(REPO_URI)' 2>/dev/null |
    awk -v suite="$(own_suite)" '$1 == "Packages" && $3 == suite { print $4; exit }'
}

own_suite() { (. /etc/os-release && echo "${VERSION_CODENAME:-}"); }

# Whether a mount namespace of its own keeps a call's mounts from everybody else. In a chroot whose root is not a mount
# point the system refuses that, and in most containers it refuses every mount.
can_mount_privately() { as_root unshare --mount --propagation private true >/dev/null 2>&1; }

# The prefix that those of runs are copied from, as seen from inside; a system that has it is complete.
root_template=/var/qvx/template
root_is_made() { [[ -d $1$root_template ]]; }

# make_root SYSTEM ARCH SUITE WINDOWS WINE PACKAGE...: makes a system with these packages in the folder, and prepares its
# Windows environment: win32 or win64, with that program.
make_root() {
  local system=$1 arch=$2 suite=$3 windows=$4 wine=$5 mirror name new=$1.new
  shift 5
  name=$(basename "$system")
  mirror=$(configured_mirror)
  [[ -n $suite && -n $mirror ]] || {
    warn "The package sources do not say where $suite comes from."
    return 1
  }
  need "${packages_root32[@]}"
  say "Making a small system ($suite, $arch) in $system (once)"
  as_root mkdir -p "$cache_home"
  as_root rm -rf --one-file-system "$new"
  with_log "$name-debootstrap" as_root unshare --mount --propagation private \
    debootstrap --variant=minbase --arch="$arch" "$suite" "$new" "$mirror" || return 1
  with_log "$name-wine" install_in_root "$new" "$@" || return 1
  as_root chroot "$new" apt-get clean
  as_root mkdir -p "$new/qvx" "$new/var/qvx" "$new/tmp/.X11-unix"
  in_root "$new" 180 "$windows" "$root_template" "$wine" wineboot -i >"$logs/$name-wineboot.log" 2>&1 || {
    warn "Wine did not start in $system; see build/logs/$name-wineboot.log."
    return 1
  }
  end_root "$new" "$windows" "$root_template"
  as_root sh -c "cp $new/usr/share/wine/fonts/*.ttf $new$root_template/drive_c/windows/Fonts/"
  as_root rm -rf --one-file-system "$system"
  as_root mv "$new" "$system"
}

# install_in_root SYSTEM PACKAGE...: fetches the package lists only when the ones that are there are too old.
install_in_root() {
  local system=$1
  shift
  as_root chroot "$system" sh -c 'export DEBIAN_FRONTEND=noninteractive LC_ALL=C
    apt-get install -q -y --no-install-recommends "$@" ||
      { apt-get -q update && apt-get install -q -y --no-install-recommends "$@"; }' sh "$@" </dev/null
}

# in_root SYSTEM SECONDS WINDOWS PREFIX COMMAND...: runs the command in the system, with the source tree at its own path,
# so that paths mean the same.
in_root() {
  local system=$1 limit=$2 windows=$3 inner_prefix=$4
  shift 4
  # shellcheck disable=SC2016
  as_root env "${wine_environment[@]}" WINEARCH="$windows" WINEPREFIX="$inner_prefix" HOME=/root LC_ALL=C.UTF-8 DISPLAY="${DISPLAY:-}" \
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

keep_root() { in_root "$1" 20 "$2" "$3" wineserver -p60 >/dev/null 2>&1 || true; }

end_root() {
  in_root "$1" 20 "$2" "$3" wineserver -k >/dev/null 2>&1 || true
  in_root "$1" 20 "$2" "$3" wineserver -w >/dev/null 2>&1 || true
}

# start_in_root SYSTEM WINDOWS: creates a prefix of this run's own in the system, and leaves its path there in
# `root_prefix`.
start_in_root() {
  local system=$1 windows=$2 new
  new=$(as_root mktemp -d "$system/var/qvx/run.XXXXXX") || return 1
  root_prefix=${new#"$system"}
  at_exit "end_root '$system' '$windows' '$root_prefix'; as_root rm -rf '$new'"
  as_root cp -a --reflink=auto "$system$root_template/." "$new/"
  keep_root "$system" "$windows" "$root_prefix"
}

# Removes every system that has been made, and what is left of those that could not be completed.
remove_roots() {
  local folder
  for folder in "$cache_home"/*; do
    [[ -d $folder/var/qvx || ($folder == *.new && -d $folder/etc) ]] || continue
    as_root rm -rf --one-file-system "$folder"
    say "Removed $folder."
  done
}
