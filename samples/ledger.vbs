' The script of ledger.frm: a grid of 100,000 records with everything turned on that it offers its users. Apply writes
' what they have changed back to the database.
'
' Columns can be moved, so that the script asks ColIndex for a column's number every time. Amounts in cells always have
' "." as the decimal point, and dates are written year-month-day, in every country, because the database has them so.
Option Explicit

Const ClientCursor = 3     ' for records with a known number and position
Const ReadOnlyLock = 1
Const OptimisticLock = 3
Const Fields = "select id, day, account, text, debit, credit, checked from bookings"
Const MostNumbers = 1000   ' as many changed bookings are asked for by their numbers
Const MostRows = 5000      ' as many rows are put on pages

Dim Connection
Dim AskAll                 ' the user's answer to the first conflict counts for all of them
Dim Answer

' The database file is the first argument after "--", or ledger.db in the program's folder. What is exported is written
' beside it.
Function DatabaseFile()
    DatabaseFile = App.Path & "\ledger.db"
    If UBound(Host.Arguments) >= 0 Then DatabaseFile = Host.Arguments(0)
End Function

Function FileBeside(Suffix)
    Dim file
    file = DatabaseFile()
    If LCase(Right(file, 3)) = ".db" Then file = Left(file, Len(file) - 3)
    FileBeside = file & Suffix
End Function

Sub Form_Load()
    SetWidths
    If Not OpenDatabase() Then
        cmdSave.Enabled = False
        Exit Sub
    End If
    FillLists
    grdBookings.Bind Query(Fields & " order by id", ReadOnlyLock)
    RestoreLayout
    grdBookings.Row = 1
    grdBookings.Col = Column("Date")
    Report "Loaded " & Counted(grdBookings.Rows - 1, "booking") & ": " & Totals()
End Sub

' Changes that are not saved are lost only after a question, and what the user has arranged is kept.
Sub Form_Unload(Cancel)
    If HasChanges() Then
        If MsgBox("Close without saving?", vbYesNo + vbQuestion, frmLedger.Caption) = vbNo Then
            Cancel = True
            Exit Sub
        End If
    End If
    KeepLayout
    Host.Log "Closed"
End Sub

Function OpenDatabase()
    Set Connection = CreateObject("ADODB.Connection")
    On Error Resume Next
    Connection.Open "Driver={SQLite3 ODBC Driver};Database=" & DatabaseFile() & ";NoCreat=1;"
    OpenDatabase = (Err.Number = 0)
    If Err.Number <> 0 Then Report "The database cannot be opened: " & Err.Description
End Function

' Returns the records of a statement, kept in memory.
Function Query(Sql, LockType)
    Dim records
    Set records = CreateObject("ADODB.Recordset")
    records.CursorLocation = ClientCursor
    records.Open Sql, Connection, , LockType
    Set Query = records
End Function

Function Column(Name)
    Column = grdBookings.ColIndex(Name)
End Function

Sub FillLists()
    Dim accounts, i
    accounts = Query("select name from accounts order by name", ReadOnlyLock).GetRows()
    For i = 0 To UBound(accounts, 2)
        grdBookings.Lists(Column("Account")).AddItem accounts(0, i)
    Next
    grdBookings.Lists(Column("Checked")).AddItem "no"
    grdBookings.Lists(Column("Checked")).AddItem "yes"
End Sub

' ---- What the user does ----------------------------------------------------------------------------------------------

' An amount has two decimals, and none is an empty cell.
Sub grdBookings_AfterCellChange(Row, Col, OldData, NewData, Cancel)
    Dim amount
    Host.Log "Changed " & Row & "," & Col & " [" & OldData & "] [" & NewData & "]"
    Say ""
    If Row < 1 Then Exit Sub
    If Col <> Column("Debit") And Col <> Column("Credit") Then Exit Sub
    amount = Money(Number(NewData))
    If amount = "0.00" Then amount = ""
    If amount <> NewData Then grdBookings.TextMatrix(Row, Col) = amount
End Sub

' A rule of the form's own, beside those of the grid's lists.
Sub grdBookings_ValidateCell(Row, Col, Text, Message)
    Dim credit
    credit = grdBookings.TextMatrix(Row, Column("Credit"))
    If Text = "" And credit = "" Then Message = "A booking needs a debit or a credit."
    If Text <> "" And credit <> "" Then Message = "A booking has either a debit or a credit."
End Sub

Sub grdBookings_OnDelete(Row)
    Host.Log "Deleted row " & Row
End Sub

Sub grdBookings_Sorted(Columns)
    Report "Sorted by " & Columns
End Sub

Sub grdBookings_Filtered(Shown, Total)
    Report Shown & " of " & Counted(Total, "booking") & ": " & Totals()
End Sub

Sub grdBookings_ColumnMoved(Col, Position)
    Report "Column " & Col & " is now at " & Position
End Sub

