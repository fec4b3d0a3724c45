# What the scripts share. Sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

step() { printf '== %s\n' "$*" >&2; }

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

# Configures a preset; the rest are targets (none: all).
build() {
  local preset=$1
  shift
  step "build $preset"
  cmake --preset "$preset" >"build-$preset.log" 2>&1 || { cat "build-$preset.log" >&2; return 1; }
  rm -f "build-$preset.log"
  cmake --build --preset "$preset" ${1:+--target "$@"} | tail -n 1 >&2
}
