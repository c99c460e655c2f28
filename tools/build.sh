# Configuring and building one architecture or all of them.
# shellcheck shell=bash

# With these, the compiler's cache also serves a clone in another folder, such as CI's.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=true
# The cache also has to store what depends on precompiled headers.
export CCACHE_SLOPPINESS=pch_defines,time_macros

need_for_build() {
  case $1 in
    native) need "${packages_build[@]}" "${packages_native[@]}" ;;
    x64) need "${packages_build[@]}" "${packages_x64[@]}" ;;
    x86) need "${packages_build[@]}" "${packages_x86[@]}" ;;
    native-release) need "${packages_build[@]}" "${packages_native[@]}" "${packages_bench[@]}" ;;
  esac
}

# build PRESET [ARGUMENT...]: builds everything of that preset; arguments are those of `cmake --build`.
build() {
  local preset=$1 seconds=$SECONDS
  shift
  need_for_build "$preset"
  say "Building $preset${*:+: $*}"
  with_log "configure-$preset" cmake --preset "$preset" || return 1
  with_log "build-$preset" cmake --build --preset "$preset" "$@" || return 1
  say "Built $preset in $((SECONDS - seconds)) s, into build/$preset"
}

qvx_build() {
  local what presets=()
  ((${#})) || set -- x64
  for what in "$@"; do
    case $what in
      x64 | x86 | native) presets+=("$what") ;;
      all) presets+=(native x64 x86) ;;
      *) die "There is nothing called '$what' to build: x64, x86, native or all." ;;
    esac
  done
  for what in "${presets[@]}"; do
    build "$what" || die "The $what build failed."
  done
}
