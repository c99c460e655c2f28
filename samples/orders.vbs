' The script of orders.frm: Bind loads records from a database, and one transaction writes them back.
'
' Numbers in cells always have "." as the decimal point, and dates are written year-month-day, in every country, because
' SQL expects them so.
Option Explicit

' The connection string. The database file is the first argument after "--", or orders.db in the program's folder.
Function Settings()
    Dim file
    file = App.Path & "\orders.db"
    If UBound(Host.Arguments) >= 0 Then file = Host.Arguments(0)
    Settings = "Driver={SQLite3 ODBC Driver};Database=" & file & ";NoCreat=1;"
End Function

Const ClientCursor = 3     ' for records with a known number and position
Const DownTheColumn = 1    ' for GetSumOf

Dim Connection
Dim Articles               ' (0, i) is the name and (1, i) the price
Dim ColOrder, ColCustomer, ColOrdered, ColRemark
Dim ColArticle, ColQty, ColPrice, ColAmount
Dim ShownOrder             ' the order whose lines are in the lower grid, or 0
Dim Busy                   ' the script itself moves the cursor in the grids

Sub Form_Load()
    ColOrder = grdOrders.ColIndex("Order")
    ColCustomer = grdOrders.ColIndex("Customer")
    ColOrdered = grdOrders.ColIndex("Ordered")
    ColRemark = grdOrders.ColIndex("Remark")
    ColArticle = grdLines.ColIndex("Article")
    ColQty = grdLines.ColIndex("Qty")
    ColPrice = grdLines.ColIndex("Price")
    ColAmount = grdLines.ColIndex("Amount")
    SetWidths
    ShownOrder = 0
    Busy = False
    If Not OpenDatabase() Then
        cmdSave.Enabled = False
        Exit Sub
    End If
    FillArticles
    ShowOrders
    Host.Log "Loaded " & grdOrders.Rows - 1 & " orders"
End Sub

Sub Form_Unload(Cancel)
    Host.Log "Closed"
End Sub

Function OpenDatabase()
    Set Connection = CreateObject("ADODB.Connection")
    On Error Resume Next
    Connection.Open Settings()
    OpenDatabase = (Err.Number = 0)
    If Err.Number <> 0 Then Report "The database cannot be opened: " & Err.Description
End Function

' Returns the records of a statement, kept in memory.
Function Query(Sql)
    Dim records
    Set records = CreateObject("ADODB.Recordset")
    records.CursorLocation = ClientCursor
    records.Open Sql, Connection
    Set Query = records
End Function

Sub FillArticles()
    Dim i
    Articles = Query("select name, price from articles order by name").GetRows()
    For i = 0 To UBound(Articles, 2)
        grdLines.Lists(ColArticle).AddItem Articles(0, i)
    Next
End Sub

Sub ShowOrders()
    Dim records
    Busy = True
    Set records = Query("select id, customer, strftime('%Y-%m-%d', ordered), remark from orders order by id")
    grdOrders.Bind records
    grdOrders.Row = 1
    grdOrders.Col = ColCustomer
    Busy = False
    ShowLines
End Sub

' Shows the lines of the current order in the upper grid.
Sub ShowLines()
    Dim records
    ShownOrder = OrderAt(grdOrders.Row)
    Set records = Query("select article, quantity, price from lines where order_id = " & ShownOrder & " order by position")
    grdLines.Bind records
    grdLines.Row = 1
    grdLines.Col = ColArticle
    lblLines.Caption = "&Lines of order " & ShownOrder
    ShowTotal
    Host.Log "Lines of order " & ShownOrder & ": " & records.RecordCount
End Sub

' Returns the number of the order in a row. A new order gets the next number.
Function OrderAt(Row)
    Dim highest, other
    If grdOrders.TextMatrix(Row, ColOrder) = "" Then
        highest = CLng(Query("select coalesce(max(id), 0) from orders").Fields(0))
        For other = 1 To grdOrders.Rows - 1
            If grdOrders.TextMatrix(other, ColOrder) <> "" Then
                If CLng(grdOrders.TextMatrix(other, ColOrder)) > highest Then highest = CLng(grdOrders.TextMatrix(other, ColOrder))
            End If
        Next
        grdOrders.TextMatrix(Row, ColOrder) = highest + 1
    End If
    OrderAt = CLng(grdOrders.TextMatrix(Row, ColOrder))
