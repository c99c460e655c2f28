' The script of invoice.frm.
'
' It uses column numbers with the grid, which it looks up once by the captions of the columns. Numbers in cells always
' have "." as the decimal point, in every country.
Option Explicit

Const TaxPercent = 19
Const MostPieces = 9999
Const PriceLimit = 1000000

Dim Articles(5)          ' number, name, description, price
Dim ColArticle, ColDescription, ColQty, ColPrice, ColDelivery, ColAmount, ColKey

Sub Form_Load()
    Dim i
    Articles(0) = Array("1001", "Binder A4", "Lever arch file, 80 mm", "3.20")
    Articles(1) = Array("1002", "Binder A5", "Lever arch file, 50 mm", "2.85")
    Articles(2) = Array("1105", "Copy paper", "500 sheets, 80 g", "5.49")
    Articles(3) = Array("1230", "Desk lamp", "LED, adjustable arm", "38.90")
    Articles(4) = Array("1307", "Paper clips", "Box of 100", "0.95")
    Articles(5) = Array("9000", "Shipping", "Parcel, flat rate", "6.90")

    ColArticle = grdLines.ColIndex("Article")
    ColDescription = grdLines.ColIndex("Description")
    ColQty = grdLines.ColIndex("Qty")
    ColPrice = grdLines.ColIndex("Price")
    ColDelivery = grdLines.ColIndex("Delivery")
    ColAmount = grdLines.ColIndex("Amount")
    ColKey = grdLines.ColIndex("Key")

    SetWidths
    For i = 0 To UBound(Articles)
        grdLines.Lists(ColArticle).AddItem Articles(i)(1)
    Next
    txtDate.Text = Year(Date) & "-" & Right("0" & Month(Date), 2) & "-" & Right("0" & Day(Date), 2)
    grdLines.Row = 1
    grdLines.Col = ColArticle
    Host.Log "Loaded " & grdLines.StringFormat
End Sub

' The form keeps the width of the first column only; the others are set here, in twips.
Sub SetWidths()
    grdLines.ColWidth(ColArticle) = 1800
    grdLines.ColWidth(ColDescription) = 3000
    grdLines.ColWidth(ColQty) = 900
    grdLines.ColWidth(ColPrice) = 1200
    grdLines.ColWidth(ColDelivery) = 1200
    grdLines.ColWidth(ColAmount) = 1365
End Sub

Sub Form_Unload(Cancel)
    Host.Log "Closed"
End Sub

' The price of shipping is fixed, so its cell does not open: Cancel refuses the edit here before it begins.
Sub grdLines_BeforeCellChange(Row, Col, Data, Cancel)
    Host.Log "BeforeCellChange " & Row & "," & Col & " [" & Data & "]"
    If Col = ColPrice And grdLines.TextMatrix(Row, ColArticle) = "Shipping" Then
        Say "The price of shipping is fixed."
        Cancel = True
    End If
End Sub

' More than 9999 pieces of an article, or a price of a million or more, is a typing error: Cancel restores the cell's old
' text here. Row -1 means that whole lines have been added or removed.
Sub grdLines_AfterCellChange(Row, Col, OldData, NewData, Cancel)
    Host.Log "AfterCellChange " & Row & "," & Col & " [" & OldData & "] [" & NewData & "]"
    If Row < 0 Then
        ShowTotals
        Exit Sub
    End If
    If Col = ColQty Then
        If Number(NewData) > MostPieces Then
            Say "A line may have up to " & MostPieces & " pieces."
            Cancel = True
            Exit Sub
        End If
    ElseIf Col = ColPrice Then
        If Number(NewData) >= PriceLimit Then
            Say "A price has to be below " & PriceLimit & "."
            Cancel = True
            Exit Sub
        End If
    End If
    Say ""
    If Col = ColArticle Then FillFromArticle Row, NewData
    ShowAmount Row
    ShowTotals
End Sub

Sub grdLines_OnError(ErrNum, Description, Response)
    Host.Log "OnError " & ErrNum & " " & Description
    Say Description
    Response = False
End Sub

' Fills the cells that are still empty with the details of the article.
Sub FillFromArticle(Row, Name)
    Dim i
    For i = 0 To UBound(Articles)
        If Articles(i)(1) = Name Then
            grdLines.TextMatrix(Row, ColKey) = Articles(i)(0)
            If grdLines.TextMatrix(Row, ColDescription) = "" Then grdLines.TextMatrix(Row, ColDescription) = Articles(i)(2)
            If grdLines.TextMatrix(Row, ColPrice) = "" Then grdLines.TextMatrix(Row, ColPrice) = Articles(i)(3)
            If grdLines.TextMatrix(Row, ColQty) = "" Then grdLines.TextMatrix(Row, ColQty) = "1"
        End If
    Next
