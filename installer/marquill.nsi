; Per-user installer of Marquill: no administrator rights, installs into the user's local
; programs folder. Built by scripts/package, which defines VERSION, BUILD_DIR, ROOT, OUT_FILE.
;   marquill-setup-<version>.exe [/S] [/AUTORUN] [/D=folder]
; /S installs silently; /AUTORUN also selects "Start Marquill when Windows starts".
; marquill.exe is a 64-bit program; so are the installer and uninstaller.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true

!ifndef VERSION | BUILD_DIR | ROOT | OUT_FILE
  !error "Build with scripts/package"
!endif

!define PRODUCT "Marquill"
!define PUBLISHER "Olvenar"
!define MAIN_CLASS "MarquillMain"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Marquill"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
; The program's own launch-at-log-on value is named after its executable.
!define RUN_VALUE "marquill"
!define SETTINGS_KEY "Software\Olvenar\marquill"
!define SHORTCUT "$SMPROGRAMS\Marquill.lnk"

Name "${PRODUCT}"
OutFile "${OUT_FILE}"
InstallDir "$LOCALAPPDATA\Programs\Marquill"
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "CompanyName" "${PUBLISHER}"
VIAddVersionKey "FileDescription" "${PRODUCT} ${VERSION} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 Olvenar"

!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "LogicLib.nsh"
!include "Sections.nsh"

!define MUI_ICON "${ROOT}\res\icons\101-tray-enabled.ico"
!define MUI_UNICON "${ROOT}\res\icons\101-tray-enabled.ico"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\marquill.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Marquill now"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\mq2_help.chm"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Open the help"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${ROOT}\LICENSE"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"

; Ends a running Marquill as the system does at log-off: WM_CLOSE to its hidden main window,
; so that it shuts down in order (tray icon, hotkeys, clipboard chain). Then waits until the
; window is gone and the executable can be replaced or deleted.
!macro CLOSE_MARQUILL un
Function ${un}CloseMarquill
  Push $0
  Push $1
  FindWindow $0 "${MAIN_CLASS}" ""
  ${If} $0 <> 0
    DetailPrint "Closing the running Marquill"
    SendMessage $0 ${WM_CLOSE} 0 0 /TIMEOUT=5000
    StrCpy $1 0
    ${Do}
      Sleep 100
      FindWindow $0 "${MAIN_CLASS}" ""
      IntOp $1 $1 + 1
    ${LoopUntil} $0 = 0
    ${OrIf} $1 >= 150
  ${EndIf}
  Pop $1
  Pop $0
FunctionEnd
!macroend
!insertmacro CLOSE_MARQUILL ""
!insertmacro CLOSE_MARQUILL "un."

; Deletes a file, retrying for a few seconds while a program that just ended still holds it.
!macro DELETE_WITH_RETRY path
  StrCpy $R9 0
  ${Do}
    Delete "${path}"
    ${IfNot} ${FileExists} "${path}"
      ${Break}
    ${EndIf}
    Sleep 100
    IntOp $R9 $R9 + 1
  ${LoopUntil} $R9 >= 50
!macroend

; The Run value's data: the executable's full path, in double quotes when it holds a space.
!macro RUN_DATA out
  StrCpy ${out} "$INSTDIR\marquill.exe"
  Push $R8
  Push $R7
  StrCpy $R8 0
  ${Do}
    StrCpy $R7 ${out} 1 $R8
    ${If} $R7 == ""
      ${Break}
    ${EndIf}
    ${If} $R7 == " "
      StrCpy ${out} '"${out}"'
      ${Break}
    ${EndIf}
    IntOp $R8 $R8 + 1
  ${Loop}
  Pop $R7
  Pop $R8
!macroend

Section "Marquill" SecMain
  SectionIn RO
  Call CloseMarquill
  SetOutPath "$INSTDIR"
  !insertmacro DELETE_WITH_RETRY "$INSTDIR\marquill.exe"
  File "${BUILD_DIR}\marquill.exe"
  File "${BUILD_DIR}\mq2_help.chm"
  File "${BUILD_DIR}\mqlist.exe"
  File /oname=LICENSE.txt "${ROOT}\LICENSE"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateShortcut "${SHORTCUT}" "$INSTDIR\marquill.exe" "" "$INSTDIR\marquill.exe" 0 \
    SW_SHOWNORMAL "" "Clipboard manager: keeps what you copy and pastes it back in order"

  ; "Apps and features", for the current user only.
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\marquill.exe,0"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

Section /o "Start Marquill when Windows starts" SecAutoRun
  !insertmacro RUN_DATA $0
  WriteRegStr HKCU "${RUN_KEY}" "${RUN_VALUE}" $0
SectionEnd

; After the sections, whose names it uses.
Function .onInit
  SetShellVarContext current
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/AUTORUN" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${SecAutoRun}
  ${EndIf}
FunctionEnd

Section "Uninstall"
  SetShellVarContext current
  Call un.CloseMarquill

  ; The Run value is removed only when it starts this copy; one that starts another copy
  ; (a portable one, say) is left alone.
  ReadRegStr $0 HKCU "${RUN_KEY}" "${RUN_VALUE}"
  ${If} $0 == "$INSTDIR\marquill.exe"
  ${OrIf} $0 == '"$INSTDIR\marquill.exe"'
    DeleteRegValue HKCU "${RUN_KEY}" "${RUN_VALUE}"
  ${EndIf}

  !insertmacro DELETE_WITH_RETRY "$INSTDIR\marquill.exe"
  Delete "$INSTDIR\mq2_help.chm"
  Delete "$INSTDIR\mqlist.exe"
  Delete "$INSTDIR\LICENSE.txt"
  ; Work files an interrupted save or load of a list may have left.
  Delete "$INSTDIR\temp.tmp"
  Delete "$INSTDIR\temp2.tmp"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  Delete "${SHORTCUT}"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"

  ; Settings are kept unless the user says otherwise; a silent removal keeps them.
  MessageBox MB_YESNO|MB_ICONQUESTION "Keep your Marquill settings (hotkeys, start-up choices, clip list window options) for a later installation?" /SD IDYES IDYES keep
    DeleteRegKey HKCU "${SETTINGS_KEY}"
    DeleteRegKey /ifempty HKCU "Software\Olvenar"
  keep:
SectionEnd
