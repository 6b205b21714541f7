; The installer for one user, without an administrator but for the rule of the firewall.  build.sh makes it
; and defines version, icon, folder (with what it has collected) and size (of all files, in KiB).
;
; Exit status: 0 done, 1 cancelled, 2 failed, 3 the console runs, 4 done but for the rule of the firewall.
; /S asks and shows nothing, but that Windows asks for an administrator where a rule is wanted (/FIREWALL=1) or
; one that was made goes with the program.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS Win10

!define product "Tallyhorn Listener Console"
!define authors "The authors of the Tallyhorn Listener Console"
!define program "$INSTDIR\tallyhorn-console.exe"
!define shortcut "$SMPROGRAMS\${product}.lnk"
!define key "Software\Microsoft\Windows\CurrentVersion\Uninstall\TallyhornListenerConsole"
; Named after the folder: another user has one of his own.
!define rule "${product} in $INSTDIR"
!define netsh '"$SYSDIR\netsh.exe" advfirewall firewall'
!define deleteRule `${netsh} delete rule name="${rule}" program="${program}"`
!define addRule `${netsh} add rule name="${rule}" dir=in action=allow program="${program}" protocol=UDP profile=private,domain enable=yes`

Name "${product}"
OutFile "${folder}/tallyhorn-console-${version}-setup.exe"
InstallDir "$LOCALAPPDATA\Programs\${product}"
InstallDirRegKey HKCU "${key}" InstallLocation
BrandingText "${product} ${version}"
VIProductVersion "${version}.0"
VIFileVersion "${version}.0"
VIAddVersionKey ProductName "${product}"
VIAddVersionKey ProductVersion "${version}"
VIAddVersionKey FileVersion "${version}"
VIAddVersionKey FileDescription "${product}, installer"
VIAddVersionKey CompanyName "${authors}"
VIAddVersionKey LegalCopyright "Copyright 2026 the authors of the ${product}"

Var note  ; what the last page tells

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include "${folder}/files.nsh"

!define MUI_ICON "${icon}"
!define MUI_UNICON "${icon}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${NSISDIR}/Contrib/Graphics/Wizard/nsis3-metro.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${MUI_WELCOMEFINISHPAGE_BITMAP}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_WELCOMEPAGE_TEXT "This installs the ${product} ${version} for you alone, in your own folder of programs. \
Settings, filters and messages that you have there stay as they are.$\r$\n$\r$\nWhoever wants it elsewhere takes the zip file."
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT $note
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_RUN "${program}"
!define MUI_FINISHPAGE_RUN_TEXT "Start the console now"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!define MUI_FINISHPAGE_TEXT $note
!define MUI_FINISHPAGE_TEXT_LARGE
!insertmacro MUI_UNPAGE_FINISH
!insertmacro MUI_LANGUAGE English

; The error flag is set where the administrator was refused.
!macro AsAdministrator commands
  ClearErrors
  ExecShellWait "runas" "$SYSDIR\cmd.exe" `/d /s /c "${commands}"` SW_HIDE
!macroend

; The mutex is the console's own lock, whose name app/main.cpp gives it.
!macro RefuseWhileRunning prefix
  Function ${prefix}RefuseWhileRunning
    again:
      System::Call 'kernel32::OpenMutexW(i 0x100000, i 0, w "Local\TallyhornListenerConsole") p .r0'
      ${If} $0 P<> 0
        System::Call 'kernel32::CloseHandle(p r0)'
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
          "The ${product} is running. Please close it (File, Exit) and choose Retry." /SD IDCANCEL IDRETRY again
        SetErrorLevel 3
        Quit
      ${EndIf}
  FunctionEnd
!macroend
!insertmacro RefuseWhileRunning ""
!insertmacro RefuseWhileRunning un.

