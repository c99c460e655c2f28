"""Runs everything that the reference pages say about members on the real controls, and keeps what they answer.

    docs_run.py script FOLDER    writes the form and the script of that run
    docs_run.py observed LOG     prints docs/observed.txt from the log of the run, and fails where an example failed
"""
import re
import sys
from pathlib import Path

from docs_members import Facts, Library, handler

# Controls whose loaded state is not the one that they are created in, as they are in the form of the run.
LOADED = {'ComboGrid': 'grdLoaded'}
FORM = '''Begin Form frmMembers
   Caption         =   "Members"
   ClientWidth     =   9000
   ClientHeight    =   6000
   Begin Qvx.ComboGrid grdItems
      Left            =   120
      Top             =   120
      Width           =   6000
      Height          =   3000
      FormatString    =   "No|<Article|>Pieces|>Price|Key"
      ListColumns     =   ";Article;"
   End
   Begin Qvx.ComboGrid grdLoaded
      Left            =   6300
      Top             =   1500
   End
   Begin Qvx.Button cmdSave
      Top             =   3300
      Width           =   1200
      Height          =   375
   End
   Begin Qvx.Button cmdUndo
      Top             =   3900
   End
   Begin Qvx.Button cmdRedo
      Top             =   3900
   End
   Begin Qvx.RButton cmdPost
      Left            =   1500
      Top             =   3300
      Width           =   1200
      Height          =   375
   End
   Begin Qvx.TextEdit txtPrice
      Left            =   3000
      Top             =   3300
      Width           =   1200
   End
   Begin Qvx.Backup bkpShop
   End
   Begin Frame fraPage
      Left            =   6300
      Width           =   1200
      Height          =   1200
      BorderStyle     =   2
      Begin Qvx.FlatBorder fbdPage
      End
   End
   Begin ImageList imlMenus
   End
   Begin Qvx.CMenus mnsPictures
   End
End
'''

COMMON = '''
' The grid as every example finds it.
Sub PrepareGrid(grid)
    Dim inner
    Set inner = grdItems.Grid
    inner.SelectionMode = 0 : inner.FillStyle = 0 : inner.MergeCells = 0
    inner.FixedRows = 0 : inner.FixedCols = 0
    inner.Rows = 5 : inner.Cols = 5
    inner.FixedRows = 1 : inner.FixedCols = 1
    inner.Clear
    grdItems.FormatString = "No|<Article|>Pieces|>Price|Key"
    inner.TextMatrix(1, 1) = "Desk" : inner.TextMatrix(1, 2) = "1" : inner.TextMatrix(1, 3) = "2.50"
    inner.TextMatrix(2, 1) = "Lamp" : inner.TextMatrix(2, 2) = "2" : inner.TextMatrix(2, 3) = "2.50"
    grdItems.RefreshColIndex
    inner.Row = 1 : inner.Col = 1
End Sub

Sub PrepareList(list)
    list.Clear
    list.AddItem "Desk"
    list.AddItem "Chair"
End Sub

Sub PrepareBox(box)
    txtPrice.DecimalPlaces = 2
    txtPrice.DataType = 0
    txtPrice.Text = "12"
End Sub

Function Shown(value)
    Select Case VarType(value)
        Case vbString: Shown = """" & Replace(Replace(value, vbCr, "\\r"), vbLf, "\\n") & """"
        Case vbBoolean: If value Then Shown = "True" Else Shown = "False"
        Case Else: Shown = CStr(value)
    End Select
End Function

Sub ShowError(name)
    If Err.Number = 0 Then
        Host.Log name & " none"
    Else
        Host.Log name & " " & (Err.Number And 65535) & " " & Err.Description
    End If
End Sub
'''


def default_expression(owner, facts, library):
    new = facts.heads[owner]['new']
    if new == 'ComboGrid.Grid':
        return 'newComboGrid.Grid'
    return new or (f'new{owner}' if owner in library.creatable else '')


