#!/usr/bin/env python3
"""Checks the documentation that docs.py has made.

    docs_check.py faults SITE              whether these checks and those of docs.py notice what is wrong
    docs_check.py links SITE               every link, anchor and picture is there, and every member has its parts
    docs_check.py browser SITE PICTURES    the pages in the distribution's browser; pictures of some go into a folder
"""
import base64
import json
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote

import docs_listings
import docs_members

NARROW, WIDE, HEIGHT = 400, 1400, 900
LIMIT = 240  # seconds for everything
# Pages of which pictures are taken, for people.
PICTURED = ('index.html', 'combogrid.html', 'button.html', 'first-hour.html')


# ---- Links ----------------------------------------------------------------------------------------------------------

class Page(HTMLParser):
    """The identifiers and the addresses in a page."""

    def __init__(self, path):
        super().__init__()
        self.ids, self.addresses, self.headings, self.members = [], [], 0, 0
        self.feed(path.read_text(encoding='utf-8'))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if 'id' in values:
            self.ids.append(values['id'])
        self.addresses += [values[name] for name in ('href', 'src') if name in values]
        self.headings += tag == 'h1'
        self.members += tag == 'section'


def link_problems(site):
    pages = {path.name: Page(path) for path in sorted(site.glob('*.html'))}
    for name, page in pages.items():
        if page.headings != 1:
            yield f'{name}: {page.headings} headings of the first level'
        for twice in {i for i in page.ids if page.ids.count(i) > 1}:
            yield f'{name}: the identifier {twice} is there more than once'
        for address in page.addresses:
            if address.startswith(('http://', 'https://')):
                yield f'{name}: {address} leads out of the documentation'
                continue
            file, _, anchor = unquote(address).partition('#')
            if file and not (site / file).is_file():
                yield f'{name}: there is no {address}'
            elif anchor and anchor not in pages[file or name].ids:
                yield f'{name}: there is no place {address}'
    text = (site / 'index.js').read_text(encoding='utf-8')
    for title, _, address, _ in json.loads(text[text.index('['):text.rindex(';')]):
        file, _, anchor = address.partition('#')
        if file not in pages or anchor and anchor not in pages[file].ids:
            yield f'index.js: {title} leads nowhere: {address}'
    named = {unquote(address) for page in pages.values() for address in page.addresses}
    for picture in sorted(site.glob('images/*')):
        if f'images/{picture.name}' not in named:
            yield f'{picture.name} is on no page'
    if sum(page.members for page in pages.values()) < 300:
        yield 'members are missing'


# ---- Faults ---------------------------------------------------------------------------------------------------------

# What is wrong with the sources, by a piece of text in docs/members.txt and what replaces it.
SOURCE_FAULTS = (('\nAutoTab\n', '\nAutomaticTab\n'), ('[Button cmdSave]', '[Knob cmdSave]'),
                 ('+ @.OuterBorder = &H602000\n', ''), ('+ @.DropDown = True', '@.DropDown = True'),
                 ('!! 521 Can', '!! 521 Could'))
# The same of the site's combogrid.html.
SITE_FAULTS = (('href="#AddItem"', 'href="#AddItems"'), ('id="AddItem"', 'id="Bind"'), ('href="docs.css"', 'href="doc.css"'),
               ('src="search.js"', 'src="https://example.org/search.js"'), ('<h1', '<h2'))


def missed_faults(site):
    with tempfile.TemporaryDirectory() as folder:
        changed = Path(folder, 'members.txt')
        source = (docs_members.ROOT / 'docs/members.txt').read_text(encoding='utf-8')
        for old, new in SOURCE_FAULTS:
            changed.write_text(source.replace(old, new, 1), encoding='utf-8')
            if old not in source or not docs_members.Facts(docs_members.Library(), changed).problems:
                yield f'{new!r} in place of {old!r} goes unnoticed'
        copy = Path(folder, 'site')
        shutil.copytree(site, copy)
        page = (site / 'combogrid.html').read_text(encoding='utf-8')
        for old, new in SITE_FAULTS:
            (copy / 'combogrid.html').write_text(page.replace(old, new, 1), encoding='utf-8')
            if old not in page or not list(link_problems(copy)):
                yield f'{new!r} in place of {old!r} goes unnoticed'
        yield from docs_listings.missed_faults(docs_members.Library())


