"""What the reference pages say about each member of the library.

Names, types and help strings come from the interface description; units, examples and the circumstances of errors from
docs/members.txt, which describes its own form; defaults and the errors' numbers and texts from docs/observed.txt, which
a run of every example on the real controls has written.

    docs_members.py script FOLDER    writes the form and the script of that run
    docs_members.py observed LOG     prints docs/observed.txt from the log of the run, and fails where an example failed
"""
import re
import sys
from pathlib import Path

import reference

ROOT = Path(__file__).resolve().parent.parent
# Controls whose loaded state is not the one that they are created in, as they are in the form of the run.
LOADED = {'ComboGrid': 'grdLoaded'}


class Member:
    """A member of a class, with the facts about it."""

    def __init__(self, owner, kind, name, arguments, declared, access, text):
        self.owner, self.kind, self.name, self.arguments = owner, kind, name, arguments
        self.type, self.access, self.help = declared, access, text
        self.notes, self.example, self.errors = [], [], []
        self.default = self.loaded = ''  # of a new control; of one from a form without a value, where that differs

    def facts(self, entry):
        self.notes, self.example, self.errors = entry['notes'], entry['example'], entry['errors']


class Library:
    """The classes with their members, and the enumerations."""

    def __init__(self):
        text, self.blocks = reference.read_blocks(ROOT / 'typelib/Qvx.idl')
        self.enums = {found['name']: (reference.help_string(found['attributes']),
                                      re.findall(r'(\w+)\s*=\s*(-?\w+)', found['values']))
                      for found in reference.ENUM.finditer(text)}
        self.classes, self.creatable, shown = {}, [], set()
        for name, (block, body) in self.blocks.items():
            if block['kind'] == 'coclass':
                parts = re.findall(r'interface\s+(\w+)', body)
                shown.update(parts)
                self.classes[name] = [m for part in parts for m in self.members_of(name, part)]
                if 'noncreatable' not in block['attributes']:
                    self.creatable.append(name)
        for name, (block, _) in self.blocks.items():
            if block['kind'] == 'interface' and name not in shown:
                self.classes[name] = self.members_of(name, name)

    def members_of(self, owner, interface):
        block, body = self.blocks[interface]
        properties, methods = reference.interface_members(body)
        found = [Member(owner, 'property', name, row['arguments'], row['type'], reference.access_of(row), row['help'])
                 for name, row in properties.items()]
        kind = 'event' if block['kind'] == 'dispinterface' else 'method'
        found += [Member(owner, kind, name, shown, result, '', text) for name, shown, result, text in methods]
        return sorted((m for m in found if not m.name.startswith('_')), key=lambda m: m.name.lower())

    def help_of(self, name):
        return reference.help_string(self.blocks[name][0]['attributes'])

    def find(self, owner, name):
        return next((m for m in self.classes[owner] if m.name == name), None)