Section "${product}" ConsoleSection
  SectionIn RO
  Call RefuseWhileRunning
  ClearErrors
  !insertmacro LayFiles
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "Not all files of the ${product} could be replaced in $INSTDIR. Please close all \
programs that run from there, and install again." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  SetOutPath "$INSTDIR"
  ${IfNot} ${FileExists} "$INSTDIR\thlisten.ini"
    File /oname=thlisten.ini "${folder}/starter-settings.ini"
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "${shortcut}" "${program}" "" "${program}" 0 SW_SHOWNORMAL "" \
    "Shows the alarms of an event-log monitoring engine"
  WriteRegStr HKCU "${key}" DisplayName "${product}"
  WriteRegStr HKCU "${key}" DisplayVersion "${version}"
  WriteRegStr HKCU "${key}" DisplayIcon "${program},0"
  WriteRegStr HKCU "${key}" Publisher "${authors}"
  WriteRegStr HKCU "${key}" InstallLocation "$INSTDIR"
  WriteRegStr HKCU "${key}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${key}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${key}" EstimatedSize ${size}
  WriteRegDWORD HKCU "${key}" NoModify 1
  WriteRegDWORD HKCU "${key}" NoRepair 1
  StrCpy $note "The ${product} stands in the start menu. It keeps its settings and messages in $INSTDIR."
SectionEnd

; The rule is remembered where it was made, so that it is not asked for again, and goes with the program.
Section "Rule of the firewall for syslog" FirewallSection
  ReadRegStr $1 HKCU "${key}" FirewallRule
  ${If} $1 == "${program}"
    nsExec::Exec '${netsh} show rule name="${rule}"'
    Pop $0
    ${If} $0 == 0
      Return
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKCU "${key}" FirewallRule
  DetailPrint "Asking for an administrator, who lets syslog in through the firewall"
  !insertmacro AsAdministrator `${deleteRule} & ${addRule}`
  ${IfNot} ${Errors}
    nsExec::Exec '${netsh} show rule name="${rule}"'
    Pop $0
    ${If} $0 == 0
      WriteRegStr HKCU "${key}" FirewallRule "${program}"
      Return
    ${EndIf}
  ${EndIf}
  SetErrorLevel 4
  StrCpy $note "$note$\r$\n$\r$\nThe firewall's rule was not made: syslog from other computers may not come in. README.txt \
tells how an administrator makes it. All else is installed."
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${ConsoleSection} \
    "The console, its help, and tallyhorn-send, for you alone, with an entry in the start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${FirewallSection} \
    "Lets UDP datagrams of private and domain networks reach the console. Asks for an administrator."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  Call RefuseWhileRunning
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/FIREWALL=" $1
  ${If} ${Silent}
  ${AndIf} $1 != 1
    SectionSetFlags ${FirewallSection} 0
  ${EndIf}
FunctionEnd

Function un.onInit
  Call un.RefuseWhileRunning
FunctionEnd

Section Uninstall
  Call un.RefuseWhileRunning
  ClearErrors
  Delete "$INSTDIR\tallyhorn-send.exe"
  Delete "${program}"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "The programs in $INSTDIR could not be removed. Please close them, and \
uninstall again." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  StrCpy $note "The ${product} is removed."
  ReadRegStr $0 HKCU "${key}" FirewallRule
  ${If} $0 == "${program}"
    DetailPrint "Asking for an administrator, who removes the firewall's rule"
    !insertmacro AsAdministrator `${deleteRule}`
    ${If} ${Errors}
      SetErrorLevel 4
      StrCpy $note '$note$\r$\n$\r$\nThe firewall still has the rule "${rule}"; an administrator can remove it.'
    ${EndIf}
  ${EndIf}
  !insertmacro RemoveFiles
  Delete "$INSTDIR\uninstall.exe"
  Delete "${shortcut}"
  DeleteRegKey HKCU "${key}"
  SetOutPath "$TEMP"  ; a folder that is somebody's current one cannot go
  RMDir "$INSTDIR"
  Call un.TellWhatIsLeft
SectionEnd

; The settings too, from the start: nobody can tell any more whose they are.
Function un.TellWhatIsLeft
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
    Return
  ${EndIf}
  StrCpy $note "$note$\r$\n$\r$\nYour own files are left in $INSTDIR, and yours to delete:"
  FindFirst $0 $1 "$INSTDIR\*.*"
  ${While} $1 != ""
    ${If} $1 != "."
    ${AndIf} $1 != ".."
      StrCpy $note "$note$\r$\n  $1"
    ${EndIf}
    FindNext $0 $1
  ${EndWhile}
  FindClose $0
FunctionEnd
