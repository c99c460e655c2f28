Begin Form frmPurchase
   Caption         =   "Purchase order"
   ClientHeight    =   4560
   ClientWidth     =   7200
   Begin Label Label1
      Caption         =   "Customer"
      Left            =   120
      Top             =   120
      Width           =   1080
      Height          =   240
      TabIndex        =   0
   End
   Begin Qvx.TextEdit txtCustomer
      Left            =   1320
      Top             =   120
      Width           =   3480
      Height          =   285
      TabIndex        =   1
      Text            =   ""
      AllowEmpty      =   0   'False
   End
   Begin Qvx.ComboGrid grdLines
      Left            =   120
      Top             =   600
      Width           =   6960
      Height          =   3000
      TabIndex        =   2
      Rows            =   2
      Cols            =   4
      Appearance      =   1
      ScrollTrack     =   0   'False
      ColAlignment0   =   9
      ColWidth0       =   330
      ColumnsDataType =   ";Pieces-0;Price-1;"
      CheckValueFor   =   ";Pieces-2;"
      AutoRecordNumber=   -1  'True
      AutoAddNew      =   -1  'True
      FormatString    =   "No|<Article|>Pieces|>Price"
      TextArray0      =   "No"
      RequiredFields  =   ";Article;Pieces;"
   End
   Begin Qvx.Button cmdSave
      Left            =   5880
      Top             =   3840
      Width           =   1200
      Height          =   360
      TabIndex        =   3
      Caption         =   "&Save"
   End
   Begin Label lblTotal
      Caption         =   "Label2"
      Left            =   120
      Top             =   3960
      Width           =   4680
      Height          =   240
      TabIndex        =   4
   End
End
