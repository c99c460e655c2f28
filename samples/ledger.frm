' A journal of 100,000 bookings from a database. The script is ledger.vbs; ledger.sql makes the database.
Begin Form frmLedger
   Caption         =   "Ledger"
   ClientHeight    =   8400
   ClientWidth     =   14400
   Begin Label lblBookings
      Caption         =   "&Bookings"
      Left            =   180
      Top             =   120
      Width           =   3000
      Height          =   255
      TabIndex        =   0
   End
   Begin Qvx.ComboGrid grdBookings
      Left            =   180
      Top             =   420
      Width           =   14040
      Height          =   6840
      TabIndex        =   1
      Cols            =   8
      ' All the lists below name a column by its caption.
      FormatString    =   ">No|>Booking|^Date|<Account|<Text|>Debit|>Credit|^Checked"
      ColWidth0       =   720
      TextArray0      =   "No"
      BindFields      =   "[Booking]id,[Date]day,[Account]account,[Text]text,[Debit]debit,[Credit]credit,[Checked]checked"
      AutoRecordNumber=   -1  'True
      AutoAddNew      =   -1  'True
      ListColumns     =   ";Account;Checked;"
      UnChangableColumns=   ";Account;Checked;"
      ColumnsDataType =   ";Date-2;Debit-1;Credit-1;"
      DateFormat      =   "yyyy-mm-dd"
      ColumnsMaxLength=   ";Text-60;Debit-12;Credit-12;"
      InActiveColumns =   ";No;Booking;"
      NonFocusColumns =   ";No;Booking;"
      RequiredFields  =   ";Date;Account;"
      CheckValueFor   =   ";Debit-3;Credit-3;"
      ValidateColumns =   ";Debit;"
      CellToolTip     =   -1  'True
      AllowUserResizing=   1  'Columns
      ' What users know from other programs; all of it is off unless a form turns it on.
      ExtendedKeys    =   -1  'True
      KeepUnchanged   =   -1  'True
      KeepEditing     =   -1  'True
      ListArrows      =   1
      ListMatch       =   1
      ListClickCommits=   -1  'True
      MarkInvalid     =   -1  'True
      TrackRows       =   -1  'True
      MarkChanged     =   -1  'True
      SortOnHeader    =   -1  'True
      FindBar         =   -1  'True
      FilterRow       =   -1  'True
      ContextMenu     =   -1  'True
      FitColumns      =   -1  'True
      MoveColumns     =   -1  'True
      Footer          =   ";Text-1;Debit-0;Credit-0;"
      FrozenCols      =   1
      ColumnFormats   =   "[Debit]#,##0.00,[Credit]#,##0.00"
   End
   Begin Label lblStatus
      Left            =   180
      Top             =   7380
      Width           =   14040
      Height          =   255
      ForeColor       =   &H00606060&
   End
   Begin Qvx.Button cmdNew
      Caption         =   "&New"
      Left            =   180
      Top             =   7800
      Width           =   1290
      Height          =   405
      TabIndex        =   2
   End
   Begin Qvx.Button cmdReset
      Caption         =   "&Reset filter"
      Left            =   1575
      Top             =   7800
      Width           =   1440
      Height          =   405
      TabIndex        =   3
   End
   Begin Qvx.Button cmdCsv
      Caption         =   "Export &CSV"
      Left            =   5520
      Top             =   7800
      Width           =   1440
      Height          =   405
      TabIndex        =   4
   End
   Begin Qvx.Button cmdWorkbook
      Caption         =   "Export &workbook"
      Left            =   7065
      Top             =   7800
      Width           =   1740
      Height          =   405
      TabIndex        =   5
   End
   Begin Qvx.Button cmdPreview
      Caption         =   "Pre&view"
      Left            =   8910
      Top             =   7800
      Width           =   1215
      Height          =   405
      TabIndex        =   6
   End
   Begin Qvx.Button cmdPages
      Caption         =   "&Pages"
      Left            =   10230
      Top             =   7800
      Width           =   1215
      Height          =   405
      TabIndex        =   7
   End
   Begin Qvx.Button cmdSave
      Caption         =   "&Save"
      Left            =   11655
      Top             =   7800
      Width           =   1215
      Height          =   405
      TabIndex        =   8
   End
   Begin Qvx.Button cmdClose
      Caption         =   "C&lose"
      Left            =   13005
      Top             =   7800
      Width           =   1215
      Height          =   405
      TabIndex        =   9
   End
End
