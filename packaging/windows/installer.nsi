; Installer of the Windows program. /S installs and removes without questions.
Target amd64-unicode
!include MUI2.nsh
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"

Name "Kestrel evaluation program"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Kestrel"
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kestrel"

!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Section "Program"
  SetRegView 64
  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ; The working folder keeps the choice of the interface; the documents folder is the user's own.
  SetOutPath "$DOCUMENTS"
  CreateDirectory "$SMPROGRAMS\Kestrel"
  CreateShortcut "$SMPROGRAMS\Kestrel\Kestrel.lnk" "$INSTDIR\kestrel.exe"
  CreateShortcut "$SMPROGRAMS\Kestrel\Kestrel, simulated sensor.lnk" "$INSTDIR\kestrel.exe" "--simulate"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "Kestrel evaluation program"
  WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
SectionEnd

; Only what was installed is removed: the folder may hold the user's data files.
Section "Uninstall"
  SetRegView 64
  Delete "$INSTDIR\*.exe"
  Delete "$INSTDIR\*.dll"
  Delete "$INSTDIR\LICENSE"
  RMDir /r "$INSTDIR\guide"
  RMDir /r "$INSTDIR\platforms"
  RMDir /r "$INSTDIR\styles"
  RMDir /r "$INSTDIR\imageformats"
  RMDir "$INSTDIR"
  RMDir /r "$SMPROGRAMS\Kestrel"
  DeleteRegKey HKLM "${UNINSTALL}"
SectionEnd
