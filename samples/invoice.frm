' A form to enter an invoice. The script is invoice.vbs.
Begin Form frmInvoice
   Caption         =   "Invoice"
   ClientHeight    =   6600
   ClientWidth     =   10680
   Begin Label lblCustomer
      Caption         =   "C&ustomer"
      Left            =   180
      Top             =   225
      Width           =   1005
      Height          =   255
      TabIndex        =   0
   End
   Begin TextBox txtCustomer
      Left            =   1260
      Top             =   180
      Width           =   4335
      Height          =   315
      TabIndex        =   1
      MaxLength       =   60
      ToolTipText     =   "Name of the customer as it stands on the invoice"
   End
   Begin Label lblNumber
      Caption         =   "&Number"
      Left            =   6060
      Top             =   225
      Width           =   1005
      Height          =   255
      TabIndex        =   2
   End
   Begin TextBox txtNumber
      Left            =   7140
      Top             =   180
      Width           =   1500
      Height          =   315
      TabIndex        =   3
      Text            =   "2024-0117"
   End
   Begin Label lblReference
      Caption         =   "&Reference"
      Left            =   180
      Top             =   645
      Width           =   1005
      Height          =   255
      TabIndex        =   4
   End
   Begin TextBox txtReference
      Left            =   1260
      Top             =   600
      Width           =   4335
      Height          =   315
      TabIndex        =   5
   End
   Begin Label lblDate
      Caption         =   "&Date"
      Left            =   6060
      Top             =   645
      Width           =   1005
      Height          =   255
      TabIndex        =   6
   End
   Begin TextBox txtDate
      Left            =   7140
      Top             =   600
      Width           =   1500
      Height          =   315
      TabIndex        =   7
   End
   Begin Qvx.ComboGrid grdLines
      Left            =   180
      Top             =   1110
      Width           =   10320
      Height          =   3480
      TabIndex        =   8
      Rows            =   9
      Cols            =   8
      ' All the lists below name a column by its caption.
      FormatString    =   ">No|<Article|<Description|>Qty|>Price|^Delivery|>Amount|Key"
      ColWidth0       =   480
      TextArray0      =   "No"
      AutoRecordNumber=   -1  'True
      AutoAddNew      =   -1  'True
      ListColumns     =   ";Article;"
      UnChangableColumns=   ";Article;"
      ColumnsDataType =   ";Qty-0;Price-1;Delivery-2;"
      DateFormat      =   "mmm/yyyy"
      InActiveColumns =   ";No;Amount;"
      NonFocusColumns =   ";No;Amount;"
      InVisibleColumns=   ";Key;"
      RequiredFields  =   ";Article;Qty;"
      CheckValueFor   =   ";Qty-2;Price-3;"
      CellToolTip     =   -1  'True
      AllowUserResizing=   1  'Columns
   End
   Begin Label lblStatus
      Left            =   180
      Top             =   4725
      Width           =   6300
      Height          =   255
      ForeColor       =   &H00606060&
   End
   Begin Label lblNetCaption
      Caption         =   "Net"
      Left            =   7140
      Top             =   4725
      Width           =   1260
      Height          =   255
   End
   Begin Label lblNet
      Caption         =   "0.00"
      Alignment       =   1  'Right
      Left            =   8460
      Top             =   4725
      Width           =   2040
      Height          =   255
   End
   Begin Label lblTaxCaption
      Caption         =   "Tax 19 %"
      Left            =   7140
      Top             =   5025
      Width           =   1260
      Height          =   255
   End
   Begin Label lblTax
      Caption         =   "0.00"
      Alignment       =   1  'Right
      Left            =   8460
      Top             =   5025
      Width           =   2040
      Height          =   255
   End
   Begin Label lblTotalCaption
      Caption         =   "Total"
      Left            =   7140
      Top             =   5370
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
      Top             =   5370
      Width           =   2040
      Height          =   255
      BeginProperty Font
         Weight          =   700
      EndProperty
   End
   Begin Qvx.Button cmdCheck
      Caption         =   "&Check"
      Left            =   6180
      Top             =   5985
      Width           =   1365
      Height          =   405
      TabIndex        =   9
   End
   Begin Qvx.Button cmdSave
      Caption         =   "&Save"
      Left            =   7650
      Top             =   5985
      Width           =   1365
      Height          =   405
      TabIndex        =   10
   End
   Begin Qvx.Button cmdClose
      Caption         =   "C&lose"
      Left            =   9120
      Top             =   5985
      Width           =   1365
      Height          =   405
      TabIndex        =   11
   End
   Begin Menu mnuFile
      Caption         =   "&File"
      Begin Menu mnuSave
         Caption         =   "&Save"
         Shortcut        =   ^S
      End
      Begin Menu mnuLine1
         Caption         =   "-"
      End
      Begin Menu mnuClose
         Caption         =   "&Close"
      End
   End
   Begin Menu mnuLines
      Caption         =   "&Lines"
      Begin Menu mnuAdd
         Caption         =   "&Add"
         Shortcut        =   ^{INSERT}
      End
      Begin Menu mnuRemove
         Caption         =   "&Remove"
         Shortcut        =   ^{DEL}
      End
   End
   Begin Menu mnuHelp
      Caption         =   "&Help"
      Begin Menu mnuAbout
         Caption         =   "&About ComboGrid..."
      End
   End
End
