# Makes the documentation that a browser shows, and tests it.
# shellcheck shell=bash

site=$root/build/docs

make_docs() {
  need "${packages_docs[@]}"
  with_log docs python3 -B tools/docs.py "$site"
}

# observe_members LOG: runs every example of the reference pages on the real controls. Needs a prefix and a display.
observe_members() {
  local folder=$root/build/docs-run
  rm -rf "$folder" "$1"
  python3 -B tools/docs_members.py script "$folder" || return 1
  register_server "$ocx" || return 1
  run_windows 300 "$host_program" "$(windows_path "$folder/members.frm")" "$(windows_path "$folder/members.vbs")" \
    --quiet --log "$(windows_path "$1")"
  sed -i 's/\r$//' "$1"
}

write_observed() {
  local log=$root/build/docs-members.log
  build x64 --target qvx_server qvxhost || die "The build failed."
  start_wine
  use_display virtual
  with_log docs-run observe_members "$log" || die "The examples could not be run."
  python3 -B tools/docs_members.py observed "$log" >docs/observed.txt || die "An example has failed."
  say "Wrote docs/observed.txt"
}

qvx_docs() {
  case ${1:-} in
    '')
      make_docs || die "The documentation could not be made."
      say "The documentation is in build/docs; it begins with index.html"
      ;;
    --observe) write_observed ;;
    *) die "There is no option '$1' (see ./qvx help)." ;;
  esac
}

# The same sources give the same bytes.
test_docs_made() {
  rm -rf "$site-again"
  python3 -B tools/docs.py "$site" && python3 -B tools/docs.py "$site-again" && diff -r "$site" "$site-again"
}

# Examples, defaults and errors on the pages are what the controls do.
test_docs_observed() {
  local log=$root/build/test/docs-members.log
  observe_members "$log" || return 1
  python3 -B tools/docs_members.py observed "$log" >"$log.observed" || return 1
  diff docs/observed.txt "$log.observed" || { echo "Run ./qvx docs --observe."; return 1; }
}

# The compilers accept the listings.
test_docs_listings() {
  local folder=$root/build/test/docs-listings file compiler
  rm -rf "$folder"
  python3 -B tools/docs_listings.py "$folder" || return 1
  for file in "$folder"/*; do
    if [[ $file == *.c ]]; then compiler=(x86_64-w64-mingw32-gcc -std=c17); else compiler=(x86_64-w64-mingw32-g++ -std=c++20); fi
    "${compiler[@]}" -fsyntax-only -Wall -Wextra -Werror -isystem build/x64/typelib/generated "$file" || return 1
  done
}

test_docs() {
  need "${packages_docs[@]}"
  want "${packages_browser[@]}"
  build_for_test x64
  start_wine_once
  check docs made test_docs_made
  check docs observed test_docs_observed
  check docs listings test_docs_listings
  check docs faults python3 -B tools/docs_check.py faults "$site"
  check docs links python3 -B tools/docs_check.py links "$site"
  if command -v chromium >/dev/null; then
    check docs browser timeout -k 10 300 python3 -B tools/docs_check.py browser "$site" "$root/build/test/docs-pictures"
  else
    warn "docs: THE PAGES ARE NOT OPENED: there is no chromium."
    count docs browser 0 0 1
  fi
}