Sub grdBookings_BeforeMenu(Row, Col, Items, Cancel)
    If Row > 0 Then Items = Items & "-;checked=Mark as chec&ked;"
End Sub

' Host cells are not steps for Undo; the row counts as changed all the same.
Sub grdBookings_MenuCommand(Key, Col)
    Dim row
    For row = Least(grdBookings.Row, grdBookings.Grid.RowSel) To Most(grdBookings.Row, grdBookings.Grid.RowSel)
        If grdBookings.RowShown(row) Then grdBookings.TextMatrix(row, Column("Checked")) = "yes"
    Next
    Report "Marked as checked"
End Sub

' A booking more at the end, of the day of the current one.
Sub cmdNew_Click()
    Dim day
    day = grdBookings.TextMatrix(grdBookings.Row, Column("Date"))
    grdBookings.AddItem grdBookings.Rows  ' the record number
    grdBookings.Row = grdBookings.Rows - 1
    grdBookings.TextMatrix(grdBookings.Row, Column("Date")) = day
    grdBookings.Col = Column("Account")
    grdBookings.SetFocus
    Report "New booking in row " & grdBookings.Row
End Sub

Sub cmdReset_Click()
    grdBookings.Filter = ""
    Report "All " & Counted(grdBookings.Rows - 1, "booking") & ": " & Totals()
End Sub

' ---- Files and paper -------------------------------------------------------------------------------------------------

Sub cmdCsv_Click()
    Export ".csv"
End Sub

Sub cmdWorkbook_Click()
    Export ".xlsx"
End Sub

Sub Export(Suffix)
    On Error Resume Next
    grdBookings.ExportFile FileBeside(Suffix)
    If Err.Number = 0 Then
        Report "Exported " & Counted(grdBookings.FilteredRows, "booking") & " as " & Suffix
    Else
        Report "Nothing was exported: " & Err.Description
    End If
End Sub

Sub cmdPreview_Click()
    If TooMany() Then Exit Sub
    Report "Printed " & Counted(grdBookings.PrintPreview("Ledger"), "page")
End Sub

' Each page is a picture of its own: ledger-1.emf and so on.
Sub cmdPages_Click()
    Dim pages
    If TooMany() Then Exit Sub
    On Error Resume Next
    pages = grdBookings.ExportPages(FileBeside(".emf"), "Ledger")
    If Err.Number = 0 Then
        Report "Wrote " & Counted(pages, "page")
    Else
        Report "No pages were written: " & Err.Description
    End If
End Sub

Sub grdBookings_PrintProgress(Page, Pages, Cancel)
    Say "Page " & Page & " of " & Pages
End Sub

Function TooMany()
    TooMany = grdBookings.FilteredRows > MostRows
    If TooMany Then Report "That would be more than " & MostRows & " bookings on paper: please filter them first."
End Function

' ---- Saving ----------------------------------------------------------------------------------------------------------

' The records that Apply compares and writes are read only now, and only those that have been changed here: whatever
' others have changed since the bookings were loaded is then a conflict.
Sub cmdSave_Click()
    Dim changed, written, failure
    cmdSave.SetFocus  ' ends an entry
    If Not IsComplete(changed) Then Exit Sub
    AskAll = True
    Answer = vbYes
    On Error Resume Next
    written = grdBookings.Apply(Query(Fields & Restriction(changed), OptimisticLock), "id")
    failure = Err.Description
    If Err.Number <> 0 Then
        Report "Nothing was saved: " & failure
        Exit Sub
    End If
    On Error GoTo 0
    If Answer <> vbYes Then
        Report "Nothing was saved."
        Exit Sub
    End If
    grdBookings.Changed = False
    LogShown changed
    Report "Saved " & Counted(written, "booking") & ": " & Totals()
End Sub

' Whether nothing is wrong in the rows that are to be saved; puts the numbers of their bookings into `Changed`.
' Otherwise the first wrong cell is reported, and the cursor is there. The other rows are as the database has them.
Function IsComplete(Changed)
    Dim row, col, found, message
    IsComplete = False
    Set Changed = CreateObject("Scripting.Dictionary")
    row = grdBookings.NextChanged()
    Do While row > 0
        Changed.Add CStr(row), grdBookings.TextMatrix(row, Column("Booking"))
        found = row
        col = -1
        message = ""
        If Not IsEmptyRow(row) Then message = grdBookings.FindInvalid(found, col, True)
        If message <> "" Then
            grdBookings.SetFocus
            grdBookings.Row = row
            grdBookings.Col = col
            Report "Row " & row & ": " & message
            Exit Function
        End If
        row = grdBookings.NextChanged(row)
    Loop
    IsComplete = True
End Function

' A row whose texts have all been removed is deleted by Apply.
Function IsEmptyRow(Row)
    Dim col
    IsEmptyRow = False
    For col = 1 To grdBookings.Cols - 1
        If grdBookings.TextMatrix(Row, col) <> "" Then Exit Function
    Next
    IsEmptyRow = True
