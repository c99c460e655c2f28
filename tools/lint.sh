# Checks that need no running program: layout, shell scripts, and clang-tidy over the portable half.
# shellcheck shell=bash

# Files under version control, new ones included, deleted ones not.
project_files() { git ls-files -co --exclude-standard -- "$@" | while IFS= read -r file; do [[ ! -f $file ]] || echo "$file"; done; }

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

test_lint() {
  need "${packages_lint[@]}" "${packages_build[@]}" "${packages_native[@]}"
  check lint format lint_format
  check lint shell lint_shell
  with_log configure-native cmake --preset native || true
  check lint tidy lint_tidy
}
