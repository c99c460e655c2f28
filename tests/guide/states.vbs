' Fills the controls of which `./qvx docs --pictures` takes pictures.
Option Explicit

Sub Form_Load()
    FillGrid grdFocused
    FillGrid grdDisabled
    FillGrid grdRightToLeft
    FillGrid grdByRow
    FillGrid grdDeep
    grdRightToLeft.Grid.RightToLeft = True
    grdFocused.Lists(1).AddItem "Chair"
    grdFocused.Lists(1).AddItem "Desk"
    grdFocused.Lists(1).AddItem "Lamp"
    Host.Log "Ready"
End Sub

Sub FillGrid(grid)
    grid.ColWidth(1) = 1500
    grid.SetCell 1, 1, "Desk"
    grid.SetCell 1, 2, "12"
    grid.SetCell 1, 3, "240"
    grid.SetCell 2, 1, "Lamp"
    grid.SetCell 2, 2, "5"
    grid.SetCell 2, 3, "38.9"
    grid.Row = 1
    grid.Col = 2
End Sub
