; The installer.  It installs for one user; only the firewall rule needs an administrator.  build.sh compiles it and defines
; version, icon, folder (the one with the collected files) and size (of all files, in KiB).
;
; Exit status: 0 done, 1 cancelled, 2 failed, 3 the console is running, 4 done except for the firewall rule.
; With /S, the installer shows no windows.  Windows still asks for an administrator if a firewall rule is to be made
; (/FIREWALL=1), or if a rule that the installer made is to be removed.
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
; The name contains the folder, so that each of several users can have a rule.
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

Var note  ; the text of the last page

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
!define MUI_WELCOMEPAGE_TEXT "This installs the ${product} ${version} for you only, in your personal programs folder. \
Settings, filters and messages that are already there are kept.$\r$\n$\r$\nTo use another folder, take the zip file instead."
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

; Runs commands as an administrator.  Sets the error flag if the user refuses.
!macro AsAdministrator commands
  ClearErrors
  ExecShellWait "runas" "$SYSDIR\cmd.exe" `/d /s /c "${commands}"` SW_HIDE
!macroend

; The mutex is the lock of a running console; app/main.cpp defines its name.
!macro RefuseWhileRunning prefix
  Function ${prefix}RefuseWhileRunning
    again:
      System::Call 'kernel32::OpenMutexW(i 0x100000, i 0, w "Local\TallyhornListenerConsole") p .r0'
      ${If} $0 P<> 0
        System::Call 'kernel32::CloseHandle(p r0)'
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
          "The ${product} is running. Please close it (File > Exit) and choose Retry." /SD IDCANCEL IDRETRY again
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
  !insertmacro InstallFiles
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "Some files of the ${product} in $INSTDIR could not be replaced. Please close all \
programs that run from there and install again." /SD IDOK
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
  StrCpy $note "The ${product} is in the start menu. It keeps its settings and messages in $INSTDIR."
SectionEnd

; The registry records that the rule was made, so that a later installation does not make it again and the uninstaller
; removes it.
Section "Firewall rule for syslog" FirewallSection
  ReadRegStr $1 HKCU "${key}" FirewallRule
  ${If} $1 == "${program}"
    nsExec::Exec '${netsh} show rule name="${rule}"'
    Pop $0
    ${If} $0 == 0
      Return
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKCU "${key}" FirewallRule
  DetailPrint "Asking for an administrator to allow syslog through the firewall"
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
  StrCpy $note "$note$\r$\n$\r$\nThe firewall rule was not made, so syslog from other computers may be blocked. README.txt \
explains how an administrator can make the rule. Everything else is installed."
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${ConsoleSection} \
    "The console, its help and tallyhorn-send, for you only, with an entry in the start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${FirewallSection} \
    "Allows UDP datagrams from private and domain networks to reach the console. Needs an administrator."
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
    MessageBox MB_OK|MB_ICONEXCLAMATION "The programs in $INSTDIR could not be removed. Please close them and \
uninstall again." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  StrCpy $note "The ${product} has been removed."
  ReadRegStr $0 HKCU "${key}" FirewallRule
  ${If} $0 == "${program}"
    DetailPrint "Asking for an administrator to remove the firewall rule"
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
  SetOutPath "$TEMP"  ; the current folder of a process cannot be removed
  RMDir "$INSTDIR"
  Call un.ListRemainingFiles
SectionEnd

; thlisten.ini is listed even if the user never changed it, because the uninstaller cannot know whether they did.
Function un.ListRemainingFiles
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
    Return
  ${EndIf}
  StrCpy $note "$note$\r$\n$\r$\nYour own files are still in $INSTDIR. You can delete them:"
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
