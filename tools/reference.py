#!/usr/bin/env python3
"""Writes the reference of the library's properties, methods, events and enumerations, from the help strings of its interface.

Reads Qvx.idl and the files that it includes, and prints Markdown. It understands only the few forms that these files use.
"""
import re
import sys
from pathlib import Path

MEMBER = re.compile(r'\[(?P<attributes>(?:[^\[\]"]|"[^"]*"|\[[^\]]*\])*)\]\s*(?P<result>HRESULT|void)\s+(?P<name>\w+)\s*'
                    r'\((?P<arguments>(?:[^()]|\([^)]*\))*)\)\s*;')
BLOCK = re.compile(r'\[(?P<attributes>(?:[^\[\]"]|"[^"]*")*)\]\s*(?P<kind>interface|dispinterface|coclass)\s+(?P<name>\w+)[^{;]*\{')
ENUM = re.compile(r'typedef\s*\[(?P<attributes>[^\]]*)\]\s*enum\s+(?P<name>\w+)\s*\{(?P<values>[^}]*)\}')
TYPES = {'BSTR': 'String', 'VARIANT': 'Variant', 'VARIANT_BOOL': 'Boolean', 'long': 'Long', 'short': 'Integer', 'IDispatch': 'Object',
         'OLE_COLOR': 'Colour', 'IFontDisp': 'Font', 'IPictureDisp': 'Picture', 'float': 'Single', 'double': 'Double',
         'SAFEARRAY(VARIANT)': 'Variant array', 'IUnknown': 'Object'}


def read_with_includes(path):
    text = path.read_text()
    text = re.sub(r'^#include "([^"]+)"', lambda m: read_with_includes(path.parent / m[1])
                  if (path.parent / m[1]).exists() else '', text, flags=re.M)
    return text


def help_string(attributes):
    found = re.search(r'helpstring\("([^"]*)"\)', attributes)
    return found[1].replace('\\n', ' ').replace('|', '\\|').replace('<', '&lt;') if found else ''


def block_body(text, start):
    depth, i = 1, start
    while depth:
        depth += {'{': 1, '}': -1}.get(text[i], 0)
        i += 1
    return text[start:i - 1]


def type_name(declared):
    return TYPES.get(declared.replace('*', '').strip(), declared.replace('*', '').strip())


def arguments_of(member):
    """Returns the arguments as a caller sees them, and the type of the result."""
    shown, result = [], ''
    for piece in re.split(r',(?![^\[]*\])', member['arguments']):
        found = re.match(r'\s*\[([^\]]*)\]\s*(?:const\s+)?([\w()]+(?:\s+int)?\s*\**)\s*(\w+)\s*$', piece)
        if not found:
            continue
        attributes, declared, name = found.groups()
        if 'retval' in attributes:
            result = type_name(declared)
            continue
        words = []
        if 'out' in attributes:
            words.append('ByRef ')
        words.append(f'{name} As {type_name(declared)}')
        default = re.search(r'defaultvalue\(([^)]*)\)', attributes)
        if default:
            words.append(f' = {default[1]}')
        text = ''.join(words)
        shown.append(f'[{text}]' if 'optional' in attributes or default else text)
    return shown, result


def signature(name, shown):
    return f'`{name}({", ".join(shown)})`' if shown else f'`{name}`'


def print_table(title, heads, rows):
    if not rows:
        return
    print(f'### {title}\n')
    print('| ' + ' | '.join(heads) + ' |')
    print('|' + ' --- |' * len(heads))
    for row in rows:
        print('| ' + ' | '.join(row) + ' |')
    print()


def interface_members(body):
    """Returns the properties of an interface by name, and its methods as (name, arguments, result, help)."""
    properties, methods = {}, []
    for member in MEMBER.finditer(body):
        attributes, name = member['attributes'], member['name']
        shown, result = arguments_of(member)
        access = re.search(r'\b(propget|propputref|propput)\b', attributes)
        if not access:
            methods.append((name, shown, result, help_string(attributes)))
            continue
        row = properties.setdefault(name, {'access': set(), 'type': '', 'arguments': [], 'help': help_string(attributes)})
        row['access'].add('read' if access[1] == 'propget' else 'write')
        if access[1] == 'propget':
            row['type'], row['arguments'] = result, shown
        elif not row['type']:
            row['type'], row['arguments'] = shown[-1].split(' As ')[-1], shown[:-1]
    return properties, methods


def access_of(row):
    return ' and '.join(word for word in ('read', 'write') if word in row['access'])


def print_interface(body):
    properties, methods = interface_members(body)
    print_table('Properties', ['Property', 'Type', 'Access', ''],
                [(signature(name, row['arguments']), row['type'], access_of(row), row['help'])
                 for name, row in sorted(properties.items(), key=lambda item: item[0].lower())])
    print_table('Methods', ['Method', 'Returns', ''],
                sorted(((signature(name, shown), result, text) for name, shown, result, text in methods),
                       key=lambda row: row[0].lower()))


def read_blocks(path):
    """Returns the text of the interface, and each block in it as (match, body) by its name."""
    # Only whole-line comments: a help string may contain a //.
    text = re.sub(r'^\s*//.*$', '', read_with_includes(path), flags=re.M)
    return text, {block['name']: (block, block_body(text, block.end())) for block in BLOCK.finditer(text)}


def main():
    text, blocks = read_blocks(Path(sys.argv[1]))
    print('<!-- Written by `./qvx reference` from typelib/Qvx.idl. -->\n')
    print('# Reference\n')
    print('Arguments in brackets may be left out; what is passed `ByRef` comes back to the caller. Numbers, twips and dates use "."')
    print('as the decimal point everywhere. Colours are the system\'s `OLE_COLOR` numbers.\n')
    classes = [(name, block) for name, (block, _) in blocks.items() if block['kind'] == 'coclass']
    shown = set()
    for name, block in classes:
        print(f'## {name}\n\n{help_string(block["attributes"])}\n')
        for interface in re.findall(r'interface\s+(\w+)', blocks[name][1]):
            if interface not in blocks or interface in shown:
                continue
            shown.add(interface)
            if blocks[interface][0]['kind'] == 'interface':
                print_interface(blocks[interface][1])
            else:
                print_table('Events', ['Event', ''], [(signature(member['name'], arguments_of(member)[0]),
                                                       help_string(member['attributes']))
                                                      for member in MEMBER.finditer(blocks[interface][1])])
    for name, (block, body) in blocks.items():
        if block['kind'] == 'interface' and name not in shown:
            print(f'## {name.lstrip("_")}\n\n{help_string(block["attributes"])}\n')
            print_interface(body)
    print('## Enumerations\n')
    for enum in ENUM.finditer(text):
        print_table(enum['name'], [help_string(enum['attributes']), 'Number'],
                    [(f'`{name}`', number) for name, number in re.findall(r'(\w+)\s*=\s*(-?\w+)', enum['values'])])


if __name__ == '__main__':
    main()