class Script:
    """The script of the run: procedures for each try, and the calls of them."""

    def __init__(self, library, facts):
        self.library, self.facts = library, facts
        self.procedures, self.defaults, self.calls = [], [], []
        for owner, members in library.classes.items():
            for member in members:
                self.add(owner, member)

    def procedure(self, lines):
        name = f'Try{len(self.procedures)}'
        self.procedures.append('\n'.join([f'Sub {name}()', *(f'    {line}' for line in lines), 'End Sub']))
        return name

    def call(self, name, after):
        self.calls += ['Err.Clear', name, after]

    def add_default(self, title, mark, value):
        self.defaults.append(self.procedure([f'Host.Log "{title} {mark} " & Shown({value})']))

    def add(self, owner, member):
        holder = self.facts.object_of(owner)
        before = [line.replace('@', holder) for line in self.facts.heads[owner]['before']]
        title = f'{owner}.{member.name}'
        if member.kind == 'property' and 'read' in member.access and member.name not in ('hWnd', 'hDC'):
            at = f'({", ".join("0" for _ in member.arguments)})' if member.arguments else ''
            if member.type not in ('Object', 'Picture', 'Variant', 'Font'):
                value = default_expression(owner, self.facts, self.library)
                self.add_default(title, '=', f'{value}.{member.name}{at}')
                if owner in LOADED and 'write' in member.access:
                    self.add_default(title, '~', f'{LOADED[owner]}.{member.name}{at}')
        for number, error in enumerate(member.errors):
            if error['statement']:
                name = self.procedure(before + error['statement'].replace('@', holder).split(' : '))
                self.call(name, f'ShowError "{title} !{number}"')
        if member.kind == 'event':
            self.add_handler(owner, member)
        elif all(run for _, run in member.example):
            name = self.procedure(before + [line.replace('@', holder) for line, _ in member.example])
            self.call(name, f'If Err.Number <> 0 Then ShowError "FAILED: {title}"')

    def add_handler(self, owner, member):
        lines = handler(member, self.facts)
        # The same event of the inner grid would be a second procedure of that name.
        lines[0] = lines[0].replace('Sub ', f'Sub {owner}', 1)
        self.procedures.append('\n'.join(lines))
        values = ', '.join('1' if 'String' not in a and 'Variant' not in a else '"1"' for a in member.arguments)
        name = re.match(r'Sub (\w+)', lines[0])[1]
        self.call(f'{name} {values}'.strip(), f'If Err.Number <> 0 Then ShowError "FAILED: {owner}.{member.name}"')

    def text(self):
        constants = [f'Const {name} = {number}' for _, values in self.library.enums.values() for name, number in values]
        new = [f'Dim new{name}' for name in self.library.creatable]
        made = [f'Set new{name} = CreateObject("Qvx.{name}")' for name in self.library.creatable]
        # One procedure cannot call all of them, since its code is limited. The three lines of a call stay together: a
        # new procedure begins without an error.
        parts = [lines[i:i + 300] for lines in (self.defaults, self.calls) for i in range(0, len(lines), 300)]
        runs = ['\n'.join([f'Sub Run{i}()', '    On Error Resume Next', *(f'    {line}' for line in part if line),
                           'End Sub']) for i, part in enumerate(parts)]
        load = ['Sub Form_Load()', '    frmMembers.Show', *(f'    {line}' for line in made),
                *(f'    Run{i}' for i in range(len(parts))), '    Host.Log "END"', '    Host.Quit', 'End Sub']
        return '\n'.join([*constants, *new, COMMON, *self.procedures, *runs, '\n'.join(load)]) + '\n'


def write_script(folder):
    library = Library()
    facts = Facts(library)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / 'members.frm').write_text(FORM, encoding='utf-8', newline='\r\n')
    (folder / 'members.vbs').write_text(Script(library, facts).text(), encoding='utf-8', newline='\r\n')


OBSERVED_HEAD = """# Written by `./qvx docs --observe`, a run of all examples of members.txt: the defaults of new controls (=), the values
# in a form that has none for them (~), and the errors' numbers and texts in the order of members.txt (!); the errors
# that are tried without being listed come last."""


def print_observed(log):
    lines = log.read_text(encoding='utf-8', errors='replace').splitlines()
    print(OBSERVED_HEAD)
    for line in lines:
        if re.match(r'\w+\.\w+ ([=~]|!\d+) ', line):
            print(line)
    failed = [line for line in lines if line.startswith('FAILED')]
    if failed or 'END' not in lines:
        print('\n'.join(failed[:20] or ['The run has not ended.']), file=sys.stderr)
        sys.exit(1)


def main():
    match sys.argv[1:]:
        case ['script', folder]:
            write_script(Path(folder))
        case ['observed', log]:
            print_observed(Path(log))
        case _:
            sys.exit(__doc__)


if __name__ == '__main__':
    main()
