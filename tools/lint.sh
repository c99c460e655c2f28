# Checks that need no running program: layout, shell scripts, and clang-tidy over the portable half.
# shellcheck shell=bash

# project_files PATTERN...: the tree's own files, whether it is a clone or an unpacked archive.
project_files() {
  local names=() pattern
  for pattern in "$@"; do names+=(-o -name "$pattern"); done
  find . \( -path './.*' -o -path ./build \) -prune -o -type f \( "${names[@]:1}" \) -print | sed 's|^\./||' | sort
}

lint_format() { project_files '*.cpp' '*.h' | xargs -r -d '\n' clang-format --dry-run -Werror; }

# The main script names the others, so all are read together.
lint_shell() { shellcheck -x qvx .ci/run; }

# The native build's own list of commands names what clang-tidy can read. It knows fewer warnings than the compiler does. The tests'
# macros expand into what the checks dislike, so they are left out.
lint_tidy() {
  local files
  files=$(project_files '*.cpp' | grep -v -E '^(tests|fuzz|bench)/' |
    while IFS= read -r file; do ! grep -qF "\"file\": \"$root/$file\"" build/native/compile_commands.json || echo "$file"; done)
  xargs -r -d '\n' -P "$(nproc)" -n 1 clang-tidy --quiet -p build/native --extra-arg=-Wno-unknown-warning-option <<<"$files"
}

lint_reference() { python3 tools/reference.py typelib/Qvx.idl | diff -u docs/reference.md - || { echo "Run ./qvx reference."; return 1; }; }

test_lint() {
  need "${packages_lint[@]}" "${packages_build[@]}" "${packages_native[@]}"
  check lint format lint_format
  check lint shell lint_shell
  check lint reference lint_reference
  with_log configure-native cmake --preset native || true
  check lint tidy lint_tidy
}
