#!/bin/sh
# Records what vorda prints, again and again, each snapshot below a line with its time. For the
# camera's BusyBox; on the workstation vordascope reads what it writes.

usage() {
  cat >&2 <<'EOF'
Usage: vorda-record [-n COUNT] [-i SECONDS] [vorda's arguments]
Runs vorda until it is stopped, or COUNT times, with a pause of SECONDS (default 1) in between.
Without arguments vorda prints all. Ctrl-C stops between two snapshots, never within one.
  vorda-record -n 200 all > step.txt
  vorda-record -i 0.1 -p 1 share
EOF
  exit 1
}

count=0 # for ever
interval=1
while [ $# -gt 0 ]; do
  case $1 in
    -n)
      case ${2-} in '' | 0* | *[!0-9]*) usage ;; esac
      count=$2
      shift 2
      ;;
    -i)
      case ${2-} in '' | *[!0-9.]*) usage ;; esac
      interval=$2
      shift 2
      ;;
    -h | --help) usage ;;
    *) break ;;
  esac
done
[ $# -gt 0 ] || set -- all

# The terminal's Ctrl-C reaches vorda too, which then would end within a snapshot. So vorda ignores
# what here only asks for the end.
stop=
trap 'stop=yes' INT TERM HUP
recorded=0
while [ -z "$stop" ]; do
  read -r now _ </proc/uptime || exit
  printf 'time = %s\n' "$now" || exit
  (trap '' INT TERM HUP; exec vorda "$@") || exit
  echo '; end' || exit
  recorded=$((recorded + 1))
  [ "$recorded" -ne "$count" ] || break
  [ -n "$stop" ] || sleep "$interval" || [ -n "$stop" ] || exit
done
exit 0
