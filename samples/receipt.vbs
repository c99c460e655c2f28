' The script of receipt.frm.
'
' The boxes refuse typed letters, second decimal points and values out of range; text from other sources is corrected
' when a box is left. The script only computes the amount.
Option Explicit

Sub Form_Load()
    Host.Log "Ready"
End Sub

Sub txtArticle_Change()
    Host.Log "Article [" & txtArticle.Text & "]"
End Sub

' A handler may change a key before the box gets it: article codes have capital letters.
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

Sub ShowAmount(What)
    lblAmount.Caption = Money(Number(txtQuantity.Text) * Number(txtPrice.Text) * (100 - Number(txtDiscount.Text)) / 100)
    Host.Log What & " amount " & lblAmount.Caption
End Sub

' Reads a text with "." as the decimal point, in every country. What is not a number, or is incomplete, counts as 0, and
' one that is longer than any sensible number as a very large one: neither needs an error.
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

' Formats whole cents, so that neither binary fractions nor a country's decimal sign change the result.
Function Money(Value)
    Dim cents, sign
    sign = ""
    If Value < 0 Then sign = "-"
    cents = Int(Abs(Value) * 100 + 0.5)
    Money = sign & Int(cents / 100) & "." & Right("0" & (cents - Int(cents / 100) * 100), 2)
End Function