# ---- The browser ----------------------------------------------------------------------------------------------------

class Browser:
    """A headless browser with a profile of its own, spoken to through two pipes."""

    def __init__(self, program):
        self.profile = tempfile.mkdtemp(prefix='qvx-docs.')
        commands, self.to = os.pipe()
        self.answers, events = os.pipe()
        arguments = [program, '--headless', '--remote-debugging-pipe', f'--user-data-dir={self.profile}', '--disable-gpu',
                     '--no-first-run', '--disable-extensions', '--disable-background-networking', '--disable-dev-shm-usage',
                     '--hide-scrollbars']
        if os.geteuid() == 0:
            arguments.append('--no-sandbox')

        def connect():
            # The browser reads from descriptor 3 and writes to 4; the copies are out of their way.
            read, write = os.dup(commands), os.dup(events)
            while read < 5 or write < 5:
                read, write = os.dup(read), os.dup(write)
            os.dup2(read, 3)
            os.dup2(write, 4)

        self.process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, close_fds=False, preexec_fn=connect,
                                        start_new_session=True)
        os.close(commands)
        os.close(events)
        self.deadline, self.number, self.rest, self.events = time.monotonic() + LIMIT, 0, b'', []
        self.session = None
        target = self.call('Target.createTarget', url='about:blank')['targetId']
        self.session = self.call('Target.attachToTarget', targetId=target, flatten=True)['sessionId']
        for domain in ('Page', 'Runtime', 'Log'):
            self.call(f'{domain}.enable')

    def message(self):
        while b'\0' not in self.rest:
            left = self.deadline - time.monotonic()
            if left <= 0 or not select.select([self.answers], [], [], left)[0]:
                raise TimeoutError('the browser does not answer')
            data = os.read(self.answers, 1 << 16)
            if not data:
                raise EOFError('the browser has ended')
            self.rest += data
        line, _, self.rest = self.rest.partition(b'\0')
        return json.loads(line)

    def call(self, method, **parameters):
        self.number += 1
        request = {'id': self.number, 'method': method, 'params': parameters}
        if self.session:
            request['sessionId'] = self.session
        os.write(self.to, json.dumps(request).encode() + b'\0')
        while True:
            message = self.message()
            if message.get('id') == self.number:
                if 'error' in message:
                    raise RuntimeError(f'{method}: {message["error"]["message"]}')
                return message['result']
            self.events.append(message)

    def open(self, address):
        self.events.clear()
        self.call('Page.navigate', url=address)
        while not any(e.get('method') == 'Page.loadEventFired' for e in self.events):
            self.events.append(self.message())

    def evaluate(self, expression):
        answer = self.call('Runtime.evaluate', expression=expression, returnByValue=True)
        if 'exceptionDetails' in answer:
            raise RuntimeError(f'{expression}: {answer["exceptionDetails"]["text"]}')
        return answer['result'].get('value')

    def complaints(self):
        """What the page has written to the console as an error since it was opened."""
        for event in self.events:
            values = event.get('params', {})
            if event.get('method') == 'Runtime.exceptionThrown':
                yield values['exceptionDetails'].get('exception', {}).get('description', 'an exception')
            elif event.get('method') == 'Log.entryAdded' and values['entry']['level'] == 'error':
                yield values['entry']['text'] + ' ' + values['entry'].get('url', '')
            elif event.get('method') == 'Runtime.consoleAPICalled' and values['type'] in ('error', 'assert'):
                yield 'console.error'

    def resize(self, width):
        self.call('Emulation.setDeviceMetricsOverride', width=width, height=HEIGHT, deviceScaleFactor=1, mobile=False)

    def dark(self, on):
        self.call('Emulation.setEmulatedMedia',
                  features=[{'name': 'prefers-color-scheme', 'value': 'dark' if on else 'light'}])

    def picture(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(base64.b64decode(self.call('Page.captureScreenshot', format='png')['data']))

    def close(self):
        try:
            self.session = None
            self.deadline = time.monotonic() + 10
            self.call('Browser.close')
            self.process.wait(10)
        except (OSError, EOFError, RuntimeError, TimeoutError, subprocess.TimeoutExpired):
            pass
        # Its own processes may outlive it.
        try:
            os.killpg(self.process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        self.process.wait()
        os.close(self.to)
        os.close(self.answers)
        shutil.rmtree(self.profile, ignore_errors=True)


TOO_WIDE = ('document.documentElement.scrollWidth > innerWidth ? document.documentElement.scrollWidth : 0')
FOUND = '''(function (query) {
  var field = document.getElementById("search");
  field.value = query;
  field.dispatchEvent(new Event("input"));
  var first = document.querySelector("#found a");
  return first ? first.href.replace(/.*[/]/, "") : "";
})(%s)'''
# What is typed into the search, and where its first answer leads.
SEARCHES = (('AddItem', ('flexgrid.html#AddItem', 'combogrid.html#AddItem')), ('combogrid.validateentry', ('combogrid.html#ValidateEntry',)),
            ('GridMerge', ('enumerations.html#GridMerge',)), ('outerborder', ('flatborder.html#OuterBorder',)))


def page_problems(browser, site, name, pictures):
    browser.open((site / name).as_uri())
    yield from browser.complaints()
    heading = browser.evaluate('document.querySelector("main h1").getBoundingClientRect().height > 0')
    if not heading:
        yield 'its heading is not shown'
    if browser.evaluate('[...document.images].filter(i => !i.complete || !i.naturalWidth).length'):
        yield 'a picture is not shown'
    for width in (NARROW, WIDE):
        browser.resize(width)
        actual = browser.evaluate(TOO_WIDE)
        if actual:
            yield f'it is {actual} pixels wide in a window of {width}'
        if name in PICTURED:
            browser.picture(pictures / f'{Path(name).stem}-{width}.png')


def browser_problems(site, pictures):
    program = shutil.which('chromium')
    browser = Browser(program)
    try:
        for path in sorted(site.glob('*.html')):
            yield from (f'{path.name}: {problem}' for problem in page_problems(browser, site, path.name, pictures))
        browser.open((site / 'index.html').as_uri())
        for query, wanted in SEARCHES:
            found = browser.evaluate(FOUND % json.dumps(query))
            if found not in wanted:
                yield f'a search for {query} leads to {found or "nothing"}'
            elif not browser_shows(browser, site, found):
                yield f'{found} is not shown'
        browser.dark(True)
        browser.open((site / 'combogrid.html').as_uri() + '#AddItem')
        if browser.evaluate('getComputedStyle(document.body).backgroundColor') == 'rgb(255, 255, 255)':
            yield 'the dark colours are not used'
        browser.picture(pictures / 'combogrid-dark.png')
    finally:
        browser.close()


def browser_shows(browser, site, address):
    """Whether the place is in view once its address is opened."""
    browser.open('about:blank')
    browser.open(site.as_uri() + '/' + address)
    shown = browser.evaluate('(function () { var r = document.querySelector(":target").getBoundingClientRect();'
                             ' return r.top >= 0 && r.top < innerHeight && r.height > 0; })()')
    browser.open((site / 'index.html').as_uri())
    return shown


def main():
    match sys.argv[1:]:
        case ['links', site]:
            found = list(link_problems(Path(site).resolve()))
        case ['faults', site]:
            found = list(missed_faults(Path(site).resolve()))
        case ['browser', site, pictures]:
            found = list(browser_problems(Path(site).resolve(), Path(pictures)))
        case _:
            sys.exit(__doc__)
    print('\n'.join(found) or 'all good')
    sys.exit(bool(found))


if __name__ == '__main__':
    main()
