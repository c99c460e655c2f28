' The script of purchase.frm, which docs/first-hour.md makes step by step: an order that is checked and saved.
Option Explicit

Dim ColArticle, ColPieces, ColPrice

Sub Form_Load()
    ColArticle = grdLines.ColIndex("Article")
    ColPieces = grdLines.ColIndex("Pieces")
    ColPrice = grdLines.ColIndex("Price")
    grdLines.ColWidth(ColArticle) = 3600
    ShowTotal
    Host.Log "Ready"
End Sub

Sub grdLines_AfterCellChange(Row, Col, OldData, NewData, Cancel)
    ShowTotal
    Host.Log "Cell " & Row & "," & Col & " [" & NewData & "]"
End Sub

Sub cmdSave_Click()
    grdLines.RemoveEmptyRows
    If grdLines.ValidateEntry Then Exit Sub     ' the user has been told what is wrong, and where
    WriteOrder
    grdLines.Changed = False
    lblTotal.Caption = "Saved"
End Sub

Sub Form_Unload(Cancel)
    If Not grdLines.Changed Then Exit Sub
    If MsgBox("Close without saving?", vbYesNo) = vbNo Then Cancel = True
End Sub

' The sum over all rows of pieces times price; nothing is written into a column.
Sub ShowTotal()
    lblTotal.Caption = "Total " & FormatNumber(grdLines.GetProductOf(-1, Array(ColPieces, ColPrice)), 2)
End Sub

' One line of text for each line of the order, in the user's folder for temporary files.
Sub WriteOrder()
    Dim files, target, row
    Set files = CreateObject("Scripting.FileSystemObject")
    Set target = files.CreateTextFile(files.GetSpecialFolder(2) & "\order.txt", True)
    For row = 1 To grdLines.Rows - 1
        target.WriteLine txtCustomer.Text & vbTab & grdLines.TextMatrix(row, ColArticle) & vbTab & _
            grdLines.TextMatrix(row, ColPieces) & vbTab & grdLines.TextMatrix(row, ColPrice)
        Host.Log "Saved: " & grdLines.TextMatrix(row, ColArticle) & " " & grdLines.TextMatrix(row, ColPieces)
    Next
    target.Close
End Sub
