' Goods received: text boxes that check what is typed. The script is receipt.vbs.
Begin Form frmReceipt
   Caption         =   "Goods received"
   ClientHeight    =   3390
   ClientWidth     =   5400
   Begin Label lblArticle
      Caption         =   "&Article code"
      Left            =   240
      Top             =   285
      Width           =   1500
      Height          =   255
      TabIndex        =   0
   End
   Begin Qvx.TextEdit txtArticle
      Left            =   1860
      Top             =   240
      Width           =   2100
      Height          =   285
      TabIndex        =   1
      Text            =   ""
      MaxLength       =   8
      AllowEmpty      =   0   'False
      UseEnterKey     =   -1  'True
      ToolTipText     =   "At most eight characters, as on the label"
   End
   Begin Label lblQuantity
      Caption         =   "&Quantity"
      Left            =   240
      Top             =   765
      Width           =   1500
      Height          =   255
      TabIndex        =   2
   End
   Begin Qvx.TextEdit txtQuantity
      Left            =   1860
      Top             =   720
      Width           =   2100
      Height          =   285
      TabIndex        =   3
      Alignment       =   1  'Right
      Text            =   "1"
      DataType        =   1  'msDigits
      UseEnterKey     =   -1  'True
      MinValue        =   0
      MaxValue        =   9999
      Boundaries      =   -1  'True
   End
   Begin Label lblPrice
      Caption         =   "Unit &price"
      Left            =   240
      Top             =   1245
      Width           =   1500
      Height          =   255
      TabIndex        =   4
   End
   Begin Qvx.TextEdit txtPrice
      Left            =   1860
      Top             =   1200
      Width           =   2100
      Height          =   285
      TabIndex        =   5
      Alignment       =   1  'Right
      Text            =   "0.00"
      DataType        =   2  'msNumerics
      AllowEmpty      =   0   'False
      UseEnterKey     =   -1  'True
      ToolTipText     =   "Two decimals"
   End
   Begin Label lblDiscount
      Caption         =   "&Discount %"
      Left            =   240
      Top             =   1725
      Width           =   1500
      Height          =   255
      TabIndex        =   6
   End
   Begin Qvx.TextEdit txtDiscount
      Left            =   1860
      Top             =   1680
      Width           =   2100
      Height          =   285
      TabIndex        =   7
      Alignment       =   1  'Right
      Text            =   "0"
      DataType        =   2  'msNumerics
      DecimalPlaces   =   0
      UseEnterKey     =   -1  'True
      MinValue        =   0
      MaxValue        =   100
      Boundaries      =   -1  'True
   End
   Begin Label lblAmountCaption
      Caption         =   "Amount"
      Left            =   240
      Top             =   2190
      Width           =   1500
      Height          =   255
   End
   Begin Label lblAmount
      Caption         =   "0.00"
      Alignment       =   1  'Right
      Left            =   1860
      Top             =   2190
      Width           =   2100
      Height          =   255
   End
   Begin Qvx.RButton cmdPost
      Caption         =   "P&ost"
      Left            =   1860
      Top             =   2700
      Width           =   1260
      Height          =   420
      TabIndex        =   8
   End
   Begin Qvx.RButton cmdPrint
      Caption         =   "Pr&int"
      Left            =   3240
      Top             =   2700
      Width           =   1260
      Height          =   420
      TabIndex        =   9
   End
End
