; The setup program of Qvx, for both widths.
;
;   makensis -DVERSION=1.0.0 -DFILES=files.nsh -DOUT=setup.exe -DWIDTH=32 [-DSIGN=COMMAND] Qvx.nsi
;
; FILES is made by tools/packaging and has, for each component, the macros Install_NAME and Remove_NAME, and the macro
; EachProgram. With WIDTH 64, the setup program itself is a 64-bit one, for systems that run no 32-bit programs.
;
;   setup [/S] [/AllUsers | /CurrentUser] [/COMPONENTS=NAME,NAME...] [/D=FOLDER]
;
; /S asks nothing. Exit codes: 0 installed, 1 cancelled, 2 failed, 3 a newer version is installed, 4 files are in use,
; 5 the setup needs administrator rights, 6 the registration failed.

Unicode true
!if "${WIDTH}" == "64"
Target amd64-unicode
!else
Target x86-unicode
!endif

; In the 64-bit setup, "on a 64-bit system" is true before it runs, so that the other branch has no use.
!pragma warning disable 6012

!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include Sections.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include WordFunc.nsh
!include nsDialogs.nsh

Name "Qvx"
OutFile "${OUT}"
RequestExecutionLevel user
SetCompressor /SOLID lzma
SetDateSave off
ManifestDPIAware true
ManifestSupportedOS all
BrandingText "Qvx ${VERSION}"
CRCCheck force
ShowInstDetails show
ShowUninstDetails show

!ifdef SIGN
; makensis runs this on the uninstaller before it packs it.
!uninstfinalize `${SIGN} "%1"` = 0
!endif

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Qvx"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Qvx setup"
VIAddVersionKey CompanyName "Orvane"
VIAddVersionKey LegalCopyright "MIT License"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Qvx"
!define EXIT_NEWER 3
!define EXIT_IN_USE 4
!define EXIT_RIGHTS 5
!define EXIT_REGISTRATION 6

Var Scope             ; "user" or "machine"
Var PresentVersion    ; what is installed in that scope, or nothing
Var PresentFolder
Var PresentComponents ; their names, each between commas

!include "${FILES}"
!include "setup_functions.nsh"
!insertmacro SharedFunctions ""
!insertmacro SharedFunctions "un."

!include "setup_pages.nsh"

; ---- What is installed. ----

; The first section changes nothing unless all files can be replaced.
Section "-prepare"
  Call WaitForPrograms
  ; Class by class, the earlier version may have registered others than this one.
  Call UnregisterServers
  InitPluginsDir
  CopyFiles /SILENT "$INSTDIR\installed.txt" "$PLUGINSDIR\before.txt"
  ClearErrors
SectionEnd

Section "-always"
  !insertmacro Install_always
SectionEnd

SectionGroup /e "Controls"
Section "For 64-bit programs" section_controls64
  !insertmacro Install_controls64
SectionEnd
Section "For 32-bit programs" section_controls32
  !insertmacro Install_controls32
SectionEnd
SectionGroupEnd
Section "Archivers" section_archivers
  !insertmacro Install_archivers
SectionEnd
Section "Forms host and designer" section_host
  !insertmacro Install_host
SectionEnd
Section "Samples and headers" section_samples
  !insertmacro Install_samples
SectionEnd
Section "Documentation" section_docs
  !insertmacro Install_docs
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${section_controls64} "Qvx.ocx for 64-bit programs, registered, and its manifest."
!insertmacro MUI_DESCRIPTION_TEXT ${section_controls32} "Qvx.ocx for 32-bit programs, registered, and its manifest."
!insertmacro MUI_DESCRIPTION_TEXT ${section_archivers} "PkZip.exe and PkunZip.exe, which Backup calls."
!insertmacro MUI_DESCRIPTION_TEXT ${section_host} "A program that shows forms, runs their scripts and designs them."
!insertmacro MUI_DESCRIPTION_TEXT ${section_samples} "Forms with scripts, programs in several languages, and the \
  library's headers."
