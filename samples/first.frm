Begin Form frmFirst
   Caption         =   "First form"
   ClientHeight    =   1320
   ClientWidth     =   4440
   BorderStyle     =   3  'Fixed dialog
   Begin Label lblName
      Caption         =   "Your &name"
      Left            =   180
      Top             =   210
      Width           =   1005
      Height          =   255
   End
   Begin TextBox txtName
      Left            =   1260
      Top             =   165
      Width           =   2985
      Height          =   315
   End
   Begin Qvx.Button cmdGreet
      Caption         =   "&Greet"
      Default         =   -1  'True
      Left            =   2880
      Top             =   780
      Width           =   1365
      Height          =   375
   End
   Begin Label lblGreeting
      Left            =   180
      Top             =   855
      Width           =   2595
      Height          =   255
   End
End