End Function

' Returns the condition for the records of the changed and deleted rows.
Function Restriction(Changed)
    Dim numbers, row, i
    Restriction = ""
    If Changed.Count + grdBookings.DeletedRows > MostNumbers Then Exit Function
    numbers = "0"
    For Each row In Changed.Keys
        If Changed(row) <> "" Then numbers = numbers & ", " & Changed(row)
    Next
    For i = 0 To grdBookings.DeletedRows - 1
        numbers = numbers & ", " & grdBookings.DeletedText(i, Column("Booking"))
    Next
    Restriction = " where id in (" & numbers & ")"
End Function

Sub grdBookings_ApplyConflict(Row, Index, Field, Ours, Theirs, Overwrite, Cancel)
    Dim what
    If Row > 0 Then
        what = "Booking " & grdBookings.OriginalText(Row, Column("Booking"))
    Else
        what = "Booking " & grdBookings.DeletedText(Index, Column("Booking")) & ", which you have deleted,"
    End If
    If Field = "" Then
        what = what & " has been deleted by somebody else."
    Else
        what = what & " has been changed by somebody else: " & Field & " is now """ & Theirs & """."
    End If
    Host.Log what
    If AskAll Then Answer = MsgBox(what & " Save your version of this and of all others?", vbYesNo + vbQuestion, frmLedger.Caption)
    AskAll = False
    Overwrite = (Answer = vbYes)
    Cancel = Not Overwrite
End Sub

Function HasChanges()
    HasChanges = grdBookings.DeletedRows > 0 Or grdBookings.NextChanged() > 0
End Function

' Logs what the saved rows show now.
Sub LogShown(Changed)
    Dim row, name, line
    For Each row In Changed.Keys
        line = ""
        For Each name In Array("Booking", "Date", "Account", "Text", "Debit", "Credit", "Checked")
            If line <> "" Then line = line & "|"
            line = line & grdBookings.TextMatrix(CLng(row), Column(name))
        Next
        Host.Log "Shown: " & line
    Next
    Host.Log "Shown: " & Totals()
End Sub

' Debit and credit of the bookings that are shown.
Function Totals()
    Totals = "debit " & grdBookings.FooterText(Column("Debit")) & ", credit " & grdBookings.FooterText(Column("Credit"))
End Function

' ---- What the user has arranged --------------------------------------------------------------------------------------

Sub RestoreLayout()
    Dim records
    Set records = Query("select layout from layouts where grid = 'bookings'", ReadOnlyLock)
    If Not records.EOF Then grdBookings.UserLayout = records.Fields(0).Value
End Sub

Sub KeepLayout()
    On Error Resume Next
    Connection.Execute "replace into layouts values ('bookings', '" & Replace(grdBookings.UserLayout, "'", "''") & "')"
End Sub

' The form keeps the width of the first column only; the others are set here, in twips.
Sub SetWidths()
    grdBookings.ColWidth(Column("Booking")) = 960
    grdBookings.ColWidth(Column("Date")) = 1500
    grdBookings.ColWidth(Column("Account")) = 2220
    grdBookings.ColWidth(Column("Text")) = 2850
    grdBookings.ColWidth(Column("Debit")) = 1350
    grdBookings.ColWidth(Column("Credit")) = 1350
    grdBookings.ColWidth(Column("Checked")) = 960
End Sub

' ---- Small things ----------------------------------------------------------------------------------------------------

Sub Say(Text)
    lblStatus.Caption = Text
End Sub

Sub Report(Text)
    Say Text
    Host.Log Text
End Sub

Function Counted(Count, What)
    Counted = Count & " " & What
    If Count <> 1 Then Counted = Counted & "s"
End Function

Function Least(First, Second)
    Least = First
    If Second < First Then Least = Second
End Function

Function Most(First, Second)
    Most = First
    If Second > First Then Most = Second
End Function

' Reads a text with "." as the decimal point, in every country. What is not a number counts as 0, and one that is longer
' than any sensible number as a very large one: neither needs an error.
Function Number(Text)
    Dim point, digits
    Number = 0
    If Len(Text) > 30 Or InStr(Text, "E+") > 0 Then
        Number = 1E+12
        Exit Function
    End If
    point = InStr(Text, ".")
    digits = Replace(Text, ".", "")
    If Not IsNumeric(digits) Then Exit Function
    Number = CDbl(digits)
    If point > 0 Then Number = Number / 10 ^ (Len(Text) - point)
End Function

Function Money(Value)
    Dim cents, sign
    sign = ""
    If Value < 0 Then sign = "-"
    cents = Int(Abs(Value) * 100 + 0.5)
    Money = sign & Int(cents / 100) & "." & Right("0" & (cents - Int(cents / 100) * 100), 2)
End Function

Sub cmdClose_Click()
    frmLedger.Close
End Sub