!insertmacro MUI_DESCRIPTION_TEXT ${section_docs} "Guides and the reference of all members."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; EachComponent(<macro>) inserts <macro> for each component that can be chosen.
!macro EachComponent macro
  !insertmacro ${macro} controls64
  !insertmacro ${macro} controls32
  !insertmacro ${macro} archivers
  !insertmacro ${macro} host
  !insertmacro ${macro} samples
  !insertmacro ${macro} docs
!macroend

!macro RemoveUnlessSelected name
  ${If} ${SectionIsSelected} ${section_${name}}
    StrCpy $PresentComponents "$PresentComponents${name},"
  ${Else}
    !insertmacro Remove_${name}
  ${EndIf}
!macroend

Section "-finish"
  StrCpy $PresentComponents ","
  !insertmacro EachComponent RemoveUnlessSelected
  Call RemoveLeftovers
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  Call WriteShortcuts
  Call WriteUninstallEntry
  ${If} ${SectionIsSelected} ${section_controls64}
  ${AndIf} ${RunningX64}
    Push 64
    Call RegisterServer
  ${EndIf}
  ${If} ${SectionIsSelected} ${section_controls32}
    Push 32
    Call RegisterServer
  ${EndIf}
SectionEnd

; Removes what an earlier version had installed and this one does not have.
Function RemoveLeftovers
  ClearErrors
  FileOpen $0 "$PLUGINSDIR\before.txt" r
  ${If} ${Errors}
    Return
  ${EndIf}
  ${Do}
    ClearErrors
    FileRead $0 $1
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    StrCpy $2 0
    FileOpen $3 "$INSTDIR\installed.txt" r
    ${Do}
      ClearErrors
      FileRead $3 $4
      ${If} ${Errors}
        ${ExitDo}
      ${EndIf}
      ${If} $4 == $1
        StrCpy $2 1
        ${ExitDo}
      ${EndIf}
    ${Loop}
    FileClose $3
    ${TrimNewLines} $1 $1
    ${WordFind} $1 ".." "E+1{" $4
    ${If} ${Errors} ; no ".." in it: the file is in the folder
    ${AndIf} $2 = 0
      Delete "$INSTDIR\$1"
      ${GetParent} $1 $1
      ${DoWhile} $1 != ""
        RMDir "$INSTDIR\$1" ; only if it is empty
        ${GetParent} $1 $1
      ${Loop}
    ${EndIf}
  ${Loop}
  FileClose $0
  ClearErrors
FunctionEnd

Function WriteShortcuts
  RMDir /r "$SMPROGRAMS\Qvx"
  CreateDirectory "$SMPROGRAMS\Qvx"
  ${If} ${SectionIsSelected} ${section_host}
    StrCpy $0 x86
    ${If} ${RunningX64}
    ${AndIf} ${SectionIsSelected} ${section_controls64}
      StrCpy $0 x64
    ${EndIf}
    SetOutPath "$INSTDIR\samples" ; where the designer's dialogs begin
    CreateShortcut "$SMPROGRAMS\Qvx\Forms designer.lnk" "$INSTDIR\$0\qvxhost.exe" "--design"
    SetOutPath "$INSTDIR"
  ${EndIf}
  ${If} ${SectionIsSelected} ${section_docs}
    CreateShortcut "$SMPROGRAMS\Qvx\Documentation.lnk" "$INSTDIR\docs\index.html"
  ${EndIf}
  RMDir "$SMPROGRAMS\Qvx" ; only if it is empty
  ClearErrors
FunctionEnd

Function WriteUninstallEntry
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "Qvx"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "Orvane"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\Uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Components "$PresentComponents"
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1 ; the setup program itself changes and repairs
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0
FunctionEnd

; ---- How it begins. ----

