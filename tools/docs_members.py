"""What the reference pages say about each member of the library.

Names, types and help strings come from the interface description; units, examples and the circumstances of errors from
docs/members.txt, which describes its own form; defaults and the errors' numbers and texts from docs/observed.txt, which
a run of every example on the real controls (docs_run.py) has written.
"""
import functools
import re
from pathlib import Path

import reference

ROOT = Path(__file__).resolve().parent.parent


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


@functools.cache
def raises(text):
    """Whether a source of the library has an error's text."""
    folders = ('controls', 'widgets', 'win', 'common', 'com', 'kit')
    return any(f'u"{text}"' in path.read_text(encoding='utf-8') for folder in folders
               for path in (ROOT / folder).rglob('*') if path.suffix in ('.h', '.cpp'))


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
            if not raises(found[2]):
                self.problems.append(f'{where}: no source has the text "{found[2]}"')
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
            return [{'number': '', 'text': '', 'when': 'the index does not exist', 'statement': statement,
                     'tried': True}]
        if member.type in self.library.enums and 'write' in member.access:
            return [{'number': '', 'text': '', 'when': f'{member.type} does not have the number',
                     'statement': f'@.{member.name} = 99', 'tried': True}]
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
                elif seen == 'none' and 'tried' not in error:
                    problems.append(f'{member.owner}.{member.name} raises no error when {error["when"]}')
                elif seen != 'none':
                    error['number'], error['text'] = seen.split(' ', 1)
            member.errors = [error for error in member.errors if error['number']]
    return problems


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
