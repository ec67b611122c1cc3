; SPDX-License-Identifier: MIT
; The installer for Windows: one user, no administrator. The program keeps its settings, frame store
; and results in its own folder, so that folder is one the user can write.
; makensis -DVERSION=1.0.0 -DPROGRAMA=.../bnDX5.exe -DLICENCIA=.../LICENSE -DSALIDA=.../x.exe
Target amd64-unicode
SetCompressor /SOLID lzma

!include "MUI2.nsh"
!include "FileFunc.nsh"

!define NOMBRE "Indicador Balnor DX5"
!define DESINSTALAR "Software\Microsoft\Windows\CurrentVersion\Uninstall\bnDX5"
!define ARRANQUE "Software\Microsoft\Windows\CurrentVersion\Run"

Name "${NOMBRE}"
OutFile "${SALIDA}"
InstallDir "$LOCALAPPDATA\Programs\bnDX5"
InstallDirRegKey HKCU "${DESINSTALAR}" "InstallLocation"
RequestExecutionLevel user
ManifestDPIAware true
BrandingText "bnDX5 ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=3082 "ProductName" "bnDX5"
VIAddVersionKey /LANG=3082 "FileDescription" "Instalador de ${NOMBRE}"
VIAddVersionKey /LANG=3082 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=3082 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=3082 "LegalCopyright" "Licencia MIT"

!define MUI_ICON "${ICONO}"
!define MUI_UNICON "${ICONO}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\bnDX5.exe"
!insertmacro MUI_PAGE_FINISH
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Se quitará el programa. Sus datos (ajustes y \
pesadas) no se borran: quedan en la carpeta."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Spanish"

; The file of a running program, or one that the user may not write, is neither replaced nor removed.
!macro exigirCerrado un verbo
Function ${un}exigirCerrado
    IfFileExists "$INSTDIR\bnDX5.exe" 0 libre
otraVez:
    ClearErrors
    FileOpen $0 "$INSTDIR\bnDX5.exe" a
    IfErrors 0 suelto
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
        "No se puede ${verbo} bnDX5.exe: está en marcha o no se permite escribir en él. \
Ciérrelo (también junto al reloj) y reintente." \
        /SD IDCANCEL IDRETRY otraVez
    SetErrorLevel 2
    Quit
suelto:
    FileClose $0
libre:
FunctionEnd
!macroend
!insertmacro exigirCerrado "" "sustituir"
!insertmacro exigirCerrado "un." "quitar"

Section
    SetShellVarContext current
    Call exigirCerrado
    SetOutPath "$INSTDIR"
    File "/oname=bnDX5.exe" "${PROGRAMA}"
    File "/oname=LICENCIA.txt" "${LICENCIA}"
    WriteUninstaller "$INSTDIR\desinstalar.exe"
    CreateShortCut "$SMPROGRAMS\${NOMBRE}.lnk" "$INSTDIR\bnDX5.exe"

    WriteRegStr HKCU "${DESINSTALAR}" "DisplayName" "${NOMBRE}"
    WriteRegStr HKCU "${DESINSTALAR}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${DESINSTALAR}" "Publisher" "bnDX5"
    WriteRegStr HKCU "${DESINSTALAR}" "DisplayIcon" "$INSTDIR\bnDX5.exe"
    WriteRegStr HKCU "${DESINSTALAR}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${DESINSTALAR}" "UninstallString" '"$INSTDIR\desinstalar.exe"'
    WriteRegStr HKCU "${DESINSTALAR}" "QuietUninstallString" '"$INSTDIR\desinstalar.exe" /S'
    WriteRegDWORD HKCU "${DESINSTALAR}" "NoModify" 1
    WriteRegDWORD HKCU "${DESINSTALAR}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${DESINSTALAR}" "EstimatedSize" $0
SectionEnd

Section "Uninstall"
    SetShellVarContext current
    Call un.exigirCerrado
    Delete "$INSTDIR\bnDX5.exe"
    Delete "$INSTDIR\bnDX5.lock"
    Delete "$INSTDIR\LICENCIA.txt"
    Delete "$INSTDIR\desinstalar.exe"
    Delete "$SMPROGRAMS\${NOMBRE}.lnk"
    DeleteRegKey HKCU "${DESINSTALAR}"
    ; The logon entry may be that of a copy elsewhere.
    ReadRegStr $0 HKCU "${ARRANQUE}" "bnDX5"
    StrCmp $0 "$INSTDIR\bnDX5.exe" propia
    StrCmp $0 '"$INSTDIR\bnDX5.exe"' propia ajena
propia:
    DeleteRegValue HKCU "${ARRANQUE}" "bnDX5"
ajena:
    ; What is left in the folder is the user's; an empty one goes.
    RMDir "$INSTDIR"
    IfFileExists "$INSTDIR\*.*" 0 vacia
    MessageBox MB_OK|MB_ICONINFORMATION \
        "El programa se ha quitado. Sus datos siguen en la carpeta$\r$\n$INSTDIR" /SD IDOK
vacia:
SectionEnd
