# shellcheck shell=bash
# What the scripts share. Source it first: it moves to the root of the repository, and every path
# in the scripts starts there. Keeps to bash 3.2, which is the one that macOS has.

unset CDPATH
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit

say() { printf '==> %s\n' "$*"; }

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# The comment at the top of the script that was called is its manual.
show_help_if_asked() {
  case "${1:-}" in
    -h | --help) sed -n '2,/^$/s/^# \{0,1\}//p' "scripts/${0##*/}" && exit 0 ;;
  esac
}

job_count() { getconf _NPROCESSORS_ONLN; }

# quietly NAME COMMAND...: runs the command; its output stays in a log and shows only on failure.
quietly() {
  local log=build/logs/$1.log status=0
  shift
  mkdir -p build/logs
  "$@" >"$log" 2>&1 </dev/null || status=$?
  ((status == 0)) || cat "$log" >&2
  return "$status"
}

# The stores of our programs and tests are their own: what the caller's environment names stays out.
use_own_stores() {
  unset TQSTORE_CONFIG
  export TQSTORE_LEDGER=:memory: TQSTORE_DEFAULTS="$PWD/build/defaults"
}

# is_configured PRESET: ninja re-runs cmake by itself, so one time is enough; a run for CI also
# wants its warnings to be errors.
is_configured() {
  [[ -f build/$1/build.ninja ]] || return 1
  [[ "${CI:-}" != true ]] ||
    grep -q '^TQSTOREKIT_WARNINGS_AS_ERRORS:BOOL=ON' "build/$1/CMakeCache.txt"
}

configure() {
  is_configured "$1" && return
  local option=-DTQSTOREKIT_WARNINGS_AS_ERRORS=OFF
  [[ "${CI:-}" != true ]] || option=-DTQSTOREKIT_WARNINGS_AS_ERRORS=ON
  say "Configuring build/$1"
  quietly "configure-$1" cmake --preset "$1" "$option"
}

# build PRESET [--target NAME...]
build() {
  local preset=$1 progress=()
  shift
  [[ -t 1 ]] || progress=(-- --quiet)
  say "Building build/$preset"
  cmake --build --preset "$preset" --parallel "$(job_count)" "$@" ${progress[@]+"${progress[@]}"}
}

# run_plan FILE [TARGET...]: lets ninja do all of it that can be done; prints failures only, and of
# these not the long commands.
run_plan() {
  ninja --quiet -k 0 -j "$(job_count)" -f "$@" |
    sed -e '/^ninja: no work to do/d' -e '/^FAILED: /{n;d;}'
}
