# Makes what users download, and tests it.
# shellcheck shell=bash

package=$root/build/package

package_version() { sed -n 's/^project(Qvx VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt; }

# The time of the commit; in a tree without history, that of the latest entry of the changelog.
package_time() {
  git log -1 --format=%ct 2>/dev/null || date -u -d "$(sed -n '/^## .*(\([0-9-]*\)).*/{s//\1/p;q}' CHANGELOG.md)" +%s
}

# make_package OUT URL [CERTIFICATE PASSWORD-FILE TIMESTAMP]
make_package() {
  local arch out=$1
  shift
  need "${packages_package[@]}"
  make_docs || return 1
  for arch in x64 x86; do
    build "$arch" --target qvx_server qvxhost PkZip PkunZip qvx_ado stock basket || return 1
  done
  with_log package python3 tools/packaging make build "$out" "$(package_version)" "$(package_time)" "$@"
}

qvx_package() {
  local url="" certificate="" password="" timestamp="" signing=()
  while (($#)); do
    case $1 in
      --url | --certificate | --password | --timestamp)
        (($# > 1)) || die "$1 needs a value."
        printf -v "${1#--}" %s "$2"
        shift
        ;;
      *) die "There is no option '$1': --url, --certificate, --password or --timestamp." ;;
    esac
    shift
  done
  # This name is reserved for examples, and leads nowhere.
  url=${url:-https://download.example/qvx/$(package_version)}
  if [[ -n $certificate ]]; then
    signing=("$(from_caller "$certificate")" "$(from_caller "$password")" "$timestamp")
    [[ -f ${signing[0]} ]] || die "There is no certificate $certificate."
    [[ -f ${signing[1]} ]] || die "--password needs the file that has the certificate's password."
    need "${packages_signing[@]}"
  fi
  make_package "$package" "$url" "${signing[@]}" || die "The package could not be made."
  (cd "$package" && ls -l Qvx[-.]* SHA256SUMS manifests files/x64 files/x86)
  say "The packages are in build/package"
}

# Another folder, another time, and no compiler's cache give the same bytes.
test_package_again() (
  local folder
  watch_exit
  folder=$(mktemp -d)
  at_exit "rm -rf '$folder'"
  tar -c --exclude=./build --exclude=./.git . | tar -x -C "$folder" || return 1
  (cd "$folder" && CCACHE_DISABLE=1 cmake --preset x64 && CCACHE_DISABLE=1 cmake --build --preset x64 --target qvx_server) ||
    return 1
  python3 tools/packaging again "$folder/build/x64" "$package" x64 || return 1
  # The setup programs are the same as well.
  python3 tools/packaging setups "$folder/setups" "$(package_version)" "$(package_time)" "$package/files" || return 1
  local setup
  for setup in "$package"/Qvx-*-setup*.exe; do
    cmp "$setup" "$folder/setups/$(basename "$setup")" || return 1
  done
)

# With a certificate of its own that is thrown away, all programs are signed. makensis signs the uninstaller, and ends
# when that fails.
test_package_signed() {
  local folder=$root/build/test/signed
  rm -rf "$folder"
  mkdir -p "$folder"
  openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Throw-away" -addext extendedKeyUsage=codeSigning \
    -keyout "$folder/key.pem" -out "$folder/certificate.pem" || return 1
  printf secret >"$folder/password"
  openssl pkcs12 -export -inkey "$folder/key.pem" -in "$folder/certificate.pem" -out "$folder/certificate.p12" \
    -passout "file:$folder/password" || return 1
  make_package "$folder/package" https://download.example/qvx "$folder/certificate.p12" "$folder/password" "" || return 1
  python3 tools/packaging check "$folder/package" "$(package_version)" "$folder/certificate.pem"
}

# The package of this run of the tests, which several layers use.
make_package_once() {
  [[ ! -f $root/build/test/made-package ]] || return 0
  make_package "$package" "https://download.example/qvx/$(package_version)" && touch "$root/build/test/made-package"
}

test_package() {
  check package made make_package_once
  count_checks package contents python3 tools/packaging check "$package" "$(package_version)"
  check package again test_package_again
  want "${packages_signing[@]}"
  if is_installed osslsigncode; then
    count_checks package signed test_package_signed
  else
    warn "package: SIGNING IS SKIPPED: there is no osslsigncode."
    count package signed 0 0 1
  fi
  test_setups
}
