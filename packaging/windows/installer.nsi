; The installer. scripts/windows defines VERSION, TARGET, PROJECT (the source tree), CONTENTS (the folder of install.nsh
; and uninstall.nsh, which list the files) and KILOBYTES. Silent: /S, with /CurrentUser or /AllUsers, and /D=FOLDER last.
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Varnoth"
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "Varnoth"
!define MULTIUSER_INSTALLMODE_DEFAULT_CURRENTUSER
!define MULTIUSER_INSTALLMODE_FUNCTION choose_folder
!define MULTIUSER_INSTALLMODE_UNFUNCTION un.find_folder
!include MultiUser.nsh
!include MUI2.nsh

Name "Varnoth"
OutFile "${TARGET}"
BrandingText " "
VIProductVersion "${VERSION}.0.0"
VIAddVersionKey ProductName "Varnoth"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs Varnoth, an editor for Half-Life sprites"
VIAddVersionKey CompanyName "The Varnoth founders"
VIAddVersionKey LegalCopyright "Copyright 2026 The Varnoth founders"

!define MUI_ICON "${PROJECT}/packaging/icons/varnoth.ico"
!define MUI_UNICON "${PROJECT}/packaging/icons/varnoth.ico"
!insertmacro MUI_PAGE_LICENSE "${PROJECT}/LICENSE"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Where Windows puts the programs of one user. MultiUser.nsh would use the folder of their data. A folder given with /D
; is kept.
Var given
Function choose_folder
    ${If} $given != ""
        StrCpy $INSTDIR $given
    ${ElseIf} $MultiUser.InstallMode == CurrentUser
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Varnoth"
    ${EndIf}
FunctionEnd

; The uninstaller knows its folder.
Function un.find_folder
    StrCpy $INSTDIR $given
FunctionEnd

Function .onInit
    SetRegView 64
    StrCpy $given $INSTDIR
    !insertmacro MULTIUSER_INIT
FunctionEnd

Function un.onInit
    SetRegView 64
    StrCpy $given $INSTDIR
    !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
    !include "${CONTENTS}/install.nsh"
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateDirectory "$SMPROGRAMS\Varnoth"
    CreateShortcut "$SMPROGRAMS\Varnoth\Varnoth.lnk" "$INSTDIR\varnoth.exe"
    CreateShortcut "$SMPROGRAMS\Varnoth\Guide.lnk" "$INSTDIR\docs\guide.html"
    CreateShortcut "$SMPROGRAMS\Varnoth\Uninstall Varnoth.lnk" "$INSTDIR\uninstall.exe" "/$MultiUser.InstallMode"
    WriteRegStr SHCTX "${KEY}" DisplayName "Varnoth"
    WriteRegStr SHCTX "${KEY}" DisplayVersion "${VERSION}"
    WriteRegStr SHCTX "${KEY}" DisplayIcon "$INSTDIR\varnoth.exe"
    WriteRegStr SHCTX "${KEY}" Publisher "The Varnoth founders"
    WriteRegStr SHCTX "${KEY}" InstallLocation "$INSTDIR"
    WriteRegStr SHCTX "${KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${KEY}" EstimatedSize ${KILOBYTES}
    WriteRegDWORD SHCTX "${KEY}" NoModify 1
    WriteRegDWORD SHCTX "${KEY}" NoRepair 1
SectionEnd

; Only what was installed: a file of the user in the folder stays, and with it the folder.
Section Uninstall
    !include "${CONTENTS}/uninstall.nsh"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    ${If} $MultiUser.InstallMode == CurrentUser
        RMDir "$LOCALAPPDATA\Programs" ; unless it has other programs
    ${EndIf}
    Delete "$SMPROGRAMS\Varnoth\Varnoth.lnk"
    Delete "$SMPROGRAMS\Varnoth\Guide.lnk"
    Delete "$SMPROGRAMS\Varnoth\Uninstall Varnoth.lnk"
    RMDir "$SMPROGRAMS\Varnoth"
    DeleteRegKey SHCTX "${KEY}"
    DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    ; Windows deletes the running copy of the uninstaller at its next start; this deletes the folder around it.
    ${If} $EXEDIR != $INSTDIR
        RMDir /REBOOTOK "$EXEDIR"
    ${EndIf}
SectionEnd