End Sub

Sub ShowAmount(Row)
    Dim quantity, price
    quantity = grdLines.TextMatrix(Row, ColQty)
    price = grdLines.TextMatrix(Row, ColPrice)
    If quantity = "" Or price = "" Then
        grdLines.TextMatrix(Row, ColAmount) = ""
    Else
        grdLines.TextMatrix(Row, ColAmount) = Money(Number(quantity) * Number(price))
    End If
End Sub

Sub ShowTotals()
    Dim row, net, tax
    net = 0
    For row = 1 To grdLines.Rows - 1
        net = net + Number(grdLines.TextMatrix(row, ColAmount))
    Next
    tax = net * TaxPercent / 100
    lblNet.Caption = Money(net)
    lblTax.Caption = Money(tax)
    lblTotal.Caption = Money(net + tax)
End Sub

' Makes the first line that is begun but not complete the current one. Returns True when there is none.
Function LinesAreComplete()
    Dim row, missing
    LinesAreComplete = False
    For row = 1 To grdLines.Rows - 1
        If IsBegun(row) Then
            missing = -1
            If grdLines.TextMatrix(row, ColArticle) = "" Then
                missing = ColArticle
            ElseIf Number(grdLines.TextMatrix(row, ColQty)) <= 0 Then
                missing = ColQty
            End If
            If missing >= 0 Then
                grdLines.SetFocus
                grdLines.Row = row
                grdLines.Col = missing
                Say "Line " & row & ": please complete the " & grdLines.TextMatrix(0, missing) & "."
                Exit Function
            End If
        End If
    Next
    LinesAreComplete = True
End Function

Function IsBegun(Row)
    Dim col
    IsBegun = False
    For Each col In Array(ColArticle, ColDescription, ColQty, ColPrice, ColDelivery)
        If grdLines.TextMatrix(Row, col) <> "" Then IsBegun = True
    Next
End Function

Sub cmdCheck_Click()
    If LinesAreComplete() Then Say "All lines are complete."
    Host.Log "Checked: " & lblStatus.Caption
End Sub

Sub cmdSave_Click()
    SaveInvoice
End Sub

Sub mnuSave_Click()
    SaveInvoice
End Sub

' A real program would write to its database here; this one writes to the log.
Sub SaveInvoice()
    Dim row, count
    cmdSave.SetFocus  ' the menu does not close a cell that is being edited; this ends the entry
    If Not LinesAreComplete() Then Exit Sub
    count = 0
    For row = 1 To grdLines.Rows - 1
        If IsBegun(row) Then
            count = count + 1
            Host.Log "Line " & row & ": " & grdLines.TextMatrix(row, ColKey) & "|" & grdLines.TextMatrix(row, ColArticle) & _
                "|" & grdLines.TextMatrix(row, ColDescription) & "|" & grdLines.TextMatrix(row, ColQty) & _
                "|" & grdLines.TextMatrix(row, ColPrice) & "|" & grdLines.TextMatrix(row, ColDelivery)
        End If
    Next
    grdLines.Changed = False
    Host.Log "Saved " & count & " lines for """ & txtCustomer.Text & """, total " & lblTotal.Caption
    Say "Saved: " & count & " lines, total " & lblTotal.Caption & "."
End Sub

Sub cmdClose_Click()
    frmInvoice.Close
End Sub

Sub mnuClose_Click()
    frmInvoice.Close
End Sub

Sub mnuAdd_Click()
    grdLines.AddItem ""
    grdLines.Row = grdLines.Rows - 1
    grdLines.Col = ColArticle
    grdLines.SetFocus
    Host.Log "Added line " & grdLines.Row
End Sub

Sub mnuRemove_Click()
    Dim removed
    removed = grdLines.Row
    If grdLines.Rows <= 2 Then
        Say "The last line cannot be removed."
        Exit Sub
    End If
    grdLines.RemoveItem removed
    ShowTotals
    Host.Log "Removed line " & removed
End Sub

Sub mnuAbout_Click()
    grdLines.ShowAbout
End Sub

Sub Say(Text)
    lblStatus.Caption = Text
End Sub

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
