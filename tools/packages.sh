# The distribution's packages that each job needs; they are installed when missing.
# shellcheck shell=bash disable=SC2034

packages_build=(cmake ninja-build g++ ccache)
packages_native=(googletest zlib1g-dev)
packages_x64=(g++-mingw-w64-x86-64-posix mingw-w64-tools libwine libz-mingw-w64-dev googletest)
packages_x86=(g++-mingw-w64-i686-posix mingw-w64-tools libwine libz-mingw-w64-dev googletest)
packages_wine=(wine wine64 fonts-wine)
packages_display=(xvfb openbox fonts-dejavu-core xdotool x11-utils imagemagick)
packages_lint=(clang-format clang-tidy shellcheck python3)
packages_root32=(debootstrap)
packages_archives=(zip unzip p7zip-full python3)
packages_package=(binutils-mingw-w64-x86-64 binutils-mingw-w64-i686 mingw-w64-common libz-mingw-w64 python3 python3-yaml nsis git)
packages_signing=(osslsigncode openssl)
packages_lazarus=(fp-compiler-3.2.2 fp-utils-3.2.2 fpc-source-3.2.2 lazarus-src-2.2)
packages_database=(sqlite3 unixodbc libsqliteodbc)
packages_docs=(pandoc python3)
packages_browser=(chromium)
packages_bench_archives=(zip unzip "${packages_database[@]}")
packages_bench_quick=(python3)
packages_bench=(libwxgtk3.2-dev qtbase5-dev python3)

is_installed() { [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; }

apt_quietly() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=600 -o Dpkg::Use-Pty=0 "$@" </dev/null
}

install_packages() {
  apt_quietly install -y --no-install-recommends "$@"
}

# need PACKAGE...: installs those that are missing. The package lists are fetched only when they are missing or too old.
need() {
  local package missing=() log=$logs/packages.log
  if ! command -v apt-get >/dev/null; then
    warn "This system has no apt-get. Please see to it that these Debian packages' contents are there: $*"
    return 0
  fi
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  say "Installing ${missing[*]}"
  can_be_root || die "Installing needs root or sudo. As root: apt-get install --no-install-recommends ${missing[*]}"
  mkdir -p "$logs"
  if ! install_packages "${missing[@]}" >"$log" 2>&1; then
    say "Fetching the package lists first"
    if ! apt_quietly update >>"$log" 2>&1 || ! install_packages "${missing[@]}" >>"$log" 2>&1; then
      tail -n 20 "$log" >&2
      die "Could not install ${missing[*]} (see ${log#"$root"/})."
    fi
  fi
}

# want PACKAGE...: the same for packages that only some tests need; those tests are skipped when a package is not
# available.
want() { (need "$@") || warn "Going on without: $*"; }