End Function

' Returns the row of the order whose lines are shown, or 0.
Function ShownRow()
    Dim row
    ShownRow = 0
    For row = 1 To grdOrders.Rows - 1
        If grdOrders.TextMatrix(row, ColOrder) = CStr(ShownOrder) Then ShownRow = row
    Next
End Function

' The lower grid follows the upper one, unless it holds lines that would be lost.
Sub grdOrders_EnterCell()
    FollowOrder
End Sub

Sub FollowOrder()
    Dim shown
    If Busy Then Exit Sub
    shown = ShownRow()
    If shown = grdOrders.Row Then Exit Sub
    If shown > 0 And grdLines.Changed Then
        Busy = True
        grdOrders.Row = shown
        Busy = False
        Report "Please save the lines of order " & ShownOrder & " first."
        Exit Sub
    End If
    ShowLines
End Sub

Sub grdOrders_OnDelete(Row)
    Host.Log "Deleted order in row " & Row
    If ShownRow() <> grdOrders.Row Then ShowLines
End Sub

Sub grdLines_OnDelete(Row)
    Host.Log "Deleted line " & Row
    ShowTotal
End Sub

Sub grdOrders_AfterCellChange(Row, Col, OldData, NewData, Cancel)
    Host.Log "Orders changed " & Row & "," & Col & " [" & OldData & "] [" & NewData & "]"
    If Row > 0 Then FollowOrder  ' an inserted row becomes the current one without an EnterCell event
End Sub

' Row -1 means that whole lines have been added or removed, also by undoing.
Sub grdLines_AfterCellChange(Row, Col, OldData, NewData, Cancel)
    Dim i
    Host.Log "Lines changed " & Row & "," & Col & " [" & OldData & "] [" & NewData & "]"
    If Row < 0 Then
        ShowTotal
        Exit Sub
    End If
    Say ""
    If Col = ColArticle Then
        For i = 0 To UBound(Articles, 2)
            If Articles(0, i) = NewData Then grdLines.TextMatrix(Row, ColPrice) = Replace(CStr(Articles(1, i)), ",", ".")
        Next
    End If
    ShowTotal
End Sub

' Every line's amount is its quantity times its price; their sum is the total.
Sub ShowTotal()
    grdLines.GetProductOf ColAmount, Array(ColQty, ColPrice)
    lblTotal.Caption = Money(grdLines.GetSumOf(DownTheColumn, ColAmount))
End Sub

' Whether nothing is missing. Otherwise the first missing entry is reported, and the cursor is there.
Function IsComplete()
    IsComplete = False
    If grdOrders.ValidateEntry() Then
        Report "Order " & grdOrders.Row & " is not complete (" & grdOrders.Row & "," & grdOrders.Col & ")."
        Exit Function
    End If
    grdLines.RemoveEmptyRows False
    If HasLines() Then
        If grdLines.ValidateEntry() Then
            Report "Line " & grdLines.Row & " is not complete (" & grdLines.Row & "," & grdLines.Col & ")."
            Exit Function
        End If
    End If
    IsComplete = True
End Function

' Whether there is any line: a grid keeps its last row even when it is empty.
Function HasLines()
    HasLines = grdLines.Rows > 2 Or grdLines.TextMatrix(1, ColArticle) <> "" Or grdLines.TextMatrix(1, ColQty) <> "" _
        Or grdLines.TextMatrix(1, ColPrice) <> ""
End Function

Sub cmdTotal_Click()
    ShowTotal
    Host.Log "Total " & lblTotal.Caption
End Sub

Sub cmdCheck_Click()
    If IsComplete() Then Report "All orders and lines are complete."
End Sub

Sub cmdSave_Click()
    Dim failure
    If Not IsComplete() Then Exit Sub
    Connection.BeginTrans
    On Error Resume Next
    WriteOrders
    If Err.Number = 0 Then WriteLines
    If Err.Number = 0 Then Connection.CommitTrans
    failure = Err.Description
    If Err.Number <> 0 Then
        Connection.RollbackTrans
        Report "Nothing was saved: " & failure
        Exit Sub
    End If
    On Error GoTo 0
    grdOrders.Changed = False
    grdLines.Changed = False
    LogShown
    Report "Saved " & grdOrders.Rows - 1 & " orders."
