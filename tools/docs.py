#!/usr/bin/env python3
"""Makes the documentation that a browser shows, from the Markdown files and the interface description.

    docs.py OUT

Every class of the library gets a page on which each member has an anchor of its own: combogrid.html#AddItem. Nothing is
written when the facts about the members (docs_members.py) or the names in the listings are wrong. The same sources give
the same bytes.
"""
import html
import json
import re
import shutil
import subprocess
import sys
from pathlib import Path

import docs_listings
import docs_members

ROOT = Path(__file__).resolve().parent.parent
TOOLS = ROOT / 'tools'
# The navigation: titles, and the pages in it by the names of their Markdown files. A page's own title is its heading.
NAVIGATION = (
    ('Begin', ('README', 'installing', 'first-hour', 'designer', 'hosting', 'languages', 'migrating')),
    ('Controls', ('combogrid', 'textedit', 'button', 'rbutton', 'menus', 'flatborder', 'backup')),
    ('Inside the controls', ('flexgrid', 'ieditorcombo', 'icolumnindex', 'igridcolumns', 'igridcolumn',
                             'itextbox', 'enumerations', 'reference')),
    ('Subjects', ('database', 'accessibility', 'server', 'hosts', 'archivers', 'demo-keys', 'comparison', 'benchmarks')),
    ('The project', ('architecture', 'CONTRIBUTING', 'CHANGELOG')),
)
# Pages whose file has another name than their Markdown.
NAMES = {'README': 'index', 'menus': 'cmenus', 'CONTRIBUTING': 'contributing', 'CHANGELOG': 'changelog'}
SHORT = {'README': 'Overview'}
TITLES = {'IEditorCombo': 'Pick lists (IEditorCombo)', 'IColumnIndex': 'Column numbers (IColumnIndex)',
          'IGridColumns': 'Columns (IGridColumns)', 'IGridColumn': 'A column (IGridColumn)',
          'ITextBox': 'The text box inside (ITextBox)', 'FlexGrid': 'The grid inside (FlexGrid)'}
SYSTEM_COLOURS = {0x5: 'window background', 0x8: 'window text', 0xD: 'selection', 0xE: 'selected text', 0xF: 'button face',
                  0x10: 'button shadow', 0x12: 'button text', 0x14: 'button highlight', 0x15: 'dark button shadow'}
PAGE = '''<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{title} - Qvx</title>
<link rel="stylesheet" href="docs.css">
</head>
<body>
<div class="page">
<div class="side">
<div class="search"><input id="search" type="search" placeholder="Search (press /)" aria-label="Search"
autocomplete="off"><ol id="found"></ol></div>
<input id="contents" type="checkbox"><label for="contents">Contents</label>
<nav aria-label="Pages">
{navigation}
</nav>
</div>
<main>
{body}
</main>
</div>
<script src="index.js"></script>
<script src="search.js"></script>
</body>
</html>
'''


def page_name(markdown):
    return NAMES.get(markdown, markdown) + '.html'


def escape(text):
    return html.escape(text, quote=False)


def from_markdown(path):
    """The body of a page, with the identifiers of headings that links in the sources use."""
    return subprocess.run(['pandoc', '-f', 'gfm', '-t', 'html5', '--wrap=preserve', '--no-highlight', str(path)],
                          check=True, capture_output=True, text=True).stdout


def relink(body):
    """Turns links between Markdown files into links between pages."""
    def page(found):
        address, anchor = found[1], found[2] or ''
        name = address.rsplit('/', 1)[-1]
        if name.endswith('.md'):
            return f'href="{page_name(name[:-3])}{anchor}"'
        return f'href="{"LICENSE.txt" if name == "LICENSE" else address}{anchor}"'
    body = re.sub(r'href="(?!https?:|#)([^"#]+)(#[^"]*)?"', page, body)
    return re.sub(r'src="(?:docs/)?', 'src="', body)


def link_members(body, members):
    """Members that a control's text names in code lead to their place on the page."""
    names = {m.name for m in members}
    def link(found):
        return f'<a href="#{found[1]}">{found[0]}</a>' if found[1] in names else found[0]
    parts = re.split(r'(<a .*?</a>|<pre.*?</pre>|<h\d.*?</h\d>)', body, flags=re.S)
    return ''.join(part if i % 2 else re.sub(r'<code>(\w+)</code>', link, part) for i, part in enumerate(parts))


