#!/bin/sh
# Records what vorda prints, again and again, each snapshot below a line with its time. For the
# BusyBox of cameras on which nothing can be installed; where vorda-record is, that sees every frame.

usage() {
  cat <<'EOF'
Usage: vorda-record.sh [-n COUNT] [-i SECONDS] [vorda's arguments]
Runs vorda every SECONDS (default 1, at least 0.01) until it is stopped, or COUNT times. Without
arguments vorda prints all. Ctrl-C stops between two snapshots, never within one.
  ssh camera sh -s -- -n 200 all < vorda-record.sh > step.txt
  ssh camera sh -s -- -i 0.1 -p 1 share < vorda-record.sh > share.txt
EOF
}

refuse() {
  printf 'vorda-record.sh: %s; try --help.\n' "$1" >&2
  exit 1
}

# Sets "hundredths" to those of so many seconds.
count_hundredths() {
  fraction=00
  case $1 in *.*) fraction=${1#*.}00 ;; esac
  hundredths=${1%%.*}${fraction%"${fraction#??}"}
  while :; do
    case $hundredths in
      0?*) hundredths=${hundredths#0} ;; # else it would be an octal number
      *) break ;;
    esac
  done
}

count=0 # for ever
period=100
while [ $# -gt 0 ]; do
  case $1 in
    -n)
      case ${2-} in
        '' | 0* | *[!0-9]* | ??????????*) refuse '-n takes a number from 1 to 999999999' ;;
      esac
      count=$2
      shift 2
      ;;
    -i)
      case ${2-} in
        '' | .* | *. | *.*.* | *[!0-9.]* | ????????*) refuse '-i takes seconds, like 1 or 0.25' ;;
      esac
      count_hundredths "$2"
      period=$hundredths
      [ "$period" -gt 0 ] || refuse '-i takes at least 0.01 seconds'
      shift 2
      ;;
    -h | --help)
      usage
      exit 0
      ;;
    *) break ;;
  esac
done
[ $# -gt 0 ] || set -- all

# A signal ends vorda, which may wait for a lock, or the pause at once. Nothing of a snapshot is
# written before all of it is there, and nothing ends the writing.
stop=
child=
snapshot=$(mktemp) || exit
trap 'rm -f "$snapshot"' EXIT
trap 'exit 141' PIPE
trap 'stop=yes; [ -z "$child" ] || end_child' INT TERM HUP

# More than once: between its beginning and its program a child still hears as this loop does.
end_child() {
  for pause in 0.1 0.1 0; do
    kill "$child" 2>/dev/null || break
    sleep "$pause" 2>/dev/null || sleep 1
  done
}

# Runs a command to its end, or to the first signal.
await() {
  "$@" &
  child=$!
  [ -z "$stop" ] || end_child
  wait "$child"
  status=$?
  child=
  return "$status"
}

# Sets "now", and "hundredths" to those of it.
look_at_clock() {
  read -r now _ </proc/uptime || exit
  count_hundredths "$now"
}

recorded=0
look_at_clock
due=$hundredths
while [ -z "$stop" ]; do
  await vorda "$@" >"$snapshot"
  status=$?
  [ -z "$stop" ] || break
  [ "$status" -eq 0 ] || exit "$status"
  look_at_clock
  (
    trap '' INT TERM HUP
    printf 'time = %s\n' "$now" && cat "$snapshot" && echo '; end'
  ) || exit
  recorded=$((recorded + 1))
  [ "$recorded" -ne "$count" ] || break

  # A time that has passed meanwhile is not made up for.
  look_at_clock
  due=$((due + period))
  [ "$due" -gt "$hundredths" ] || due=$((hundredths + period - (hundredths - due) % period))
  pause=$((due - hundredths))
  # This BusyBox may know whole seconds alone.
  await sleep "$((pause / 100)).$((pause % 100 / 10))$((pause % 10))" 2>/dev/null || [ -n "$stop" ] ||
    await sleep $(((pause + 99) / 100)) || [ -n "$stop" ] || exit
done
exit 0
