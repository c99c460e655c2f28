' Every control, late bound, in the system's script host: cscript controls.vbs
Option Explicit

Sub Check(name, holds, why)
    If holds Then WScript.Echo "ok " & name Else WScript.Echo "FAILED " & name & ": " & why
End Sub

Sub Same(name, got, wanted)
    Check name, CStr(got) = CStr(wanted), """" & got & """ instead of """ & wanted & """"
End Sub

Sub CheckProperties()
    Dim control
    Set control = CreateObject("Qvx.Button")
    control.Caption = "&Save"
    control.Behavior = 2
    Same "a Button keeps its properties", control.Caption & control.Behavior, "&Save2"
    Set control = CreateObject("Qvx.RButton")
    control.ForeColor = &HFF
    control.FocusRect = False
    Same "an RButton keeps its properties", control.ForeColor & control.FocusRect, "255False"
    Set control = CreateObject("Qvx.TextEdit")
    control.DataType = 2
    control.Text = "12.345"
    control.TextBox.MaxLength = 9
    Same "a TextEdit keeps its properties", control.Text & " " & control.MaxLength, "12.35 9"
    Set control = CreateObject("Qvx.Backup")
    control.DataPath = "Q:\data\"
    control.CheckSecurity = True
    Same "a Backup keeps its properties", control.DataPath & control.CheckSecurity, "Q:\data\True"
    Set control = CreateObject("Qvx.FlatBorder")
    control.OuterBorder = 65280
    Same "a FlatBorder keeps its properties", control.OuterBorder, 65280
    Set control = CreateObject("Qvx.CMenus")
    control.ImageList = "imlMenus"
    Same "a CMenus keeps its properties", control.ImageList, "imlMenus"
End Sub

Sub CheckGrid()
    Dim grid, column, first, second, caption, captions
    Set grid = CreateObject("Qvx.ComboGrid")
    grid.FormatString = "|<Article|>Pieces|>Price"
    grid.RefreshColIndex
    grid.Rows = 2
    grid.AddItem vbTab & "Desk" & vbTab & "2" & vbTab & "250.50"
    grid.AddItem vbTab & "Chair" & vbTab & "4" & vbTab & "80"
    grid.AddItem vbTab & "Chair" & vbTab & "4" & vbTab & "80"
    grid.RemoveItem 1
    Same "an indexed property is read", grid.TextMatrix(1, 1), "Desk"
    grid.TextMatrix(1, 1) = "Table"
    Same "an indexed property is set", grid.TextMatrix(1, 1), "Table"
    Same "a column is found by the default member", grid.ColIndex("Price"), 3
    For Each column In grid.ColIndex
        captions = captions & grid.TextMatrix(0, column) & ";"
    Next
    Same "columns are enumerated", captions, ";Article;Pieces;Price;"
    Same "a column is added up", grid.GetSumOf(1, 2), 10
    Same "columns are multiplied", grid.GetProductOf(-1, Array(2, 3)), 1141
    Check "equal rows are found", grid.DuplicateRecord(first, second), "they are not"
    Same "the caller's variables get the rows", first & " " & second, "2 3"
    grid.ClearRow 1, ";Article;"
    Same "an optional argument is left out", grid.TextMatrix(1, 1) & grid.TextMatrix(1, 2), "2"
    grid.SetCell 1, 1, Null
    grid.SetCell 1, 1, 12.5
    Same "a number is a cell's text", grid.TextMatrix(1, 1), "12.5"
End Sub

Sub CheckErrors()
    Dim grid
    Set grid = CreateObject("Qvx.ComboGrid")
    On Error Resume Next
    grid.Lists(1).AddItem "x"
    Same "an error has its number", Err.Number, 9
    Same "an error has its text", Err.Description, "Not a valid ListColum Index."
    Err.Clear
    grid.NoSuchMember = 1
    Same "a member that does not exist is an error", Err.Number, 438
End Sub

Dim heard

Sub Box_Change()
    heard = heard & "change "
End Sub

' Handlers are named after the control, where the host can connect them at all.
Sub CheckEvents()
    Dim box
    Set box = CreateObject("Qvx.TextEdit")
    On Error Resume Next
    WScript.ConnectObject box, "Box_"
    If Err.Number = 445 Then
        WScript.Echo "skipped events: this host's WScript.ConnectObject does nothing but raise error 445"
        Exit Sub
    End If
    box.Text = "new"
    WScript.DisconnectObject box
    box.Text = "newer"
    Same "an event is received while the object is connected", heard, "change "
End Sub

CheckProperties
CheckGrid
CheckErrors
CheckEvents
WScript.Echo "done"