class Facts:
    """docs/members.txt. `problems` collects what is wrong with it."""

    def __init__(self, library, path=ROOT / 'docs/members.txt'):
        self.library, self.problems = library, []
        self.entries, self.heads = {}, {}
        section = entry = None
        for number, line in enumerate(path.read_text(encoding='utf-8').splitlines(), 1):
            where = f'{path.name}:{number}'
            head = re.fullmatch(r'\[(\S+?)(?: (\S+))?(?: like (\w+))?\]', line)
            if not line or line.startswith('#'):
                continue
            if head:
                section, entry = head[1], None
                self.heads[section] = {'object': head[2], 'like': head[3], 'before': [], 'new': ''}
                if section != '*' and section not in library.classes:
                    self.problems.append(f'{where}: there is no class {section}')
            elif line[0] == '>':
                self.heads[section]['before'].append(line[2:])
            elif line[0] == '=':
                self.heads[section]['new'] = line[2:]
            elif re.fullmatch(r'\w+', line):
                entry = self.entries.setdefault((section, line), {'notes': [], 'example': [], 'errors': [], 'used': False,
                                                                  'where': where})
            elif entry is None:
                self.problems.append(f'{where}: this belongs to no member')
            else:
                self.add(entry, line, where)
        self.apply()

    def add(self, entry, line, where):
        found = re.fullmatch(r'!! (\d+) (.*?) \| (.*)', line)
        if found:
            entry['errors'].append({'number': found[1], 'text': found[2], 'when': found[3], 'statement': ''})
        elif line.startswith('! ') and ' | ' in line:
            when, statement = line[2:].split(' | ', 1)
            entry['errors'].append({'number': '', 'text': '', 'when': when, 'statement': statement})
        elif line.startswith(': '):
            entry['notes'].append(line[2:])
        elif line[:2] in ('+ ', '~ '):
            entry['example'].append((line[2:], line[0] == '+'))
        else:
            self.problems.append(f'{where}: this line has no known form')

    def lookup(self, owner, name):
        """The entry of a member: the class's own, that of the class it is like, or the shared one."""
        like = self.heads.get(owner, {}).get('like')
        for section in (owner, like, '*'):
            if (section, name) in self.entries:
                return self.entries[section, name]
        return None

    def apply(self):
        for owner, members in self.library.classes.items():
            names = [m.name for m in members]
            self.problems += [f'{owner}.{name} is there twice' for name in set(names) if names.count(name) > 1]
            for member in members:
                entry = self.lookup(owner, member.name)
                if not entry or not entry['example']:
                    self.problems.append(f'members.txt: {owner}.{member.name} has no example')
                    continue
                if member.kind == 'property' and not member.type:
                    self.problems.append(f'{owner}.{member.name} has no type')
                entry['used'] = True
                member.facts({**entry, 'errors': [dict(error) for error in entry['errors']] + self.tried(member)})
                self.add_reading(member)
        for (section, name), entry in self.entries.items():
            if not entry['used']:
                self.problems.append(f'{entry["where"]}: {section} has no member {name}')

    @staticmethod
    def add_reading(member):
        """An example that only assigns a property reads it first, which shows both ways."""
        found = re.match(rf'(@\.{member.name}(?:\(.*?\))?) = ', member.example[0][0])
        unreadable = any(error['statement'].endswith(f'= @.{member.name}') for error in member.errors)
        if found and len(member.example) == 1 and member.access == 'read and write' and not unreadable:
            member.example = [(f'before = {found[1]}', member.example[0][1]), *member.example]

    def tried(self, member):
        """The errors that need no entry: a number outside an enumeration, an index that does not exist."""
        if member.kind != 'property':
            return []
        at = f'({", ".join("9999" for _ in member.arguments)})' if member.arguments else ''
        if at and all('Long' in a or 'Integer' in a for a in member.arguments):
            statement = f'value = @.{member.name}{at}' if 'read' in member.access else f'@.{member.name}{at} = 1'
            return [{'number': '', 'text': '', 'when': 'the index does not exist', 'statement': statement}]
        if member.type in self.library.enums and 'write' in member.access:
            return [{'number': '', 'text': '', 'when': f'{member.type} does not have the number',
                     'statement': f'@.{member.name} = 99'}]
        return []

    def object_of(self, owner):
        return self.heads[owner]['object']


def read_observed(library, path=ROOT / 'docs/observed.txt'):
    """Gives members their defaults and errors as the run has seen them. Returns what does not fit."""
    problems, errors = [], {}
    for line in path.read_text(encoding='utf-8').splitlines():
        found = re.fullmatch(r'(\w+)\.(\w+) ([=~]|!(\d+)) (.*)', line)
        if not found:
            continue
        if found[3] == '=':
            member = library.find(found[1], found[2])
            if member:
                member.default = found[5]
        elif found[3] == '~':
            member = library.find(found[1], found[2])
            if member and member.default != found[5]:
                member.loaded = found[5]
        else:
            errors[found[1], found[2], int(found[4])] = found[5]
    for members in library.classes.values():
        for member in members:
            for number, error in enumerate(member.errors):
                if not error['statement']:
                    continue
                seen = errors.get((member.owner, member.name, number))
                if seen is None:
                    problems.append(f'observed.txt does not know error {number} of {member.owner}.{member.name}')
                elif seen != 'none':
                    error['number'], error['text'] = seen.split(' ', 1)
            member.errors = [error for error in member.errors if error['number']]
    return problems


# ---- The run on the real controls -----------------------------------------------------------------------------------

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


def argument_names(member):
    return [re.search(r'(\w+) As ', argument)[1] for argument in member.arguments]


def handler(member, facts):
    """The event procedure of an example."""
    holder = facts.object_of(member.owner).split('.')[0]
    body = [line for line, _ in member.example]
    arguments = f'({", ".join(argument_names(member))})' if member.arguments else '()'
    return [f'Sub {holder}_{member.name}{arguments}', *(f'    {line}' for line in body), 'End Sub']


def example_lines(member, facts):
    """The example as the pages show it."""
    if member.kind == 'event':
        return handler(member, facts)
    return [line.replace('@', facts.object_of(member.owner)) for line, _ in member.example]


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
        # One procedure cannot call all of them, since its code is limited.
        calls = self.defaults + self.calls
        parts = [calls[i:i + 300] for i in range(0, len(calls), 300)]
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
