"""Checks that the listings of the documentation use only names that the library has.

In a listing, a variable whose name begins with grd, cmd, txt, bkp, fbd or mns is a control, as in all samples; what
follows its dot or arrow must be a member of it, or of every container's controls. Class names are checked in every page.

    docs_listings.py FOLDER    writes the listings in C, C++ and Python into a folder, for compilers
"""
import ast
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CONTROLS = {'grd': ('ComboGrid',), 'cmd': ('Button', 'RButton'), 'txt': ('TextEdit',), 'bkp': ('Backup',),
            'fbd': ('FlatBorder',), 'mns': ('CMenus',)}
INNER = {'Grid': 'FlexGrid', 'Lists': 'IEditorCombo', 'ColIndex': 'IColumnIndex', 'Columns': 'IGridColumn',
         'TextBox': 'ITextBox'}
# Members that containers give to their controls: the forms host, office programs, and AxHost.
OF_CONTAINERS = {'Name', 'Parent', 'Container', 'Index', 'Object', 'Left', 'Top', 'Width', 'Height', 'Tag', 'ToolTipText',
                 'TabIndex', 'TabStop', 'Visible', 'Enabled', 'Move', 'SetFocus', 'ZOrder', 'Dock', 'Default', 'Cancel'}
FILES = {'ocx', 'h', 'tlb', 'manifest', 'dll', 'idl', 'rc', 'def'}
FENCE = re.compile(r'^```(\w*)\n(.*?)^```', re.S | re.M)
# The pages whose listings are about controls; forms' files have properties of the host besides.
CHECKED = ('languages', 'migrating', 'first-hour')


def plain(name):
    """A member's name without what languages add to it."""
    name = re.sub(r'^(get|put|putref|set)_', '', name)
    return re.sub(r'Event$', '', name)


def is_member(library, classes, name):
    """Whether one of the classes has the member, under the name that a language gives it."""
    names = {m.name for owner in classes for m in library.classes[owner]}
    shorter = {re.sub(r'^(On|Set)(?=[A-Z])', '', name), name}
    return any(plain(n) in names for n in shorter) or name in OF_CONTAINERS


def listing_problems(library, text):
    """What a listing calls that the library does not have."""
    text = re.sub(r'"[^"\n]*"', '""', text)
    for variable, chain in re.findall(r'\b((?:grd|cmd|txt|bkp|fbd|mns)[A-Z]\w*)((?:(?:\.|->)\w+(?:\([^()]*\))?)+)', text):
        classes = CONTROLS[variable[:3]]
        for name in re.findall(r'(?:\.|->)(\w+)', re.sub(r'\([^()]*\)', '', chain)):
            if not is_member(library, classes, name):
                yield f'{variable}.{name}'
                break
            if name not in INNER:
                break
            classes = (INNER[name],)
    for variable, event in re.findall(r'\b((?:grd|cmd|txt)[A-Z][a-z]*)_(\w+)\(', text):
        if not is_member(library, CONTROLS[variable[:3]], event):
            yield f'{variable}_{event}'
    for owner, name in re.findall(r'\b_(\w+?)_((?:get|put|putref)_\w+)\(', text):
        if owner not in library.classes or not is_member(library, (owner,), name):
            yield f'_{owner}_{name}'
    for owner, event in re.findall(r'\b__(\w+?)_(\w+)Event\b', text):
        if owner not in library.classes or not is_member(library, (owner,), event):
            yield f'__{owner}_{event}Event'
    for event in re.findall(r'\bdef On(\w+)\(', text):
        if not is_member(library, library.classes, event):
            yield f'On{event}'
    yield from enumerator_problems(library, text)


def enumerator_problems(library, text):
    known = {name for _, values in library.enums.values() for name, _ in values}
    # "grdSelectionByRow" begins with "grdSelection": what begins so is meant to be one of them.
    beginnings = {found[0] for name in known if (found := re.match(r'[a-z]+[A-Z][a-z]+', name))}
    for name in set(re.findall(r'\b[a-z]+[A-Z]\w*', text)):
        if name not in known and any(re.match(beginning + '[A-Z0-9]', name) for beginning in beginnings):
            yield name


def class_problems(library, text):
    # A name of a file may begin the same way; a version number, or one part more, shows that it is one.
    for name in re.findall(r'\bQvx\.([A-Za-z_]\w*)\b(?!\.(?:manifest|json)\b)', text):
        if name not in library.classes and name not in library.enums and name not in FILES:
            yield f'Qvx.{name}'
    for name in re.findall(r'\bAx([A-Z]\w+)', text):
        if name not in library.classes and name not in ('Host', 'Qvx'):
            yield f'Ax{name}'


def problems(library, paths):
    found = []
    for path in paths:
        text = path.read_text(encoding='utf-8')
        found += [f'{path.name}: the library has no {name}' for name in class_problems(library, text)]
        if path.stem in CHECKED:
            for _, listing in FENCE.findall(text):
                found += [f'{path.name}: the library has no {name}' for name in listing_problems(library, listing)]
    return found + list(sample_problems())


def sample_problems():
    """The first hour's script is the sample's, apart from the remark at its beginning."""
    script = (ROOT / 'samples/purchase.vbs').read_text(encoding='utf-8').split('\n', 1)[1]
    if script not in (ROOT / 'docs/first-hour.md').read_text(encoding='utf-8'):
        yield 'first-hour.md: its script is not samples/purchase.vbs'


FAULTS = ('grdItems.FormatStrings = ""', 'grdItems->put_Cells(1)', 'grdItems.Grid.Colour = 1', 
          'txtPrice.DataType = msNumericsOnly', 'Sub grdItems_AfterCellChanged(Row)', '_ComboGrid_put_Texts(grid)',
          '__ComboGrid_CellChangeEvent', 'def OnCellChange(self):', 'CreateObject("Qvx.Grid")', 'new AxGrid()',
          'grdItems.Lists(1).Adds', 'cmdSave.ClickedEvent += x')


def missed_faults(library):
    for line in FAULTS:
        if not list(listing_problems(library, line)) + list(class_problems(library, line)):
            yield f'{line} goes unnoticed'


def write_listings(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for path in sorted((ROOT / 'docs').glob('*.md')):
        for number, (language, text) in enumerate(FENCE.findall(path.read_text(encoding='utf-8'))):
            if language in ('c', 'cpp'):
                (folder / f'{path.stem}-{number}.{language}').write_text(text, encoding='utf-8')
            elif language == 'python':
                ast.parse(text, path.name)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    write_listings(Path(sys.argv[1]))


if __name__ == '__main__':
    main()
