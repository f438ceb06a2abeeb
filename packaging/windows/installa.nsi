; Installer for Windows XP SP3 to 11, in Italian. Made by scripts/pack-windows, which defines
;   VERSION   of the program
;   CONTENTS  folder with everything that is installed
;   RESULT    the installer to write
; Without questions: /S, and /D=FOLDER as the last word; /NOAUTO leaves out the start with Windows, /PIANIFICATE adds the
; scheduled task. The uninstaller takes /S, and /TUTTO to delete the settings too.
Unicode true
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!insertmacro GetParameters
!insertmacro GetOptions

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tellaxis"
!define EVENTS "SYSTEM\CurrentControlSet\Services\EventLog\Application\Tellaxis"
!define TASK "Tellaxis pianificate"

Name "Tellaxis ${VERSION}"
OutFile "${RESULT}"
InstallDir C:\Tellaxis
InstallDirRegKey HKLM "${KEY}" InstallLocation
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ShowInstDetails nevershow
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 ProductName Tellaxis
VIAddVersionKey /LANG=0 FileDescription "Installazione di Tellaxis"
VIAddVersionKey /LANG=0 FileVersion "${VERSION}"
VIAddVersionKey /LANG=0 LegalCopyright "The Tellaxis maintainers, licenza MIT"

!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION startProgram
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\guida.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Leggi la guida"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE Italian

; Whether a copy served the folder and is to be started again.
Var WasRunning

; Where the installer's rights are higher than the desk user's, the desktop itself starts the program with the user's own.
!macro START
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\Tellaxis.exe"'
!macroend

Function startProgram
  !insertmacro START
FunctionEnd

; Ends with the reason. A copy that has been ended serves the folder again.
!macro GIVE_UP failure reason
  ${If} $WasRunning == 1
    !insertmacro START
  ${EndIf}
  MessageBox MB_OK|MB_ICONSTOP "${reason}" /SD IDOK
  SetErrorLevel 3
  ${failure}
!macroend

; Waits until nothing holds the program, an operation of the calendar or the copy that is just ending: a file in use
; would stay as it is, and unasked nobody would be told. After half a minute nothing is changed.
!macro WAIT_FOR program failure
  ${If} ${FileExists} "$INSTDIR\${program}"
    StrCpy $1 0
    ${Do}
      ClearErrors
      FileOpen $0 "$INSTDIR\${program}" a
      ${IfNot} ${Errors}
        FileClose $0
        ${ExitDo}
      ${EndIf}
      ${If} $1 == 60
        !insertmacro GIVE_UP ${failure} "${program} è in uso: attendere che finisca, o chiuderlo, e riprovare."
      ${EndIf}
      Sleep 500
      IntOp $1 $1 + 1
    ${Loop}
  ${EndIf}
!macroend

; Asks the copy that serves the folder to end. It finishes its job first; two minutes later it is given up.
!macro END_COPY failure
  StrCpy $WasRunning 0
  ${If} ${FileExists} "$INSTDIR\Tellaxis.exe"
    ExecWait '"$INSTDIR\Tellaxis.exe" --esci' $0
    ${If} $0 == 0
      StrCpy $WasRunning 1
    ${ElseIf} $0 != 4
      !insertmacro GIVE_UP ${failure} "Tellaxis è in funzione e non si chiude: chiuderlo a mano e riprovare."
    ${EndIf}
  ${EndIf}
  !insertmacro WAIT_FOR Tellaxis.exe ${failure}
  !insertmacro WAIT_FOR tellaxisd.exe ${failure}
!macroend

