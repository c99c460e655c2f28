# Makes what users download, and tests it.
# shellcheck shell=bash

package=$root/build/package

package_version() { sed -n 's/^project(Qvx VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt; }

# The time of the commit; in a tree without history, that of the latest entry of the changelog.
package_time() {
  git log -1 --format=%ct 2>/dev/null || date -u -d "$(sed -n 's/^## .*(\([0-9-]*\)).*/\1/p' CHANGELOG.md | head -n 1)" +%s
}

make_package() {
  local arch
  need "${packages_package[@]}"
  for arch in x64 x86; do
    build "$arch" --target qvx_server qvxhost PkZip PkunZip qvx_ado || return 1
  done
  with_log package python3 tools/package.py make build "$package" "$(package_version)" "$(package_time)"
}

qvx_package() {
  make_package || die "The package could not be made."
  (cd "$package" && ls -l Qvx-* SHA256SUMS files/x64 files/x86)
  say "The packages are in build/package"
}

# Another folder, another time, and no compiler's cache give the same bytes.
test_package_again() {
  local folder
  folder=$(mktemp -d)
  at_exit "rm -rf '$folder'"
  tar -c --exclude=./build --exclude=./.git . | tar -x -C "$folder" || return 1
  (cd "$folder" && CCACHE_DISABLE=1 cmake --preset x64 && CCACHE_DISABLE=1 cmake --build --preset x64 --target qvx_server) ||
    return 1
  python3 tools/package.py again "$folder/build/x64" "$package" x64
}

test_package() {
  check package made make_package
  check package contents python3 tools/package.py check "$package" "$(package_version)"
  check package again test_package_again
}
