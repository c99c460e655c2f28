Begin Form frmStates
   Caption         =   "States"
   ClientWidth     =   11400
   ClientHeight    =   10200
   Begin Qvx.Button cmdFocused
      Left            =   150
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   0
      Caption         =   "&Save"
   End
   Begin Qvx.Button cmdNormal
      Left            =   1800
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   10
      Caption         =   "&Save"
   End
   Begin Qvx.Button cmdDisabled
      Left            =   3450
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   11
      Caption         =   "&Save"
      Enabled         =   0   'False
   End
   Begin Qvx.Button cmdDropDown
      Left            =   5100
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   12
      Caption         =   "&Save"
      DropDown        =   -1  'True
   End
   Begin Qvx.Button cmdSimple
      Left            =   6750
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   13
      Caption         =   "&Save"
      Behavior        =   0
   End
   Begin Qvx.Button cmdHeavy
      Left            =   8400
      Top             =   150
      Width           =   1500
      Height          =   420
      TabIndex        =   14
      Caption         =   "&Save"
      Behavior        =   1
   End
   Begin Qvx.RButton cmdRoundFocused
      Left            =   150
      Top             =   780
      Width           =   1500
      Height          =   420
      TabIndex        =   1
      Caption         =   "&Post"
   End
   Begin Qvx.RButton cmdRound
      Left            =   1800
      Top             =   780
      Width           =   1500
      Height          =   420
      TabIndex        =   20
      Caption         =   "&Post"
   End
   Begin Qvx.RButton cmdRoundDisabled
      Left            =   3450
      Top             =   780
      Width           =   1500
      Height          =   420
      TabIndex        =   21
      Caption         =   "&Post"
      Enabled         =   0   'False
   End
   Begin Qvx.TextEdit txtFocused
      Left            =   150
      Top             =   1440
      Width           =   2250
      Height          =   285
      TabIndex        =   2
      Text            =   "12.50"
      DataType        =   2
   End
   Begin Qvx.TextEdit txtNormal
      Left            =   2550
      Top             =   1440
      Width           =   2250
      Height          =   285
      TabIndex        =   30
      Text            =   "12.50"
      DataType        =   2
   End
   Begin Qvx.TextEdit txtDisabled
      Left            =   4950
      Top             =   1440
      Width           =   2250
      Height          =   285
      TabIndex        =   31
      Text            =   "12.50"
      Enabled         =   0   'False
   End
   Begin Qvx.TextEdit txtLocked
      Left            =   7350
      Top             =   1440
      Width           =   2250
      Height          =   285
      TabIndex        =   32
      Text            =   "12.50"
      Locked          =   -1  'True
   End
   Begin Qvx.TextEdit txtRight
      Left            =   150
      Top             =   1890
      Width           =   2250
      Height          =   285
      TabIndex        =   33
      Text            =   "12.50"
      Alignment       =   1
   End
   Begin Qvx.TextEdit txtFlat
      Left            =   2550
      Top             =   1890
      Width           =   2250
      Height          =   285
      TabIndex        =   34
      Text            =   "12.50"
      Appearance      =   0
   End
   Begin Qvx.ComboGrid grdFocused
      Left            =   150
      Top             =   2400
      Width           =   4500
      Height          =   1650
      TabIndex        =   3
      Rows            =   4
      Cols            =   4
      FormatString    =   "No|<Article|>Pieces|>Price"
      ColWidth0       =   480
      TextArray0      =   "No"
      ColumnsDataType =   ";Pieces-0;Price-1;"
      AutoRecordNumber =   -1  'True
      ListColumns     =   ";Article;"
   End
   Begin Qvx.ComboGrid grdDisabled
      Left            =   150
      Top             =   4200
      Width           =   4500
      Height          =   1650
      TabIndex        =   41
      Rows            =   4
      Cols            =   4
      FormatString    =   "No|<Article|>Pieces|>Price"
      ColWidth0       =   480
      TextArray0      =   "No"
      ColumnsDataType =   ";Pieces-0;Price-1;"
      AutoRecordNumber =   -1  'True
      ListColumns     =   ";Article;"
      Enabled         =   0   'False
   End
   Begin Qvx.ComboGrid grdRightToLeft
      Left            =   4800
      Top             =   4200
      Width           =   4500
      Height          =   1650
      TabIndex        =   42
      Rows            =   4
      Cols            =   4
      FormatString    =   "No|<Article|>Pieces|>Price"
      ColWidth0       =   480
      TextArray0      =   "No"
      ColumnsDataType =   ";Pieces-0;Price-1;"
      AutoRecordNumber =   -1  'True
      ListColumns     =   ";Article;"
      HighLight       =   2
   End
   Begin Qvx.ComboGrid grdByRow
      Left            =   150
      Top             =   6000
      Width           =   4500
      Height          =   1650
      TabIndex        =   43
      Rows            =   4
      Cols            =   4
      FormatString    =   "No|<Article|>Pieces|>Price"
      ColWidth0       =   480
      TextArray0      =   "No"
      ColumnsDataType =   ";Pieces-0;Price-1;"
      AutoRecordNumber =   -1  'True
      ListColumns     =   ";Article;"
      SelectionMode   =   1
   End
   Begin Qvx.ComboGrid grdDeep
      Left            =   4800
      Top             =   6000
      Width           =   4500
      Height          =   1650
      TabIndex        =   44
      Rows            =   4
      Cols            =   4
      FormatString    =   "No|<Article|>Pieces|>Price"
      ColWidth0       =   480
      TextArray0      =   "No"
      ColumnsDataType =   ";Pieces-0;Price-1;"
      AutoRecordNumber =   -1  'True
      ListColumns     =   ";Article;"
      Appearance      =   1
      BorderStyle     =   1
      HighLight       =   2
   End
   Begin Frame fraDefault
      Left            =   150
      Top             =   7950
      Width           =   2250
      Height          =   1050
      BorderStyle     =   2
      Begin Qvx.FlatBorder fbdDefault
      End
   End
   Begin Frame fraColours
      Left            =   2700
      Top             =   7950
      Width           =   2250
      Height          =   1050
      BorderStyle     =   2
      Begin Qvx.FlatBorder fbdColours
         InnerBorder     =   &H00C08040&
         OuterBorder     =   &H00602000&
      End
   End
End