Section "Tellaxis" programs
  SectionIn RO
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  !insertmacro END_COPY Abort
  ClearErrors
  File /r "${CONTENTS}/*.*"
  ${If} ${Errors}
    !insertmacro GIVE_UP Abort "Non tutti i file si sono potuti scrivere in $INSTDIR: riprovare."
  ${EndIf}
  ; Whoever uses the desk writes jobs and settings here: the group Users, whatever it is called, and on XP by its name.
  nsExec::Exec 'icacls "$INSTDIR" /grant "*S-1-5-32-545:(OI)(CI)M"'
  Pop $0
  ${If} $0 != 0
    nsExec::Exec 'cacls "$INSTDIR" /E /T /G Users:C'
    Pop $0
  ${EndIf}

  CreateDirectory "$SMPROGRAMS\Tellaxis"
  CreateShortcut "$SMPROGRAMS\Tellaxis\Tellaxis.lnk" "$INSTDIR\Tellaxis.exe"
  CreateShortcut "$SMPROGRAMS\Tellaxis\Guida.lnk" "$INSTDIR\guida.html"
  CreateShortcut "$SMPROGRAMS\Tellaxis\Disinstalla Tellaxis.lnk" "$INSTDIR\disinstalla.exe"

  WriteUninstaller "$INSTDIR\disinstalla.exe"
  WriteRegStr HKLM "${KEY}" DisplayName "Tellaxis"
  WriteRegStr HKLM "${KEY}" DisplayVersion "${VERSION}"
  WriteRegStr HKLM "${KEY}" DisplayIcon "$INSTDIR\Tellaxis.exe"
  WriteRegStr HKLM "${KEY}" InstallLocation "$INSTDIR"
  WriteRegStr HKLM "${KEY}" UninstallString '"$INSTDIR\disinstalla.exe"'
  WriteRegStr HKLM "${KEY}" QuietUninstallString '"$INSTDIR\disinstalla.exe" /S'
  WriteRegDWORD HKLM "${KEY}" NoModify 1
  WriteRegDWORD HKLM "${KEY}" NoRepair 1
  WriteRegExpandStr HKLM "${EVENTS}" EventMessageFile "$INSTDIR\tellaxisd.exe"
  WriteRegDWORD HKLM "${EVENTS}" TypesSupported 1
SectionEnd

Section "Avvio con Windows, per tutti gli utenti" autostart
  CreateShortcut "$SMSTARTUP\Tellaxis.lnk" "$INSTDIR\Tellaxis.exe"
SectionEnd

; The program with the window, which carries out a single operation without one: tellaxisd would flash a console.
Section /o "Operazioni pianificate, ogni minuto" schedule
  ReadEnvStr $1 USERNAME
  nsExec::Exec 'schtasks /Create /F /IT /RU "$1" /TN "${TASK}" /SC MINUTE /MO 1 /TR "\"$INSTDIR\Tellaxis.exe\" pianificate"'
  Pop $0
  ${If} $0 != 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "L'operazione pianificata non si è potuta creare: crearla a mano, ogni minuto, con il comando $INSTDIR\Tellaxis.exe pianificate" /SD IDOK
  ${EndIf}
SectionEnd

; The last: everything is in its place.
Section -again
  ${If} $WasRunning == 1
    !insertmacro START
  ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${programs} "I programmi, la guida e le voci nel menu Start. Le impostazioni di prima restano."
  !insertmacro MUI_DESCRIPTION_TEXT ${autostart} "Tellaxis parte quando un utente accede a Windows."
  !insertmacro MUI_DESCRIPTION_TEXT ${schedule} "Chiama una volta al minuto le operazioni del calendario di Orbis51."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/NOAUTO" $1
  ${IfNot} ${Errors}
    !insertmacro UnselectSection ${autostart}
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/PIANIFICATE" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${schedule}
  ${EndIf}
FunctionEnd

Section "un.Tellaxis" un.programs
  SectionIn RO
  SetShellVarContext all
  !insertmacro END_COPY Abort
  nsExec::Exec 'schtasks /Delete /F /TN "${TASK}"'
  Pop $0
  Delete "$SMSTARTUP\Tellaxis.lnk"
  RMDir /r "$SMPROGRAMS\Tellaxis"
  Delete "$INSTDIR\Tellaxis.exe"
  Delete "$INSTDIR\tellaxisd.exe"
  Delete "$INSTDIR\fiscal_driver_simulator.exe"
  Delete "$INSTDIR\guida.html"
  Delete "$INSTDIR\LEGGIMI.txt"
  Delete "$INSTDIR\devices-esempio.toml"
  RMDir /r "$INSTDIR\esempi"
  Delete "$INSTDIR\disinstalla.exe"
  DeleteRegKey HKLM "${KEY}"
  DeleteRegKey HKLM "${EVENTS}"
  ; Only where nothing of the desk's is left in it.
  RMDir "$INSTDIR"
SectionEnd

; Documents that printers of a folder have written stay.
Section /o "un.Impostazioni, lavori e registro" un.settings
  Delete "$INSTDIR\_Tellaxis.ini"
  Delete "$INSTDIR\devices.toml"
  Delete "$INSTDIR\MF.log"
  RMDir /r "$INSTDIR\Orbis"
  RMDir /r "$INSTDIR\IN"
  RMDir /r "$INSTDIR\CortOrbis"
  RMDir /r "$INSTDIR\CortIN"
  RMDir "$INSTDIR"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${un.programs} "I programmi e le voci nei menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${un.settings} "Anche le impostazioni della cassa. Non si possono recuperare."
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/TUTTO" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${un.settings}
  ${EndIf}
FunctionEnd
