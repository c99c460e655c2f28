# Runs Windows programs. Every run gets a prefix of its own, copied from a prepared one, so that nothing is shared with
# the user's own Windows programs or with the previous run.
# shellcheck shell=bash

wine64=/usr/lib/wine/wine64
# No Mono, no HTML engine (their installers would ask), no crash dialog (a crash then ends the program with an error), no menu
# entries, and no browser of this machine, which nobody would close.
wine_environment=(WINEDEBUG=-all "WINEDLLOVERRIDES=mscoree,mshtml=;winedbg.exe=d;winemenubuilder.exe=;winebrowser.exe=")

# For a program that a person uses.
allow_browser() { wine_environment=("${wine_environment[@]/;winebrowser.exe=/}"); }

# use_arch ARCH: selects the architecture whose programs run_windows runs from here on, and the folder where the build
# puts the main ones.
# shellcheck disable=SC2034
use_arch() {
  wine_arch=$1
  ocx=build/$1/server/Qvx.ocx
  host_program=build/$1/qvxhost.exe
  data_objects=build/$1/samples/ado/QvxAdo.dll
}
use_arch x64

# wine_in_prefix PREFIX SECONDS COMMAND...: runs the 64-bit Windows of this machine, within a time limit.
wine_in_prefix() {
  local prefix=$1 limit=$2
  shift 2
  env "${wine_environment[@]}" WINEARCH=win64 WINEPREFIX="$prefix" timeout --foreground -k 5 "$limit" "$@" </dev/null
}

# Starts a server that stays for a minute after its last program: one that ends with each program may reject the next,
# which connects at that moment.
keep_wine() { wine_in_prefix "$1" 20 wineserver -p60 >/dev/null 2>&1 || true; }

end_wine() {
  wine_in_prefix "$1" 20 wineserver -k >/dev/null 2>&1 || true
  wine_in_prefix "$1" 20 wineserver -w >/dev/null 2>&1 || true
}

make_template() {
  local template=$1
  rm -rf "$template" "$template.new"
  mkdir -p "$(dirname "$template")"
  say "Preparing the Windows environment"
  # Without a display, nothing can ask a question.
  DISPLAY='' with_log wineboot wine_in_prefix "$template.new" 180 "$wine64" wineboot -i || return 1
  end_wine "$template.new"
  cp /usr/share/wine/fonts/*.ttf "$template.new/drive_c/windows/Fonts/"
  mv "$template.new" "$template"
}

# prepare_wine: leaves the prefix that those of runs are copied from in `template`.
prepare_wine() {
  local version
  need "${packages_wine[@]}"
  version=$(dpkg-query -W -f '${Version}' wine64 2>/dev/null | tr -c '[:alnum:].\n' _)
  template=$root/build/wine/template-$version
  if [[ ! -d $template ]]; then
    make_template "$template" || die "The Windows environment could not be prepared."
  fi
}

# start_wine: creates this run's prefix and leaves it in `prefix`.
start_wine() {
  local template
  prepare_wine
  prefix=$(mktemp -d "${TMPDIR:-/tmp}/qvx-run.XXXXXX")
  at_exit "end_wine '$prefix'; rm -rf '$prefix'"
  cp -a --reflink=auto "$template/." "$prefix/"
  keep_wine "$prefix"
}

# run_windows SECONDS PROGRAM ARGUMENT...: runs the program in this run's prefix, on either architecture (see root32.sh
# for x86) and on the system that was chosen (system.sh).
run_windows() {
  if [[ $wine_arch == x86 ]]; then
    run_in_root32 "$@"
  elif [[ -n ${system_prefix:-} ]]; then
    run_in_system "$@"
  else
    local limit=$1
    shift
    wine_in_prefix "$prefix" "$limit" "$wine64" "$@"
  fi
}

# windows_path FILE: the path that Windows programs see.
windows_path() {
  local path
  path=$(realpath -m "$1")
  printf 'Z:%s' "${path//\//\\}"
}
