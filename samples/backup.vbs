' The script of backup.frm. The Backup control does the work; the script only closes the database before, and shows
' its contents afterwards.
Option Explicit

Const ClientCursor = 3     ' for records with a known number and position
Const MakeBackup = -1      ' Backup
Const MakeRestore = 0      ' Restore

Sub Form_Load()
    grdSales.ColWidth(1) = 1200
    grdSales.ColWidth(2) = 1800
    grdSales.ColWidth(3) = 1000
    ShowSales
End Sub

Sub cmdBackup_Click()
    bakShop.Show MakeBackup
    Host.Log "Copies: " & FilesIn("Q:\copies\")
    Say "Copies: " & FilesIn("Q:\copies\")
End Sub

Sub cmdRestore_Click()
    bakShop.Show MakeRestore
    ShowSales
    Host.Log "Databases: " & FilesIn(bakShop.DataPath)
End Sub

Sub cmdDamage_Click()
    Dim connection
    Set connection = OpenDatabase()
    connection.Execute "delete from sales"
    connection.Close
    ShowSales
End Sub

Sub cmdClose_Click()
    frmShop.Close
End Sub

' The database is opened for each use and then closed, because an open database cannot be replaced.
Function OpenDatabase()
    Set OpenDatabase = CreateObject("ADODB.Connection")
    OpenDatabase.Open bakShop.CnnString & bakShop.DataPath & bakShop.Database & bakShop.DataExtension
End Function

Sub ShowSales()
    Dim connection, records, count, row
    Set connection = OpenDatabase()
    Set records = CreateObject("ADODB.Recordset")
    records.CursorLocation = ClientCursor
    records.Open "select strftime('%Y-%m-%d', day), article, amount from sales order by id", connection
    count = records.RecordCount
    grdSales.Bind records
    records.Close
    connection.Close
    For row = 1 To count
        Host.Log "Shown: " & grdSales.TextMatrix(row, 1) & "|" & grdSales.TextMatrix(row, 2) & "|" & grdSales.TextMatrix(row, 3)
    Next
    Host.Log "Loaded " & count & " sales"
    Say count & " sales"
End Sub

' Returns the names of a folder's files.
Function FilesIn(Folder)
    Dim file
    For Each file In CreateObject("Scripting.FileSystemObject").GetFolder(Folder).Files
        FilesIn = FilesIn & " " & file.Name
    Next
End Function

Sub Say(Text)
    lblStatus.Caption = Text
End Sub