class Site:
    """Everything the pages are made of."""

    def __init__(self):
        self.library = docs_members.Library()
        self.facts = docs_members.Facts(self.library)
        self.problems = self.facts.problems + docs_members.read_observed(self.library)
        self.problems += docs_listings.problems(self.library, sorted((ROOT / 'docs').glob('*.md')))
        self.pages, self.titles, self.index = {}, {}, []
        self.by_page = {name.lower(): name for name in self.library.classes}
        self.by_page['menus'] = 'CMenus'

    # ---- Members ----------------------------------------------------------------------------------------------------

    def type_link(self, declared):
        if declared in self.library.enums:
            return f'<a href="enumerations.html#{declared}">{declared}</a>'
        return escape(declared)

    def argument(self, text):
        """An argument of a signature; an enumeration in it is a link."""
        return re.sub(r'(?<= As )\w+', lambda found: self.type_link(found[0]), escape(text.replace('\\|', '|')))

    def value(self, member):
        """A default as programs write it."""
        value = member.default
        if member.type == 'Colour':
            number = int(value)
            system = SYSTEM_COLOURS.get(number & 0xFF) if number & 0x80000000 else None
            return f'<code>&amp;H{number:X}</code>' + (f' ({system})' if system else '')
        for name, number in self.library.enums.get(member.type, ('', []))[1]:
            if number == value:
                return f'<code>{name}</code> ({number})'
        return 'empty' if value == '""' else f'<code>{escape(value)}</code>'

    def rows(self, member):
        """The terms and descriptions of a member's table."""
        if member.kind == 'property':
            yield 'Type', self.type_link(member.type) + ('' if member.access == 'read and write' else f', {member.access} only')
        elif member.type:
            yield 'Returns', self.type_link(member.type)
        if member.default and 'write' in member.access:
            loaded = f'; in a form without a value for it, {self.loaded(member)}' if member.loaded else ''
            yield 'Default', self.value(member) + loaded
        for note in member.notes:
            yield ('Range' if member.kind == 'property' else 'Note'), escape(note)
        errors = [f'<code>{error["number"]}</code> "{escape(error["text"])}" when {escape(error["when"])}' for error in member.errors]
        if errors:
            yield 'Errors', '<br>'.join(errors)

    def loaded(self, member):
        value, member.default = member.default, member.loaded
        text = self.value(member)
        member.default = value
        return text

    def member(self, member):
        arguments = f'({", ".join(self.argument(a) for a in member.arguments)})' if member.arguments else ''
        rows = ''.join(f'<dt>{term}</dt><dd>{text}</dd>' for term, text in self.rows(member))
        example = '\n'.join(escape(line) for line in docs_members.example_lines(member, self.facts))
        return (f'<section class="member" id="{member.name}">\n<h3><a href="#{member.name}">{member.name}</a>'
                f'{arguments} <span class="kind">{member.kind}</span></h3>\n<p>{self.help(member)}</p>\n'
                + (f'<dl>{rows}</dl>\n' if rows else '') + f'<pre><code>{example}</code></pre>\n</section>\n')

    @staticmethod
    def help(member):
        return member.help.replace('\\|', '|').replace('&', '&amp;').replace('&amp;lt;', '&lt;')

    def members(self, name):
        """The reference part of a class's page."""
        members = self.library.classes[name]
        parts = []
        for kind, title in (('property', 'Properties'), ('method', 'Methods'), ('event', 'Events')):
            group = [m for m in members if m.kind == kind]
            if group:
                anchor = f'all-{title.lower()}'
                listed = ''.join(f'<li><a href="#{m.name}">{m.name}</a></li>' for m in group)
                parts.append(f'<h2 id="{anchor}">{title}</h2>\n<ul class="members">{listed}</ul>\n'
                             + ''.join(self.member(m) for m in group))
        for member in members:
            self.index.append([member.name, f'{name} {member.kind}', f'{name.lower()}.html#{member.name}',
                               html.unescape(member.help.replace('\\|', '|'))])
        return '\n'.join(parts)

    def enumerations(self):
        parts = ['<h1>Enumerations</h1>\n<p>Programs that read the type library use the names; scripts that do not know them '
                 'use the numbers.</p>\n']
        for name, (text, values) in sorted(self.library.enums.items(), key=lambda item: item[0].lower()):
            rows = ''.join(f'<tr><td><code>{value}</code></td><td>{number}</td></tr>' for value, number in values)
            parts.append(f'<section class="member" id="{name}">\n<h3><a href="#{name}">{name}</a></h3>\n<p>{text}</p>\n'
                         f'<table><tr><th>Name</th><th>Number</th></tr>{rows}</table>\n</section>\n')
            self.index.append([name, 'enumeration', f'enumerations.html#{name}', text + ' '
                               + ' '.join(value for value, _ in values)])
        return ''.join(parts)

    def all_members(self):
        parts = ['<h1>All members</h1>\n']
        for name, members in self.library.classes.items():
            page = f'{name.lower()}.html'
            listed = ''.join(f'<li><a href="{page}#{m.name}">{m.name}</a></li>' for m in members)
            parts.append(f'<h2 id="{name.lower()}"><a href="{page}">{name}</a></h2>\n<p>{self.library.help_of(name)}</p>\n'
                         f'<ul class="members">{listed}</ul>\n')
        listed = ''.join(f'<li><a href="enumerations.html#{name}">{name}</a></li>' for name in sorted(self.library.enums))
        parts.append(f'<h2 id="enumerations">Enumerations</h2>\n<ul class="members">{listed}</ul>\n')
        return ''.join(parts)

    # ---- Pages ------------------------------------------------------------------------------------------------------

    def source(self, name):
        path = ROOT / f'{name}.md' if name.isupper() else ROOT / 'docs' / f'{name}.md'
        return path if path.exists() else None

    def body(self, name):
        if name == 'enumerations':
            return self.enumerations()
        if name == 'reference':
            return self.all_members()
        owner, source = self.by_page.get(name), self.source(name)
        if not owner:
            return relink(from_markdown(source)) if source else ''
        title = TITLES.get(owner, owner)
        guide = link_members(relink(from_markdown(source)), self.library.classes[owner]) if source else (
            f'<h1>{title}</h1>\n<p>{self.library.help_of(owner)}</p>\n')
        return guide + self.members(owner)

    def index_headings(self, name, body):
        for found in re.finditer(r'<h2 id="([^"]+)">(.*?)</h2>', body, re.S):
            if not found[1].startswith('all-'):
                text = html.unescape(re.sub(r'<[^>]+>', '', found[2]))
                self.index.append([text, f'in {self.titles[name]}', f'{page_name(name)}#{found[1]}', ''])

    def make(self):
        listed = [name for _, names in NAVIGATION for name in names]
        unlisted = {path.stem for path in (ROOT / 'docs').glob('*.md')} - set(listed)
        self.problems += [f'docs/{name}.md is in no group of the navigation' for name in sorted(unlisted)]
        for name in listed:
            body = self.body(name)
            heading = re.search(r'<h1[^>]*>(.*?)</h1>', body, re.S)
            if not heading:
                self.problems.append(f'{name} has no heading')
                continue
            self.pages[name] = body
            self.titles[name] = html.unescape(re.sub(r'<[^>]+>', '', heading[1])).replace('\n', ' ')
        for name, body in self.pages.items():
            self.index.append([self.titles[name], 'page', page_name(name), ''])
            self.index_headings(name, body)

    def navigation(self, current):
        groups = []
        for title, names in NAVIGATION:
            links = ''.join(
                f'<li><a href="{page_name(name)}"{" aria-current=page" if name == current else ""}>'
                f'{escape(SHORT.get(name, self.titles[name]))}</a></li>' for name in names if name in self.pages)
            groups.append(f'<p>{title}</p>\n<ul>{links}</ul>')
        return '\n'.join(groups)

    def write(self, out):
        shutil.rmtree(out, ignore_errors=True)
        out.mkdir(parents=True)
        for name, body in self.pages.items():
            text = PAGE.format(title=escape(self.titles[name]), navigation=self.navigation(name), body=body)
            (out / page_name(name)).write_text(text, encoding='utf-8', newline='\n')
        entries = ',\n'.join(json.dumps(entry, ensure_ascii=False) for entry in self.index)
        (out / 'index.js').write_text(f'var searchIndex = [\n{entries}\n];\n', encoding='utf-8', newline='\n')
        shutil.copyfile(TOOLS / 'docs.css', out / 'docs.css')
        shutil.copyfile(TOOLS / 'docs_search.js', out / 'search.js')
        shutil.copyfile(ROOT / 'LICENSE', out / 'LICENSE.txt')
        shutil.copyfile(ROOT / 'docs/layers.svg', out / 'layers.svg')
        shutil.copytree(ROOT / 'docs/images', out / 'images')


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    site = Site()
    site.make()
    if site.problems:
        sys.exit('\n'.join(site.problems))
    site.write(Path(sys.argv[1]))


if __name__ == '__main__':
    main()
