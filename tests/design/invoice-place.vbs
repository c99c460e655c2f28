
Sub cmdLater_Click()
    Host.Log "Later: [" & cmdLater.Caption & "] " & cmdLater.BackColor & " " & cmdLater.FocusRect & " " & _
        cmdLater.Left & "," & cmdLater.Top & " " & cmdLater.Width
End Sub
