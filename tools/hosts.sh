# Drives containers and language bindings that others wrote. A host program prints `ok NAME` or `FAILED NAME: why` for
# each of its checks and `done` at its end; what it printed is counted, and written into build/test/hosts.tsv.
# shellcheck shell=bash

hosts=$root/build/test/hosts # the folder in which host programs are made
hosts_table=$root/build/test/hosts.tsv
fpc_sources=/usr/share/fpcsrc/3.2.2
lazarus_sources=/usr/lib/lazarus/2.2.6
lazarus_topics=(creation typing focus events bindings sizes lives closing)

# record_host HOST VERSION ARCH NAME PASSED FAILED SKIPPED
record_host() {
  count hosts "$4" "$5" "$6" "$7"
  printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$1" "$2" "$3" "$5" "$6" "$7" >>"$hosts_table"
}

# count_host HOST VERSION ARCH NAME LOG STATUS: counts what one host program printed. A program that crashed, hung or
# stopped in the middle has one failed check more.
count_host() {
  local host=$1 version=$2 arch=$3 name=$4 log=$5 status=$6 passed failed skipped
  tally "$log"
  if ((status != 0 || passed + failed + skipped == 0)) || ! tr -d '\r' <"$log" | grep -qx 'done'; then
    failed=$((failed + 1))
    warn "hosts: $name ended before its last check (exit status $status); the whole log: ${log#"$root"/}"
  fi
  record_host "$host" "$version" "$arch" "$name" "$passed" "$failed" "$skipped"
  say_checks hosts "$name"
}

# run_host HOST VERSION NAME COMMAND...: runs the command and counts what it prints.
run_host() {
  local host=$1 version=$2 name=$3 log=$logs/hosts-$3.log status=0
  shift 3
  "$@" >"$log" 2>&1 || status=$?
  count_host "$host" "$version" "$wine_arch" "$name" "$log" "$status"
}

# check_host HOST VERSION NAME COMMAND...: one check that passes or fails with the command.
check_host() {
  local host=$1 version=$2 name=$3
  shift 3
  if with_log "hosts-$name" "$@"; then
    record_host "$host" "$version" "$wine_arch" "$name" 1 0 0
    say "hosts: $name passed"
  else
    record_host "$host" "$version" "$wine_arch" "$name" 0 1 0
    say "hosts: $name FAILED"
  fi
}

skip_host() {
  warn "hosts: $1 IS SKIPPED: $2"
  record_host "$1" - "$wine_arch" "$1" 0 0 1
}

installed_version() { dpkg-query -W -f '${Version}' "$1" 2>/dev/null; }

# The run-time library, the packages and the LCL for Windows, which no package of the distribution has compiled. They
# are kept as long as the packages stay the same.
lazarus_units() {
  local version
  version=$(installed_version fpc-source-3.2.2)_$(installed_version fp-compiler-3.2.2)_$(installed_version lazarus-src-2.2)
  version+=_$(cksum <tests/hosts/lazarus/everything.pas | cut -d ' ' -f 1)
  printf '%s' "$cache_home/lazarus-${version//[^[:alnum:].+-]/_}"
}

# compile_pascal FOLDER ARGUMENT...: compiles for 64-bit Windows into the folder.
compile_pascal() {
  local folder=$1
  shift
  mkdir -p "$folder"
  ppcx64 -n -Twin64 -O2 -v0ew -Sg "-FE$folder" "-FU$folder" "-Fu$folder" "$@"
}

# In the order of its makefile.
make_pascal_library() {
  local folder=$1 unit rtl=$fpc_sources/rtl paths
  paths=("-Fi$rtl/inc" "-Fi$rtl/x86_64" "-Fi$rtl/win/wininc" "-Fi$rtl/win" "-Fi$rtl/win64" "-Fi$rtl/objpas" "-Fi$rtl/objpas/sysutils"
    "-Fi$rtl/objpas/classes" "-Fu$rtl/win64" "-Fu$rtl/win" "-Fu$rtl/inc" "-Fu$rtl/objpas" "-Fu$rtl/common" "-Fu$rtl/x86_64")
  compile_pascal "$folder" "${paths[@]}" -Us "$rtl/win64/system.pp" || return 1
  for unit in inc/uuchar.pp objpas/objpas.pp win64/buildrtl.pp inc/macpas.pp charmaps/cpall.pas inc/lineinfo.pp inc/lnfodwrf.pp; do
    compile_pascal "$folder" "${paths[@]}" "$rtl/$unit" || return 1
  done
}

# Everything that the programs here use is compiled on demand, since the compiler finds the sources.
make_lazarus_units() {
  local folder=$1 package paths=()
  for package in winunits-base rtl-objpas rtl-extra fcl-base fcl-image pasjpeg paszlib hash fcl-registry fcl-res fcl-xml fcl-json \
    fcl-process regexpr winunits-jedi fcl-db chm; do
    package=$fpc_sources/packages/$package/src
    paths+=("-Fu$package" "-Fi$package" "-Fu$package/inc" "-Fi$package/inc" "-Fu$package/win" "-Fi$package/win" "-Fi$package/x86_64")
  done
  for package in components/{lazutils,freetype,activex} lcl lcl/{include,forms,widgetset,interfaces/win32}; do
    paths+=("-Fu$lazarus_sources/$package" "-Fi$lazarus_sources/$package")
  done
  compile_pascal "$folder" -dLCL -dLCLwin32 -Sc "${paths[@]}" tests/hosts/lazarus/everything.pas || return 1
  find "$lazarus_sources/lcl" -name '*.res' -exec cp -n {} "$folder/" \;
}