End Sub

Sub WriteOrders()
    Dim row, numbers
    numbers = OrderAt(1)
    For row = 2 To grdOrders.Rows - 1
        numbers = numbers & ", " & OrderAt(row)
    Next
    Connection.Execute "delete from lines where order_id not in (" & numbers & ")"
    Connection.Execute "delete from orders where id not in (" & numbers & ")"
    For row = 1 To grdOrders.Rows - 1
        Connection.Execute "replace into orders values (" & OrderAt(row) & ", " & Quoted(grdOrders.TextMatrix(row, ColCustomer)) & _
            ", " & Quoted(grdOrders.TextMatrix(row, ColOrdered)) & ", " & Quoted(grdOrders.TextMatrix(row, ColRemark)) & ")"
    Next
End Sub

Sub WriteLines()
    Dim row
    Connection.Execute "delete from lines where order_id = " & ShownOrder
    If Not HasLines() Then Exit Sub
    For row = 1 To grdLines.Rows - 1
        Connection.Execute "insert into lines values (" & ShownOrder & ", " & row & ", " & Quoted(grdLines.TextMatrix(row, ColArticle)) & _
            ", " & Quoted(grdLines.TextMatrix(row, ColQty)) & ", " & Quoted(grdLines.TextMatrix(row, ColPrice)) & ")"
    Next
End Sub

' Logs what the grids show now.
Sub LogShown()
    Dim row
    For row = 1 To grdOrders.Rows - 1
        Host.Log "Shown: " & grdOrders.TextMatrix(row, ColOrder) & "|" & grdOrders.TextMatrix(row, ColCustomer) & "|" & _
            grdOrders.TextMatrix(row, ColOrdered) & "|" & grdOrders.TextMatrix(row, ColRemark)
    Next
    If Not HasLines() Then Exit Sub
    For row = 1 To grdLines.Rows - 1
        Host.Log "Shown: " & ShownOrder & "|" & row & "|" & grdLines.TextMatrix(row, ColArticle) & "|" & _
            grdLines.TextMatrix(row, ColQty) & "|" & grdLines.TextMatrix(row, ColPrice)
    Next
End Sub

Sub cmdDelete_Click()
    Dim answer
    answer = MsgBox("Delete line " & grdLines.Row & "?", vbYesNo + vbQuestion, frmOrders.Caption)
    If answer <> vbYes Then Exit Sub
    If grdLines.Rows > 2 Then
        grdLines.RemoveItem grdLines.Row
    Else
        grdLines.ClearRow 1
    End If
    grdLines.Changed = True
    ShowTotal
    Host.Log "Deleted line by the button"
End Sub

Sub cmdClose_Click()
    frmOrders.Close
End Sub

' The form keeps the width of the first column only; the others are set here, in twips.
Sub SetWidths()
    grdOrders.ColWidth(ColOrder) = 900
    grdOrders.ColWidth(ColCustomer) = 3300
    grdOrders.ColWidth(ColOrdered) = 1500
    grdOrders.ColWidth(ColRemark) = 3800
    grdLines.ColWidth(ColArticle) = 4400
    grdLines.ColWidth(ColQty) = 1300
    grdLines.ColWidth(ColPrice) = 1700
    grdLines.ColWidth(ColAmount) = 2000
End Sub

' Returns a text as an SQL literal: null for an empty one.
Function Quoted(Text)
    Quoted = "null"
    If Text <> "" Then Quoted = "'" & Replace(Text, "'", "''") & "'"
End Function

Sub Say(Text)
    lblStatus.Caption = Text
End Sub

Sub Report(Text)
    Say Text
    Host.Log Text
End Sub

Function Money(Value)
    Dim cents
    cents = Int(Abs(Value) * 100 + 0.5)
    Money = Int(cents / 100) & "." & Right("0" & (cents - Int(cents / 100) * 100), 2)
    If Value < 0 Then Money = "-" & Money
End Function
