' Creates every control and uses one of its properties; prints a line for each. With a file's name, keeps them as long as
' the file exists, as a program does that uses the controls.
Option Explicit

Const names = "ComboGrid Button RButton TextEdit Backup FlatBorder CMenus"

Dim name, control, kept, shown
Set kept = CreateObject("Scripting.Dictionary")
On Error Resume Next
For Each name In Split(names)
  Err.Clear
  Set control = Nothing
  Set control = CreateObject("Qvx." & name)
  If Err.Number = 0 Then
    If name = "Button" Or name = "RButton" Then
      control.Caption = "Press"
      shown = control.Caption
      If shown <> "Press" Then WScript.Echo name & ": its caption is " & shown
    ElseIf name = "ComboGrid" Then
      control.Rows = 7
      If control.Rows <> 7 Then WScript.Echo name & ": it has " & control.Rows & " rows"
    End If
  End If
  If Err.Number = 0 And Not control Is Nothing Then
    WScript.Echo "created " & name
  Else
    WScript.Echo name & ": " & Hex(Err.Number) & " " & Err.Description
  End If
  kept.Add name, control
Next
On Error GoTo 0

If WScript.Arguments.Count > 0 Then
  Dim files
  Set files = CreateObject("Scripting.FileSystemObject")
  Do While files.FileExists(WScript.Arguments.Item(0))
  Loop
End If
