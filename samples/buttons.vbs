' The script of buttons.frm.
Option Explicit

Dim Posted      ' the number of posted vouchers
Dim LastPosted  ' the text of the last one

Sub Form_Load()
    Posted = 0
    Host.Log "Loaded"
End Sub

Sub Form_Unload(Cancel)
    Host.Log "Closed with " & Posted & " posted"
End Sub

Sub cmdPost_Click()
    If Trim(txtText.Text) = "" Or Not IsNumeric(txtAmount.Text) Then
        Say "A voucher needs a text and an amount."
        txtText.SetFocus
        Exit Sub
    End If
    Posted = Posted + 1
    LastPosted = "Voucher " & Posted & ": " & txtText.Text & ", " & txtAmount.Text
    Say "Posted " & LastPosted
    cmdPrint.Enabled = True
    txtText.Text = ""
    txtAmount.Text = ""
    txtText.SetFocus
End Sub

' A real program would print here; this one writes to the log.
Sub cmdPrint_Click()
    Say "Printed " & LastPosted
    cmdPrint.Enabled = False
End Sub

Sub cmdVoid_Click()
    txtText.Text = ""
    txtAmount.Text = ""
    Say "Nothing was posted."
End Sub

' The menu item presses the button: setting Value is a click.
Sub mnuPost_Click()
    cmdPost.Value = True
End Sub

Sub cmdClose_Click()
    frmVoucher.Close
End Sub

Sub Say(Text)
    lblStatus.Caption = Text
    Host.Log Text
End Sub
