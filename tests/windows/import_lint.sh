#!/bin/bash
# import_lint EXE...: fails when a program imports a function that the headers declare only for Windows newer than XP SP3,
# or one that a run-time library of its own would have to bring.
set -euo pipefail

triple=i686-w64-mingw32
here=$(dirname "$0")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

declared() { # _WIN32_WINNT NTDDI_VERSION
  $triple-g++-posix -E -P -x c++ "-D_WIN32_WINNT=$1" "-DWINVER=$1" "-DNTDDI_VERSION=$2" "$here/import_lint_headers.cpp" |
    grep -oE '[A-Za-z_][A-Za-z0-9_]* *\(' | tr -d ' (' | LC_ALL=C sort -u
}
declared 0x0501 0x05010300 >"$work/xp"
declared 0x0A00 0x0A000000 >"$work/newest"
LC_ALL=C comm -13 "$work/xp" "$work/newest" >"$work/newer"
# The check itself: these are known on both sides of the line.
grep -qx CreateFileW "$work/xp" && grep -qx GetTickCount64 "$work/newer" || {
  echo "import_lint: the headers are not as expected" >&2
  exit 2
}

# Libraries of every XP; another one would have to be installed along with the program.
libraries="advapi32 comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleacc oleaut32 rpcrt4 shell32 shlwapi user32 uxtheme
  version winmm winspool.drv wininet ws2_32 wsock32 mswsock"

bad=0
for program in "$@"; do
  $triple-objdump -p "$program" | awk '/DLL Name:/ {library = $3} /^\t[0-9a-f]+\t/ {print tolower(library), $NF}' >"$work/imports"
  [ -s "$work/imports" ] || { echo "$program: no imports found" >&2; exit 2; }
  while read -r library name; do
    if grep -qx -- "$name" "$work/newer"; then
      echo "$program: $name ($library) is newer than Windows XP"
      bad=1
    fi
    case " $(echo $libraries) " in
      *" ${library%.dll} "*) ;;
      *) echo "$program: $library ($name) is no part of Windows XP"; bad=1 ;;
    esac
  done <"$work/imports"
  system=$($triple-objdump -p "$program" | awk '/MajorSubsystemVersion/ {print $2}')
  [ "$system" = 5 ] || { echo "$program: made for Windows $system"; bad=1; }
done
exit $bad
