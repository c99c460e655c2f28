' The script behind receipt.frm.
'
' The boxes keep letters, second points and values out of range from being typed; what comes in by other ways is brought
' into its form when a box is left. The script only adds up.
Option Explicit

Sub Form_Load()
    Host.Log "Ready"
End Sub

Sub txtArticle_Change()
    Host.Log "Article [" & txtArticle.Text & "]"
End Sub

' The handlers may change a key before the box gets it: articles have capital letters.
Sub txtArticle_KeyPress(KeyAscii)
    If KeyAscii >= 97 And KeyAscii <= 122 Then KeyAscii = KeyAscii - 32
End Sub

Sub txtQuantity_Change()
    ShowAmount "Quantity [" & txtQuantity.Text & "]"
End Sub

Sub txtPrice_Change()
    ShowAmount "Price [" & txtPrice.Text & "]"
End Sub

Sub txtDiscount_Change()
    ShowAmount "Discount [" & txtDiscount.Text & "]"
End Sub

Sub cmdPost_Click()
    Host.Log "Posted " & txtQuantity.Text & " of " & txtArticle.Text & " for " & lblAmount.Caption
End Sub

Sub cmdPrint_Click()
    Host.Log "Printed"
End Sub

' Cents are whole numbers, so that nothing is lost to binary fractions or to a country's decimal sign.
Sub ShowAmount(What)
    Dim Cents, Text
    Cents = CLng(Number(txtQuantity.Text) * Number(txtPrice.Text) * (100 - Number(txtDiscount.Text)))
    Text = Right("00" & Abs(Cents), 2)
    lblAmount.Caption = Cents \ 100 & "." & Text
    Host.Log What & " amount " & lblAmount.Caption
End Sub

' A text with "." as the decimal point, whatever the country; what is half typed counts as far as it goes.
Function Number(Text)
    Dim Point, Whole, Fraction
    Number = 0
    Point = InStr(Text, ".")
    If Point = 0 Then
        If IsNumeric(Text) Then Number = CDbl(Text)
        Exit Function
    End If
    Whole = Left(Text, Point - 1)
    Fraction = Mid(Text, Point + 1)
    If IsNumeric(Whole) Then Number = CDbl(Whole)
    If IsNumeric(Fraction) Then Number = Number + CDbl(Fraction) / 10 ^ Len(Fraction)
End Function
