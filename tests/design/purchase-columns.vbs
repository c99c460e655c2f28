
Dim column, all
For Each column In grdLines.Columns
    all = all & " " & column.Caption & "/" & column.MaxLength & "/" & column.List & "/" & column.Footer
Next
Host.Log "Columns:" & all
