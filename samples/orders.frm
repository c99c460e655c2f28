' Orders and their lines from a database. The script is orders.vbs; orders.sql makes the database.
Begin Form frmOrders
   Caption         =   "Orders"
   ClientHeight    =   7200
   ClientWidth     =   10680
   Begin Label lblOrders
      Caption         =   "&Orders"
      Left            =   180
      Top             =   120
      Width           =   3000
      Height          =   255
      TabIndex        =   0
   End
   Begin Qvx.ComboGrid grdOrders
      Left            =   180
      Top             =   420
      Width           =   10320
      Height          =   2100
      TabIndex        =   1
      Cols            =   5
      ' All the lists below name a column by its caption.
      FormatString    =   ">No|>Order|<Customer|^Ordered|<Remark"
      ColWidth0       =   480
      TextArray0      =   "No"
      AutoRecordNumber=   -1  'True
      ColumnsDataType =   ";Ordered-2;"
      DateFormat      =   "yyyy-mm-dd"
      InActiveColumns =   ";No;Order;"
      NonFocusColumns =   ";No;Order;"
      RequiredFields  =   ";Customer;Ordered;"
      AllowUserResizing=   1  'Columns
   End
   Begin Label lblLines
      Caption         =   "&Lines"
      Left            =   180
      Top             =   2640
      Width           =   6000
      Height          =   255
      TabIndex        =   2
   End
   Begin Qvx.ComboGrid grdLines
      Left            =   180
      Top             =   2940
      Width           =   10320
      Height          =   2760
      TabIndex        =   3
      Cols            =   5
      FormatString    =   ">No|<Article|>Qty|>Price|>Amount"
      ColWidth0       =   480
      TextArray0      =   "No"
      AutoRecordNumber=   -1  'True
      AutoAddNew      =   -1  'True
      ListColumns     =   ";Article;"
      UnChangableColumns=   ";Article;"
      ColumnsDataType =   ";Qty-0;Price-1;Amount-1;"
      InActiveColumns =   ";No;Amount;"
      NonFocusColumns =   ";No;Amount;"
      RequiredFields  =   ";Article;Qty;Price;"
      CheckValueFor   =   ";Qty-2;Price-3;"
      AllowUserResizing=   1  'Columns
   End
   Begin Label lblStatus
      Left            =   180
      Top             =   5880
      Width           =   6600
      Height          =   255
      ForeColor       =   &H00606060&
   End
   Begin Label lblTotalCaption
      Caption         =   "Total"
      Left            =   7140
      Top             =   5880
      Width           =   1260
      Height          =   255
      BeginProperty Font
         Weight          =   700
      EndProperty
   End
   Begin Label lblTotal
      Caption         =   "0.00"
      Alignment       =   1  'Right
      Left            =   8460
      Top             =   5880
      Width           =   2040
      Height          =   255
      BeginProperty Font
         Weight          =   700
      EndProperty
   End
   Begin Qvx.Button cmdDelete
      Caption         =   "&Delete line"
      Left            =   180
      Top             =   6555
      Width           =   1485
      Height          =   405
      TabIndex        =   4
   End
   Begin Qvx.Button cmdTotal
      Caption         =   "&Total"
      Left            =   4710
      Top             =   6555
      Width           =   1365
      Height          =   405
      TabIndex        =   5
   End
   Begin Qvx.Button cmdCheck
      Caption         =   "&Check"
      Left            =   6180
      Top             =   6555
      Width           =   1365
      Height          =   405
      TabIndex        =   6
   End
   Begin Qvx.Button cmdSave
      Caption         =   "&Save"
      Left            =   7650
      Top             =   6555
      Width           =   1365
      Height          =   405
      TabIndex        =   7
   End
   Begin Qvx.Button cmdClose
      Caption         =   "Clos&e"
      Left            =   9120
      Top             =   6555
      Width           =   1365
      Height          =   405
      TabIndex        =   8
   End
End
