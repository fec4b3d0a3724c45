# shellcheck shell=bash
# What the scripts share. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What vordascope and its tests need to be configured and built.
# shellcheck disable=SC2034 # used where this file is sourced
HOST_PACKAGES=(libcli11-dev libboost-dev nlohmann-json3-dev zlib1g-dev)
# What makes the page of vordascope: its reader for WebAssembly, and node from wherever it came.
# shellcheck disable=SC2034
PAGE_PACKAGES=(clang lld libc++-dev-wasm32 libclang-rt-dev-wasm32)
command -v node >/dev/null || PAGE_PACKAGES+=(nodejs)
command -v npm >/dev/null || PAGE_PACKAGES+=(npm)

scratch=$(mktemp -d)

# Nothing that a script has begun or written outlives it.
clean_up() {
  local jobs
  mapfile -t jobs < <(jobs -p)
  ((${#jobs[@]} == 0)) || kill "${jobs[@]}" 2>/dev/null || true
  rm -rf "$scratch"
}
trap clean_up EXIT

tests_passed=0
tests_failed=0
tests_skipped=0

# step TITLE: a heading for what follows.
# step TITLE COMMAND...: runs a command or a function. One line when it passes, with the tests that
# it ran; all of its output, and the end of the script, when it fails. To be called as a command of
# its own, not in a condition, where a function would go on after an error.
#
# A line "result: TEXT" in the output is shown behind the title.
step() {
  local title=$1 log=$scratch/step.log began=$SECONDS status pulse user system
  local TIMEFORMAT='%0U %0S'
  shift
  if (($# == 0)); then
    printf '== %s\n' "$title" >&2
    return
  fi
  show_life "$title" &
  pulse=$!
  set +e
  { time { (set -e; "$@") </dev/null >"$log" 2>&1; }; } 2>"$scratch/processor"
  status=$?
  set -e
  kill -KILL "$pulse" # any other signal may find it before it let go of the trap above
  wait "$pulse" 2>/dev/null || true
  [[ ! -t 2 ]] || printf '\r\033[K' >&2

  local passed failed skipped result
  IFS=$'\t' read -r passed failed skipped result < <(tally "$log")
  ((tests_passed += passed, tests_failed += failed, tests_skipped += skipped)) || true
  ((passed + failed + skipped == 0)) || result="$passed passed, $skipped skipped${result:+, $result}"
  if ((status)); then
    printf '== %s: FAILED\n' "$title" >&2
    cat "$log" >&2
    printf '== %s: FAILED with status %s, its output is above\n' "$title" "$status" >&2
    ((failed)) || ((tests_failed += 1))
    exit "$status"
  fi
  read -r user system <"$scratch/processor"
  printf '== %s%s (%s s, %s s of processor)\n' \
    "$title" "${result:+: $result}" $((SECONDS - began)) $((user + system)) >&2
}

# Shows that a step goes on: a counter on a terminal, elsewhere a line a minute.
show_life() {
  local began=$SECONDS every=60
  [[ ! -t 2 ]] || every=1
  # It ends with the script, whatever ends that.
  while sleep 1 && kill -0 $$ 2>/dev/null; do
    local passed=$((SECONDS - began))
    ((passed % every == 0)) || continue
    if [[ -t 2 ]]; then
      printf '\r== %s ... %s s' "$1" "$passed" >&2
    else
      printf '== %s ... %s s\n' "$1" "$passed" >&2
    fi
  done
}

# Prints how many tests passed, failed and were skipped in a log, and its results. The log is that of
# ctest, of a GoogleTest program, of node's test runner, or has lines "N passed, N failed".
tally() {
  awk '
    /^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+/ { ctest = 1; failed += $4; passed += $9 - $4 }
    /^ *[0-9]+\/[0-9]+ Test .*\*\*\*(Skipped|Not Run)/ { unrun++ }
    /^\[  PASSED  \] [0-9]+ tests?/ { google_passed += $4 }
    /^\[  FAILED  \] [0-9]+ tests?, listed/ { google_failed += $4 }
    /^\[  SKIPPED \] [0-9]+ tests?/ { google_skipped += $4 }
    /^(#|ℹ) pass [0-9]+$/ { passed += $3 }
    /^(#|ℹ) fail [0-9]+$/ { failed += $3 }
    /^(#|ℹ) skipped [0-9]+$/ { skipped += $3 }
    /^[0-9]+ passed, [0-9]+ failed$/ { passed += $1; failed += $3 }
    sub(/^result: /, "") { result = result (result == "" ? "" : ", ") $0 }
    END {
      if (ctest) {
        passed -= unrun
        skipped += unrun
      } else {
        passed += google_passed
        failed += google_failed
        skipped += google_skipped
      }
      printf "%d\t%d\t%d\t%s\n", passed, failed, skipped, result
    }' "$1"
}

# Installs the Debian packages that are missing; says nothing when all are there. Elsewhere than on
# Debian nobody can tell: then what is missing shows itself.
need() {
  local missing=() package as_root=()
  command -v dpkg-query >/dev/null || return 0
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    # sudo may ask for a password, where there is somebody to answer.
    local ask=(sudo -v)
    [[ -t 0 ]] || ask=(sudo -n true)
    if ! "${ask[@]}" 2>/dev/null; then
      printf '%s needs packages that are missing. As root:\n  apt-get install --no-install-recommends %s\n' \
        "$0" "${missing[*]}" >&2
      exit 1
    fi
    as_root=(sudo)
  fi
  step "install ${missing[*]}" install_packages
}

install_packages() {
  local apt_get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600)
  "${apt_get[@]}" update
  "${apt_get[@]}" install -y --no-install-recommends "${missing[@]}"
}

# Configures and builds a preset; the rest are targets (none: all).
build() {
  if ! { mkdir -p build && [[ -w build ]]; } 2>/dev/null; then
    printf '%s: cannot write to %s; work in a copy of your own.\n' "$0" "$PWD/build" >&2
    exit 1
  fi
  if command -v ccache >/dev/null; then
    export CCACHE_DEPEND=1 # the compiler's list of headers will do; no run of the preprocessor
    export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  fi
  step "build $1" build_preset "$@"
}

build_preset() {
  local preset=$1
  export CCACHE_BASEDIR=$PWD/build/$1 # what is made there is the same in all builds
  shift
  cmake --preset "$preset"
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# Prints the sources of these folders, each with a zero byte behind it. Not from git: what is checked
# may be an exported tree, or belong to somebody whom git does not trust.
sources() {
  find "$@" \( -name build -o -name node_modules \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    LC_ALL=C sort -z
}
