# shellcheck shell=bash
# What the scripts share. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

step() { printf '== %s\n' "$*" >&2; }

# What the presets need to configure and build vordascope and its tests.
# shellcheck disable=SC2034 # used where this file is sourced
HOST_PACKAGES=(libcli11-dev nlohmann-json3-dev zlib1g-dev)

# Installs the Debian packages that are missing; says nothing when all are there.
need() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  step "install ${missing[*]}"
  local as_root=()
  ((EUID == 0)) || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq >&2
  DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -qq -y --no-install-recommends "${missing[@]}" >&2
}

# Configures and builds a preset; the rest are targets (none: all). Shows more only when it fails.
build() {
  local preset=$1 log
  shift
  step "build $preset"
  log=$(mktemp)
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
