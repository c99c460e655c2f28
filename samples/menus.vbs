' The script of menus.frm.
Option Explicit

Sub Form_Load()
    Host.Log "Loaded"
End Sub

Sub mnuNew_Click()
    Turn "Untitled", ""
    mnuSave.Enabled = True
    mnuPrint.Enabled = True
    Say "A new note"
End Sub

Sub mnuOpen_Click()
    mnuNote_Click 0
End Sub

Sub mnuSave_Click()
    mnuSave.Enabled = False
    Say "Saved " & lblTitle.Caption
End Sub

Sub mnuPrint_Click()
    Say "Printed " & lblTitle.Caption
End Sub

Sub mnuNote_Click(Index)
    If Index = 0 Then
        Turn "Shopping", "Ink, two reams of paper, stamps."
    Else
        Turn "Letters", "The landlord, the printer, Aunt Mary."
    End If
    mnuPrint.Enabled = True
    Say "Opened " & lblTitle.Caption
End Sub

Sub mnuExit_Click()
    Form.Close
End Sub

Sub mnuCut_Click()
    lblText.Caption = ""
    mnuSave.Enabled = True
    Say "Cut"
End Sub

Sub mnuCopy_Click()
    Say "Copied"
End Sub

Sub mnuPaste_Click()
    lblText.Caption = lblText.Caption & " String."
    mnuSave.Enabled = True
    Say "Pasted"
End Sub

Sub mnuFind_Click()
    Say "Nothing found"
End Sub

' The pictures are shown only while Tools is checked: a form may change its image list while it runs.
Sub mnuTools_Click()
    mnuTools.Checked = Not mnuTools.Checked
    If mnuTools.Checked Then mnsPictures.ImageList = "imlMenus" Else mnsPictures.ImageList = ""
    Say "Tools " & mnuTools.Checked
End Sub

Sub mnuStatus_Click()
    mnuStatus.Checked = Not mnuStatus.Checked
    lblStatus.Visible = mnuStatus.Checked
    Say "Status " & mnuStatus.Checked
End Sub

Sub mnuYellow_Click()
    mnuYellow.Checked = Not mnuYellow.Checked
    Dim paper
    If mnuYellow.Checked Then paper = RGB(255, 255, 208) Else paper = RGB(255, 255, 255)
    fraPage.BackColor = paper
    lblTitle.BackColor = paper
    lblText.BackColor = paper
    If mnuYellow.Checked Then fbdPage.InnerBorder = RGB(224, 176, 32) Else fbdPage.InnerBorder = RGB(64, 128, 192)
    Say "Yellow " & mnuYellow.Checked
End Sub

Sub mnuAbout_Click()
    fbdPage.ShowAbout
End Sub

Sub Turn(Title, Text)
    lblTitle.Caption = Title
    lblText.Caption = Text
End Sub

Sub Say(What)
    lblStatus.Caption = What
    Host.Log What
End Sub
