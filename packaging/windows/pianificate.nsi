; A program without a window of any kind that calls the scheduled operations once, for a task of every minute: what is
; started from a task with a console would flash it on the cash desk's screen. Its arguments are passed on, in the place of
; the role CLIENT. Made by scripts/pack-windows, which defines RESULT.
Unicode true
!include FileFunc.nsh
!include LogicLib.nsh
!insertmacro GetParameters
Name "Tellaxis pianificate"
OutFile "${RESULT}"
RequestExecutionLevel user
SilentInstall silent
CRCCheck off

Section
  ${GetParameters} $0
  ${If} $0 == ""
    StrCpy $0 "--postazione CLIENT"
  ${EndIf}
  ExecShellWait open "$EXEDIR\tellaxisd.exe" "pianificate $0" SW_HIDE
SectionEnd
