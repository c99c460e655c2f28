' A voucher that the buttons at the top post and then print. The script is buttons.vbs.
Begin Form frmVoucher
   Caption         =   "Voucher"
   ClientHeight    =   2430
   ClientWidth     =   6300
   Begin Qvx.RButton cmdPost
      Caption         =   "&Post"
      Left            =   180
      Top             =   180
      Width           =   1365
      Height          =   420
      TabIndex        =   0
      ToolTipText     =   "Puts the voucher into the books"
   End
   Begin Qvx.RButton cmdPrint
      Caption         =   "P&rint"
      Enabled         =   0   'False
      Left            =   1620
      Top             =   180
      Width           =   1365
      Height          =   420
      TabIndex        =   1
      ToolTipText     =   "Prints the voucher that was posted last"
   End
   Begin Qvx.RButton cmdVoid
      Caption         =   "&Void"
      ForeColor       =   &H000000A0&
      BackColor       =   &H00E0E0FF&
      BorderColor     =   &H000000A0&
      UpTopColor      =   &H00FFFFFF&
      UpBottomColor   =   &H00404080&
      DownTopColor    =   &H00404080&
      DownBottomColor =   &H00FFFFFF&
      Left            =   3060
      Top             =   180
      Width           =   1365
      Height          =   420
      TabIndex        =   2
   End
   Begin Qvx.Button cmdClose
      Caption         =   "C&lose"
      Behavior        =   1
      BorderColor     =   &H00808080&
      Left            =   4755
      Top             =   180
      Width           =   1365
      Height          =   420
      TabIndex        =   3
   End
   Begin Label lblText
      Caption         =   "&Text"
      Left            =   180
      Top             =   885
      Width           =   1005
      Height          =   255
      TabIndex        =   4
   End
   Begin TextBox txtText
      Left            =   1260
      Top             =   840
      Width           =   4860
      Height          =   315
      TabIndex        =   5
   End
   Begin Label lblAmount
      Caption         =   "&Amount"
      Left            =   180
      Top             =   1305
      Width           =   1005
      Height          =   255
      TabIndex        =   6
   End
   Begin TextBox txtAmount
      Left            =   1260
      Top             =   1260
      Width           =   1725
      Height          =   315
      TabIndex        =   7
   End
   Begin Label lblStatus
      Left            =   180
      Top             =   1935
      Width           =   5940
      Height          =   255
      ForeColor       =   &H00606060&
   End
   Begin Menu mnuVoucher
      Caption         =   "Vou&cher"
      Begin Menu mnuPost
         Caption         =   "&Post"
         Shortcut        =   {F9}
      End
   End
End
