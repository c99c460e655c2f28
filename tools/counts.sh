# Counts what passed. Every layer writes one line per program or check into a file; the closing line is their sum.
# shellcheck shell=bash

results=$root/build/test/results

# count LAYER NAME PASSED FAILED SKIPPED
count() {
  mkdir -p "$results"
  printf '%s %s %s %s\n' "$2" "$3" "$4" "$5" >>"$results/$1"
}

# check LAYER NAME COMMAND...: one check that passes or fails with the command.
check() {
  local layer=$1 name=$2
  shift 2
  if with_log "$layer-$name" "$@"; then
    count "$layer" "$name" 1 0 0
    say "$layer: $name passed"
  else
    count "$layer" "$name" 0 1 0
    say "$layer: $name FAILED"
  fi
}

# tally LOG: leaves how many checks a program printed, one on a line, in the caller's passed, failed and skipped.
# shellcheck disable=SC2034
tally() {
  read -r passed failed skipped < <(tr -d '\r' <"$1" |
    awk '/^ok / { p++ } /^FAILED / { f++ } /^skipped / { s++ } END { print p + 0, f + 0, s + 0 }')
}

# count_checks LAYER NAME COMMAND...: counts the checks that the command prints. One that fails without a failed check,
# or checks nothing, counts as a failed one.
count_checks() {
  local layer=$1 name=$2 log=$logs/$1-$2.log status=0 passed failed skipped
  shift 2
  log_tail=0 with_log "$layer-$name" "$@" 2>/dev/null || status=$?
  tally "$log"
  if ((failed == 0 && (status != 0 || passed + skipped == 0))); then
    failed=1
    tail -n 20 "$log" >&2
  fi
  count "$layer" "$name" "$passed" "$failed" "$skipped"
  say_checks "$layer" "$name"
}

# say_checks LAYER NAME: says what the caller has counted, and which checks failed or were skipped.
say_checks() {
  say "$1: $2: $passed passed, $failed failed$( ((skipped == 0)) || echo ", $skipped skipped")"
  grep -a -E '^(FAILED|skipped) ' "$log" >&2 || true
}

xml_attribute() { sed -n "/<testsuites /{s/.* $1=\"\([0-9]*\)\".*/\1/p;q}" "$2"; }

# count_gtest LAYER NAME XML STATUS: adds the results of one GoogleTest program. It writes its report last of all, so a
# missing report means that it did not finish; that, and an error after a good report (a leak, for example), count as
# one more failed test.
count_gtest() {
  local layer=$1 name=$2 xml=$3 status=$4 tests failed skipped
  if [[ ! -s $xml ]] || ! tail -n 1 "$xml" | grep -q '</testsuites>'; then
    count "$layer" "$name" 0 1 0
    warn "$layer: $name ended before its report (exit status $status)"
    return 1
  fi
  tests=$(xml_attribute tests "$xml")
  failed=$(($(xml_attribute failures "$xml") + $(xml_attribute errors "$xml")))
  skipped=$(($(grep -c '<testcase .*result="skipped"' "$xml" || true) + $(xml_attribute disabled "$xml")))
  ((status == 0 || failed > 0)) || failed=$((failed + 1)) tests=$((tests + 1))
  count "$layer" "$name" "$((tests - failed - skipped))" "$failed" "$skipped"
  say "$layer: $name: $((tests - failed - skipped)) passed, $failed failed$( ((skipped == 0)) || echo ", $skipped skipped")"
  ((failed == 0))
}

# The closing line; fails when something failed or nothing ran.
close_counts() {
  local passed failed skipped
  read -r passed failed skipped < <(cat "$results"/* 2>/dev/null | awk '{ p += $2; f += $3; s += $4 } END { print p + 0, f + 0, s + 0 }')
  if ((failed > 0)); then
    echo "Failed:"
    awk '$3 > 0 { sub(".*/", "", FILENAME); print "   " FILENAME ": " $1 " (" $3 ")" }' "$results"/*
  fi
  ((passed + failed > 0)) || warn "No test ran."
  if ((skipped > 0)); then
    echo "$passed passed, $failed failed, $skipped skipped"
  else
    echo "$passed passed, $failed failed"
  fi
  ((failed == 0 && passed > 0))
}
