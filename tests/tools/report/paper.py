"""What a browser has printed: the texts of a PDF file, page by page."""

import re
import zlib


def objects_of(data):
    """By number: what describes an object, and its stream."""
    objects = {}
    for number, body in re.findall(rb"(\d+) 0 obj\n(.*?)endobj", data, re.S):
        head, _, stream = body.partition(b"stream\n")
        objects[int(number)] = (head, zlib.decompressobj().decompress(stream) if b"/FlateDecode" in head else stream)
    return objects


def letters_of(table):
    """The characters by the numbers that a font has for them."""
    letters = {}
    for part in re.findall(r"beginbfchar(.*?)endbfchar", table, re.S):
        for number, text in re.findall(r"<(\w+)> <(\w+)>", part):
            letters[int(number, 16)] = bytes.fromhex(text).decode("utf-16-be")
    for part in re.findall(r"beginbfrange(.*?)endbfrange", table, re.S):
        for first, last, text in re.findall(r"<(\w+)> <(\w+)> <(\w+)>", part):
            for number in range(int(first, 16), int(last, 16) + 1):
                letters[number] = chr(int(text, 16) + number - int(first, 16))
    return letters


def pages_of(data):
    """The texts as they are painted, without blanks."""
    objects = objects_of(data)

    def stream(pattern, head):
        return objects[int(re.search(pattern + rb" (\d+) 0 R", head)[1])][1].decode("latin-1")

    fonts = {number: (letters_of(stream(rb"/ToUnicode", head)), 4 if b"/Type0" in head else 2)
             for number, (head, _) in objects.items() if b"/ToUnicode" in head}
    pages = []
    for head, _ in objects.values():
        if not re.search(rb"/Type /Page\b", head):
            continue
        names = {name.decode(): int(number) for name, number in re.findall(rb"/(F\d+) (\d+) 0 R", head)}
        text = ""
        for name, glyphs in re.findall(r"/(F\d+) [\d.]+ Tf|<([0-9A-Fa-f]+)>", stream(rb"/Contents", head)):
            if name:
                letters, width = fonts[names[name]]
            text += "".join(letters.get(int(glyphs[i:i + width], 16), "?") for i in range(0, len(glyphs), width))
        pages.append("".join(text.split()))
    return pages
