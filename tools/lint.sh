# Checks that need no running program: layout, shell scripts, and clang-tidy over the portable half.
# shellcheck shell=bash

# project_files PATTERN...: the tree's own files, whether it is a clone or an unpacked archive.
project_files() {
  local names=() pattern
  for pattern in "$@"; do names+=(-o -name "$pattern"); done
  find . \( -path './.*' -o -path ./build \) -prune -o -type f \( "${names[@]:1}" \) -print | sed 's|^\./||' | sort
}

lint_format() { project_files '*.c' '*.cpp' '*.h' | xargs -r -d '\n' clang-format --dry-run -Werror; }

# The main script sources the others, so all are checked together.
lint_shell() { shellcheck -x qvx .ci/run; }

# The native build's compilation database lists what clang-tidy can read: the rules, in the batches in which they are
# built. clang-tidy knows fewer warnings than the compiler does. The tests are left out, since their macros expand into
# code that the checks reject.
lint_tidy() {
  sed -n 's|^ *"file": "\(.*_rules_[0-9]*\.cpp\)".*|\1|p' build/native/compile_commands.json | tr '\n' '\0' |
    xargs -0 -P "$(nproc)" -n 1 clang-tidy --quiet -p build/native \
    --checks=-bugprone-suspicious-include --extra-arg=-Wno-unknown-warning-option
}

lint_reference() { python3 tools/reference.py typelib/Qvx.idl | diff -u docs/reference.md - || { echo "Run ./qvx reference."; return 1; }; }

# Tables and the generated reference may be wider.
lint_lines() {
  local files
  mapfile -t files < <(project_files '*.md' | grep -v '^docs/reference.md$')
  ! LC_ALL=C.UTF-8 grep -nE '^[^|].{120}' "${files[@]}"
}

lint_layers() {
  python3 tools/layers.py && python3 -B tools/layers_picture.py | diff docs/layers.svg - >/dev/null ||
    { echo "python3 tools/layers_picture.py > docs/layers.svg"; return 1; }
}

test_lint() {
  need "${packages_lint[@]}" "${packages_build[@]}" "${packages_native[@]}"
  check lint format lint_format
  check lint shell lint_shell
  check lint reference lint_reference
  check lint layers lint_layers
  check lint lines lint_lines
  check lint share python3 tools/test_share.py
  say "$(<"$logs/lint-share.log")"
  with_log configure-native cmake --preset native || true
  check lint tidy lint_tidy
}
