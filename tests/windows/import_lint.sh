#!/bin/bash
# import_lint EXE...: fails when a program imports a function that the headers declare only for Windows newer than XP SP3,
# one that XP's own C run-time lacks, or one that a run-time library of its own would have to bring; or when it does not
# bear what old drivers do in its process.
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

# The headers declare the C run-time's functions for every Windows alike: here counts what the library itself exports.
LC_ALL=C sort -u "$here/data/msvcrt_not_in_xp.txt" >"$work/runtime"
grep -qx _difftime64 "$work/runtime" && ! grep -qx malloc "$work/runtime" || {
  echo "import_lint: the names of the run-time are not as expected" >&2
  exit 2
}

# Libraries of every XP; another one would have to be installed along with the program.
libraries="advapi32 comctl32 comdlg32 gdi32 kernel32 msvcrt ole32 oleacc oleaut32 rpcrt4 shell32 shlwapi user32 uxtheme
  version winmm winspool.drv wininet ws2_32 wsock32 mswsock"

bad=0
for program in "$@"; do
  $triple-objdump -p "$program" | awk '/DLL Name:/ {library = $3} /^\t[0-9a-f]+\t/ {print tolower(library), $NF}' >"$work/imports"
  [ -s "$work/imports" ] || { echo "$program: no imports found" >&2; exit 2; }
  awk -v program="$program" -v libraries="${libraries//$'\n'/ }" -v newer="$work/newer" -v runtime="$work/runtime" '
    function refuse(reason) { print program ": " $2 " (" $1 ") " reason; bad = 1 }
    BEGIN {
      while ((getline name <newer) > 0) isNewer[name]
      while ((getline name <runtime) > 0) isMissing[name]
      count = split(libraries, names, " ")
      for (i = 1; i <= count; ++i) { isPart[names[i]]; isPart[names[i] ".dll"] }
    }
    $2 in isNewer { refuse("is newer than Windows XP") }
    $1 == "msvcrt.dll" && $2 in isMissing { refuse("is not in the run-time of Windows XP") }
    # It would show a box and wait for somebody to press a key.
    $1 == "msvcrt.dll" && $2 == "abort" { refuse("stops a program with a box") }
    !($1 in isPart) { refuse("is of a library that is no part of Windows XP") }
    END { exit bad }' "$work/imports" || bad=1
  ! $triple-objdump -p "$program" | grep -q NX_COMPAT || { echo "$program: drivers of XP's time would be stopped in it"; bad=1; }
  system=$($triple-objdump -p "$program" | awk '/MajorSubsystemVersion/ {print $2}')
  [ "$system" = 5 ] || { echo "$program: made for Windows $system"; bad=1; }
done
exit $bad