# prepare_lazarus: compiles the units, unless those of the same packages are there. Other trees may do so meanwhile.
prepare_lazarus() {
  local units new
  units=$(lazarus_units)
  [[ ! -d $units ]] || return 0
  mkdir -p "$cache_home" && new=$(mktemp -d "$cache_home/new-lazarus.XXXXXX") || return 1
  at_exit "rm -rf '$new'"
  say "Compiling Lazarus for Windows (once)"
  with_log hosts-rtl make_pascal_library "$new" && with_log hosts-lcl make_lazarus_units "$new" || return 1
  rm -rf "$cache_home"/lazarus-*
  chmod 755 "$new" && mv -T "$new" "$units"
}

# build_pascal SOURCE [ARGUMENT...]: a program with those units, in the folder of the host programs.
build_pascal() {
  local source=$1
  shift
  with_log "hosts-build-$(basename "${source%.*}")" compile_pascal "$hosts" "-Fu$(lazarus_units)" "$@" "$source"
}

# The first package of Lazarus that could not be had.
missing_for_lazarus() {
  local package
  for package in "${packages_lazarus[@]}"; do
    is_installed "$package" || {
      echo "$package"
      return 0
    }
  done
}

test_lazarus() {
  local version topic missing
  want "${packages_lazarus[@]}"
  missing=$(missing_for_lazarus)
  if [[ -n $missing ]]; then
    skip_host Lazarus "$missing could not be had."
    return 0
  fi
  version="$(installed_version lazarus-src-2.2), Free Pascal $(installed_version fpc-source-3.2.2)"
  prepare_lazarus || {
    record_host Lazarus "$version" x64 lazarus-units 0 1 0
    return 0
  }
  check_host Lazarus "$version" import import_type_library
  run_host Lazarus "$version" lazarus-unit python3 tools/hosts_unit.py tests/control/golden/type_library.txt \
    "$hosts/Qvx_1_0_TLB.pas" "$hosts/plain/Qvx_1_0_TLB.pas"
  check_host Lazarus "$version" build-lazarus build_pascal tests/hosts/lazarus/host.lpr
  for topic in "${lazarus_topics[@]}"; do
    run_host Lazarus "$version" "lazarus-$topic" run_windows 120 "$hosts/host.exe" "$topic"
  done
  check_host Lazarus "$version" build-sample build_pascal samples/pascal/stock.lpr -WG
  check_host Lazarus "$version" sample run_host_sample "$hosts/stock.exe" Stock tests/hosts/lazarus/stock.keys
}

# The unit for early binding, which Free Pascal's importer writes under Windows; once with the sample's corrections and
# once without.
import_type_library() {
  mkdir -p "$hosts/plain"
  build_pascal samples/pascal/importqvx.pas && build_pascal tests/hosts/lazarus/plainimport.pas &&
    run_windows 60 "$hosts/importqvx.exe" "$(windows_path "$ocx")" "$(windows_path "$hosts")" &&
    run_windows 60 "$hosts/plainimport.exe" "$(windows_path "$ocx")" "$(windows_path "$hosts/plain")"
}

# run_host_sample PROGRAM TITLE KEYS: operates a sample as its user would.
run_host_sample() {
  local log=$logs/hosts-$2.log host_group
  start_group run_windows 120 "$1" >"$log" 2>&1
  host_group=$group
  attend_host "$2" "$3" '' "$log"
}

# The system's own script host, which only late binding reaches.
test_script_hosts() {
  local version script
  local -A language=([js]=JScript [vbs]=VBScript)
  version="Wine $(installed_version wine64)"
  for script in tests/hosts/scripts/*; do
    run_host "cscript, ${language[${script##*.}]}" "$version" "cscript-${script##*.}-$wine_arch" \
      run_windows 60 cscript.exe //nologo "$(windows_path "$script")"
  done
}

# uses_installed ARCH SETUP TEST...: runs the tests in an environment of its own in which the setup program has
# installed the controls. Afterwards, nothing of the installation may be left.
uses_installed() (
  local work=$hosts/$1 drive_c setup test
  watch_exit
  setup=$(windows_path "$package/Qvx-$(package_version)-$2.exe")
  enter_environment "$1" "$work"
  use_display virtual
  # A program's first use of the display, and of the script host, leaves entries of its own.
  run_windows 60 cscript.exe //nologo "$(windows_path tests/setup/controls.vbs)" >"$work/first.log" || true
  snapshot "$work/before"
  check_host "setup program" "$(package_version)" "install-$1" exit_code 0 120 "$setup" /S /AllUsers
  shift 2
  for test in "$@"; do "$test"; done
  check_host "setup program" "$(package_version)" "uninstall-$wine_arch" uninstall HKLM
  check_host "setup program" "$(package_version)" "nothing-left-$wine_arch" same_as_before
)

test_hosts() {
  mkdir -p "$hosts"
  make_package_once || die "There is no setup program to install for the hosts."
  uses_installed x64 setup-x64 test_lazarus test_script_hosts
  test_samples x64
  if prepare_root32; then
    uses_installed x86 setup test_script_hosts
    test_samples x86
  else
    warn "THE HOSTS ARE SKIPPED IN 32 BITS."
    count hosts x86 0 0 1
  fi
}
