; Functions that the setup and the uninstaller both have: SharedFunctions("") and SharedFunctions("un.").

Var InUse ; the names of files that cannot be replaced

!macro SharedFunctions un

Function ${un}UseScope
  ${If} $Scope == machine
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
FunctionEnd

; Changes for all users need an administrator's rights: a silent run ends without them, another one asks for them and
; starts anew.
Function ${un}NeedRights
  ${If} $Scope == user
    Return
  ${EndIf}
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 == Admin
    Return
  ${EndIf}
  SetErrorLevel ${EXIT_RIGHTS}
  ${IfNot} ${Silent}
    ClearErrors
    ExecShell runas "$EXEPATH" "/AllUsers"
    ${IfNot} ${Errors}
      SetErrorLevel 0
    ${EndIf}
  ${EndIf}
  Quit
FunctionEnd

; Leaves the path of the server of the width in $R0 in $R1.
Function ${un}ServerPath
  ${If} $R0 = 64
    StrCpy $R1 "$INSTDIR\x64\Qvx.ocx"
  ${Else}
    StrCpy $R1 "$INSTDIR\x86\Qvx.ocx"
  ${EndIf}
FunctionEnd

; Runs the system's registration tool of the width in $R0 on its server; $R2 has more switches. Leaves the exit code in
; $R3, 0 where the system has no programs of that width.
Function ${un}RunRegistration
  Call ${un}ServerPath
  StrCpy $R4 "$SYSDIR\regsvr32.exe"
  ${If} ${RunningX64}
    !if ${NSIS_PTR_SIZE} > 4
      ${If} $R0 = 32
        StrCpy $R4 "$WINDIR\SysWOW64\regsvr32.exe"
      ${EndIf}
    !else
      ${If} $R0 = 64
        StrCpy $R4 "$WINDIR\Sysnative\regsvr32.exe"
      ${EndIf}
    !endif
  ${EndIf}
  StrCpy $R3 0
  ${If} ${FileExists} $R4
    ClearErrors
    ExecWait '"$R4" /s $R2 /n /i:$Scope "$R1"' $R3
    ${If} ${Errors}
      StrCpy $R3 -1
    ${EndIf}
  ${Else}
    DetailPrint "This system runs no $R0-bit programs: $R1 is not registered."
  ${EndIf}
FunctionEnd

; Removes the registration of the width in $R0 if it is this folder's. A copy that somebody else has registered in the
; meantime stays.
Function ${un}UnregisterServer
  Call ${un}ServerPath
  ${If} $R0 = 64
    SetRegView 64
  ${Else}
    SetRegView 32
  ${EndIf}
  ReadRegStr $R5 SHCTX "Software\Classes\CLSID\${PROBE_CLASS}\InprocServer32" ""
  ${If} ${RunningX64}
    SetRegView 64
  ${Else}
    SetRegView 32
  ${EndIf}
  ${If} $R5 == $R1
  ${AndIf} ${FileExists} $R1
    StrCpy $R2 /u
    Call ${un}RunRegistration
  ${EndIf}
  ClearErrors
FunctionEnd

Function ${un}UnregisterServers
  ${If} ${RunningX64}
    StrCpy $R0 64
    Call ${un}UnregisterServer
  ${EndIf}
  StrCpy $R0 32
  Call ${un}UnregisterServer
FunctionEnd

; Takes a file's name below the folder from the stack and appends it to $InUse if it cannot be written.
Function ${un}NoteInUse
  Pop $0
  ${If} ${FileExists} "$INSTDIR\$0"
    ClearErrors
    FileOpen $1 "$INSTDIR\$0" a
    ${If} ${Errors}
      StrCpy $InUse "$InUse$\r$\n$INSTDIR\$0"
    ${Else}
      FileClose $1
    ${EndIf}
  ${EndIf}
  ClearErrors
FunctionEnd

; Goes on when no program file is in use.
Function ${un}WaitForPrograms
  ${Do}
    StrCpy $InUse ""
    !insertmacro EachProgram "Call ${un}NoteInUse"
    ${If} $InUse == ""
      Return
    ${EndIf}
    DetailPrint "In use:$InUse"
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "These files are in use:$\r$\n$InUse$\r$\n$\r$\n\
      Close the programs that use them, then choose Retry." /SD IDCANCEL IDRETRY again
    SetErrorLevel ${EXIT_IN_USE}
    ${If} ${Silent}
      Quit
    ${EndIf}
    Abort "Nothing was changed."
    again:
  ${Loop}
FunctionEnd

!macroend

; Takes a width from the stack.
Function RegisterServer
  Pop $R0
  StrCpy $R2 ""
  ${Do}
    Call RunRegistration
    ${If} $R3 = 0
      Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "The controls for $R0-bit programs could not be registered \
      (regsvr32 ended with $R3)." /SD IDCANCEL IDRETRY again
    SetErrorLevel ${EXIT_REGISTRATION}
    ${If} ${Silent}
      Quit
    ${EndIf}
    Abort "The controls for $R0-bit programs are not registered."
    again:
  ${Loop}
FunctionEnd
