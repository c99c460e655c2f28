' A notepad whose menus have pictures and whose page has a flat border. The script is menus.vbs.
Begin Form frmNotes
   Caption         =   "Notes"
   ClientHeight    =   3600
   ClientWidth     =   6000
   Begin Menu mnuFile
      Caption         =   "&File"
      Begin Menu mnuNew
         Caption         =   "&New"
         Shortcut        =   ^N
      End
      Begin Menu mnuOpen
         Caption         =   "&Open..."
         Shortcut        =   ^O
      End
      Begin Menu mnuSave
         Caption         =   "&Save"
         Enabled         =   0   'False
         Shortcut        =   ^S
      End
      Begin Menu mnuLine1
         Caption         =   "-"
      End
      Begin Menu mnuPrint
         Caption         =   "&Print"
         Enabled         =   0   'False
         Shortcut        =   ^P
      End
      Begin Menu mnuRecent
         Caption         =   "&Recent"
         Begin Menu mnuNote
            Caption         =   "&1 Shopping"
            Index           =   0
         End
         Begin Menu mnuNote
            Caption         =   "&2 Letters"
            Index           =   1
         End
      End
      Begin Menu mnuLine2
         Caption         =   "-"
      End
      Begin Menu mnuExit
         Caption         =   "E&xit"
         Shortcut        =   ^Q
      End
   End
   Begin Menu mnuEdit
      Caption         =   "&Edit"
      Begin Menu mnuCut
         Caption         =   "Cu&t"
      End
      Begin Menu mnuCopy
         Caption         =   "&Copy"
      End
      Begin Menu mnuPaste
         Caption         =   "&Paste"
      End
      Begin Menu mnuLine3
         Caption         =   "-"
      End
      Begin Menu mnuFind
         Caption         =   "&Find..."
         Shortcut        =   {F3}
      End
   End
   Begin Menu mnuView
      Caption         =   "&View"
      Begin Menu mnuTools
         Caption         =   "&Tools"
         Checked         =   -1  'True
      End
      Begin Menu mnuStatus
         Caption         =   "&Status line"
         Checked         =   -1  'True
      End
      Begin Menu mnuYellow
         Caption         =   "&Yellow paper"
      End
   End
   Begin Menu mnuHelp
      Caption         =   "&Help"
      Begin Menu mnuAbout
         Caption         =   "&About Notes"
         Shortcut        =   {F1}
      End
   End
   Begin ImageList imlMenus
      BeginProperty Images
         BeginProperty ListImage1
            Key             =   "mnuNew"
            Picture         =   "pictures/new.ico"
         EndProperty
         BeginProperty ListImage2
            Key             =   "mnuOpen"
            Picture         =   "pictures/open.ico"
         EndProperty
         BeginProperty ListImage3
            Key             =   "mnuSave"
            Picture         =   "pictures/save.ico"
         EndProperty
         BeginProperty ListImage4
            Key             =   "mnuPrint"
            Picture         =   "pictures/print.ico"
         EndProperty
         BeginProperty ListImage5
            Key             =   "mnuNote(0)"
            Picture         =   "pictures/new.ico"
         EndProperty
         BeginProperty ListImage6
            Key             =   "mnuCut"
            Picture         =   "pictures/cut.ico"
         EndProperty
         BeginProperty ListImage7
            Key             =   "mnuCopy"
            Picture         =   "pictures/copy.ico"
         EndProperty
         BeginProperty ListImage8
            Key             =   "mnuPaste"
            Picture         =   "pictures/paste.ico"
         EndProperty
         BeginProperty ListImage9
            Key             =   "mnuFind"
            Picture         =   "pictures/find.ico"
         EndProperty
         BeginProperty ListImage10
            Key             =   "mnuTools"
            Picture         =   "pictures/tools.bmp"
         EndProperty
         BeginProperty ListImage11
            Key             =   "mnuAbout"
            Picture         =   "pictures/help.ico"
         EndProperty
      EndProperty
   End
   Begin Qvx.CMenus mnsPictures
      Left            =   5580
      Top             =   3240
      Width           =   220
      Height          =   220
      ImageList       =   "imlMenus"
   End
   Begin Frame fraPage
      BackColor       =   &H00FFFFFF&
      BorderStyle     =   2
      Left            =   180
      Top             =   180
      Width           =   5640
      Height          =   2760
      Begin Qvx.FlatBorder fbdPage
         Left            =   5280
         Top             =   2400
         Width           =   180
         Height          =   225
         InnerBorder     =   &H00C08040&
         OuterBorder     =   &H00602000&
      End
      Begin Label lblTitle
         Caption         =   "Shopping"
         BackColor       =   &H00FFFFFF&
         Left            =   240
         Top             =   240
         Width           =   5000
         Height          =   300
      End
      Begin Label lblText
         Caption         =   "Ink, two reams of paper, stamps."
         BackColor       =   &H00FFFFFF&
         Left            =   240
         Top             =   660
         Width           =   5000
         Height          =   1500
      End
   End
   Begin Label lblStatus
      Caption         =   "Ready"
      Left            =   180
      Top             =   3150
      Width           =   5200
      Height          =   255
   End
End