!macro SelectIfPresent name
  ${WordFind} "$PresentComponents" ",${name}," "E+1{" $0
  ${If} ${Errors}
    !insertmacro UnselectSection ${section_${name}}
  ${Else}
    !insertmacro SelectSection ${section_${name}}
  ${EndIf}
  ClearErrors
!macroend

; Fits components and folder to the scope and to what is installed there.
Function EnterScope
  Call UseScope
  StrCpy $PresentComponents ""
  ReadRegStr $PresentVersion SHCTX "${UNINSTALL_KEY}" DisplayVersion
  ReadRegStr $PresentFolder SHCTX "${UNINSTALL_KEY}" InstallLocation
  ReadRegStr $PresentComponents SHCTX "${UNINSTALL_KEY}" Components
  ClearErrors
  ${If} $PresentFolder != ""
    StrCpy $INSTDIR $PresentFolder
  ${EndIf}
  ; A list on the command line counts more than what is installed.
  ${GetParameters} $0
  ${GetOptions} $0 "/COMPONENTS=" $1
  ${IfNot} ${Errors}
    StrCpy $PresentComponents ",$1,"
  ${EndIf}
  ClearErrors
  ${If} $PresentComponents != ""
    !insertmacro EachComponent SelectIfPresent
  ${EndIf}
FunctionEnd

Function RefuseDowngrade
  ${VersionCompare} "$PresentVersion" "${VERSION}" $0
  ${If} $PresentVersion != ""
  ${AndIf} $0 = 1
    MessageBox MB_OK|MB_ICONSTOP "Qvx $PresentVersion is installed, which is newer than this version, ${VERSION}. \
      Uninstall it first if you want the older one." /SD IDOK
    SetErrorLevel ${EXIT_NEWER}
    Quit
  ${EndIf}
FunctionEnd

Function .onInit
  ${If} ${RunningX64}
    SetRegView 64
  ${Else}
    !insertmacro UnselectSection ${section_controls64}
  ${EndIf}
  StrCpy $Scope user
  ReadRegStr $0 HKLM "${UNINSTALL_KEY}" InstallLocation
  ReadRegStr $1 HKCU "${UNINSTALL_KEY}" InstallLocation
  ${If} $0 != ""
  ${AndIf} $1 == ""
    StrCpy $Scope machine
  ${EndIf}
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/AllUsers" $1
  ${IfNot} ${Errors}
    StrCpy $Scope machine
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/CurrentUser" $1
  ${IfNot} ${Errors}
    StrCpy $Scope user
  ${EndIf}
  ClearErrors
  Call EnterScope
  ${If} ${Silent}
    Call NeedRights
    Call RefuseDowngrade
    ${If} $INSTDIR == ""
      Call UseDefaultFolder
    ${EndIf}
  ${EndIf}
FunctionEnd

Function UseDefaultFolder
  ${If} $Scope == user
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Qvx"
  ${ElseIf} ${RunningX64}
    StrCpy $INSTDIR "$PROGRAMFILES64\Qvx"
  ${Else}
    StrCpy $INSTDIR "$PROGRAMFILES32\Qvx"
  ${EndIf}
FunctionEnd

; ---- The way back. ----

!macro RemoveComponent name
  !insertmacro Remove_${name}
!macroend

Section "Uninstall"
  Call un.WaitForPrograms
  Call un.UnregisterServers
  !insertmacro EachComponent RemoveComponent
  !insertmacro Remove_always
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR" ; only if it is empty: files of others stay
  ${If} $Scope == user
    RMDir "$LOCALAPPDATA\Programs" ; the same: a new system has no such folder
  ${EndIf}
  RMDir /r "$SMPROGRAMS\Qvx"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd

Function un.onInit
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
  StrCpy $Scope user
  ReadRegStr $0 HKLM "${UNINSTALL_KEY}" InstallLocation
  ${If} $0 == $INSTDIR
    StrCpy $Scope machine
  ${EndIf}
  Call un.UseScope
  Call un.NeedRights
FunctionEnd
