' The script of first.frm: every Name_Event procedure is called when that event happens.
Sub Form_Load()
    txtName.Text = "World"
End Sub

Sub cmdGreet_Click()
    lblGreeting.Caption = "Hello, " & txtName.Text & "!"
    Host.Log lblGreeting.Caption
End Sub
