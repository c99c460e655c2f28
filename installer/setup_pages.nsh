; The pages of the setup, and the page that asks for whom it installs.

!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_NOAUTOCLOSE
!define MUI_UNFINISHPAGE_NOAUTOCLOSE

Var OnlyMe  ; the first choice's window
Var AllUsers

!define MUI_WELCOMEPAGE_TEXT "This installs version ${VERSION} of the Qvx controls for data-entry programs, for 64-bit \
  and 32-bit programs alike.$\r$\n$\r$\nA version that is already there is upgraded or repaired where it is, and \
  components can be added to it or removed.$\r$\n$\r$\nClick Next to continue."
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_LICENSE "${LICENSE_FILE}"
Page custom AskScope TakeScope
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_UNPAGE_FINISH

!insertmacro MUI_LANGUAGE English

Function AskScope
  !insertmacro MUI_HEADER_TEXT "Choose Users" "Choose for which users you want to install Qvx."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 10u 100% 12u "Install just for &me"
  Pop $OnlyMe
  ${NSD_CreateLabel} 12u 24u 90% 20u "Needs no administrator rights. Programs of other users do not find the controls."
  Pop $0
  ${NSD_CreateRadioButton} 0 54u 100% 12u "Install for &all users of this computer"
  Pop $AllUsers
  ${NSD_CreateLabel} 12u 68u 90% 20u "Asks for administrator rights."
  Pop $0
  ${If} $Scope == machine
    ${NSD_Check} $AllUsers
    ${NSD_SetFocus} $AllUsers
  ${Else}
    ${NSD_Check} $OnlyMe
    ${NSD_SetFocus} $OnlyMe
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function TakeScope
  ${NSD_GetState} $AllUsers $0
  StrCpy $1 $Scope
  StrCpy $Scope user
  ${If} $0 = ${BST_CHECKED}
    StrCpy $Scope machine
  ${EndIf}
  ${If} $Scope != $1
    StrCpy $INSTDIR "" ; the other scope has another folder
  ${EndIf}
  Call NeedRights
  Call EnterScope
  Call RefuseDowngrade
  ${If} $INSTDIR == ""
    Call UseDefaultFolder
  ${EndIf}
FunctionEnd

; What is installed is replaced where it is.
Function SkipFolder
  ${If} $PresentFolder != ""
    Abort
  ${EndIf}
FunctionEnd
