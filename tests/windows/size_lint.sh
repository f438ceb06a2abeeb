#!/bin/sh
# size_lint EXE...: fails when the program with a window has more than 8 MB, or the one without more than 2 MB.
bad=0
for program in "$@"; do
  case $(basename "$program" | tr '[:upper:]' '[:lower:]') in
    tellaxisd.exe) limit=2000000 ;;
    tellaxis.exe) limit=8000000 ;;
    *) echo "size_lint: no limit for $program" >&2; exit 2 ;;
  esac
  size=$(stat -c %s "$program") || exit 2
  echo "$program: $size of $limit bytes"
  [ "$size" -lt $limit ] || bad=1
done
exit $bad
