' Sales in a database that the user can back up and restore. The script is backup.vbs; backup.sql makes the database.
Begin Form frmShop
   Caption         =   "Shop book"
   ClientHeight    =   4500
   ClientWidth     =   6900
   BorderStyle     =   1  'Fixed
   Begin Label lblSales
      Caption         =   "&Sales"
      Left            =   180
      Top             =   120
      Width           =   3000
      Height          =   255
      TabIndex        =   0
   End
   Begin Qvx.ComboGrid grdSales
      Left            =   180
      Top             =   420
      Width           =   4800
      Height          =   3480
      TabIndex        =   1
      Cols            =   4
      FormatString    =   ">No|^Day|<Article|>Amount"
      ColWidth0       =   480
      TextArray0      =   "No"
      AutoRecordNumber=   -1  'True
      InActiveColumns =   ";No;Day;Article;Amount;"
   End
   Begin Qvx.Button cmdBackup
      Caption         =   "&Back up..."
      Left            =   5160
      Top             =   420
      Width           =   1560
      Height          =   375
      TabIndex        =   2
   End
   Begin Qvx.Button cmdRestore
      Caption         =   "&Restore..."
      Left            =   5160
      Top             =   900
      Width           =   1560
      Height          =   375
      TabIndex        =   3
   End
   Begin Qvx.Button cmdDamage
      Caption         =   "&Lose all sales"
      Left            =   5160
      Top             =   1620
      Width           =   1560
      Height          =   375
      TabIndex        =   4
      ToolTipText     =   "Deletes every sale from the database, to have something to restore"
   End
   Begin Qvx.Button cmdClose
      Caption         =   "&Close"
      Left            =   5160
      Top             =   3525
      Width           =   1560
      Height          =   375
      TabIndex        =   5
   End
   Begin Label lblStatus
      Caption         =   ""
      Left            =   180
      Top             =   4080
      Width           =   6540
      Height          =   255
      TabIndex        =   6
   End
   ' Folders end with a backslash; the path of a database file is appended to the connection string.
   Begin Qvx.Backup bakShop
      Left            =   6300
      Top             =   2700
      CnnString       =   "Driver={SQLite3 ODBC Driver};NoCreat=1;Database="
      Database        =   "Shop"
      TempPath        =   "Q:\temp\"
      DataPath        =   "Q:\data\"
      ZipPath         =   "Q:\zip\"
      BackupExtension =   ".qvx"
      DataExtension   =   ".db"
      CheckSecurity   =   -1  'True
   End
End
