"""Checks that every link between the pages of a folder leads to a page and a place in it: check_links.py FOLDER"""

import html.parser
import os
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    """The places in a page, and what it links to."""

    def __init__(self, path):
        super().__init__()
        self.places = set()
        self.links = []
        with open(path, encoding="utf-8") as file:
            self.feed(file.read())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("id", "name"):
                self.places.add(value)
            elif name in ("href", "src") and value:
                self.links.append(value)


def leads_nowhere(folder, pages, name, link):
    url = urllib.parse.urlparse(link)
    if url.scheme:
        return False
    target = urllib.parse.unquote(url.path) or name
    if target in pages:
        return url.fragment and urllib.parse.unquote(url.fragment) not in pages[target].places
    return not os.path.isfile(os.path.join(folder, target))


def main():
    folder = sys.argv[1]
    pages = {name: Page(os.path.join(folder, name)) for name in os.listdir(folder) if name.endswith(".html")}
    links = [(name, link) for name, page in pages.items() for link in page.links]
    if not links:
        sys.exit(f"{folder}: no page has a link")
    dead = sorted({(name, link) for name, link in links if leads_nowhere(folder, pages, name, link)})
    for name, link in dead:
        print(f"{name}: {link} leads nowhere", file=sys.stderr)
    sys.exit(1 if dead else 0)


if __name__ == "__main__":
    main()
