#!/usr/bin/env python3
"""Checks one printed basket: what was asked of the printer, and where it stands in the PDF.

  check_pages.py LOG PDF [--lines N] [--pages N] [--kind KIND] [--frames]

LOG is written by print_cases. The layout is computed here once more, from the paper and the grid's
column widths, and compared exactly with what was asked; then every text is looked up in the PDF and
must stand within one point of its place. --frames renders the first page at the printer's own
resolution and checks the lines' places and that all are equally thick.
"""
import argparse
import html
import os
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

GRID = [("", 400), ("ArtNr", 1000), ("Bezeichnung", 2470), ("Menge", 800), ("Preis ATS", 1085),
        ("Preis EURO", 1085), ("Katalog", 0), ("KatalogURL", 0), ("Gesamt ATS", 1135),
        ("Ges. EURO", 1135)]
WORDS = ["Ringmappe A4", "Kugelschreiber blau", "Kopierpapier weiß", "Heftklammern",
         "Schreibblock", "Klebestift groß"]
ASCENT = 0.891  # of the font, in ems
TITLE = "Vexmart Demo Warenkorb 1.1 - Büro.bsk"
problems = []


def expect(condition, message):
    if not condition:
        problems.append(message)


def amount(hundredths):
    return f"{hundredths // 100:,}".replace(",", ".") + f",{hundredths % 100:02}"


def prices(row):
    """Pieces, schillings and euro of one line, the amounts in hundredths."""
    ats = 990 + row * 7919 % 180000
    return 1 + row % 12, ats, round(round(ats / 100 / 13.7603, 2) * 100)


def expected_row(row, lines, kind):
    """The texts of one grid row, and whether it is the totals row."""
    if row == lines + 1:
        all_prices = [prices(r) for r in range(1, row)]
        sums = [amount(sum(p[0] * p[i] for p in all_prices)) if lines else "" for i in (1, 2)]
        return ["", "", "Gesamt", "", "", "", "", ""] + sums, True
    text = {"plain": WORDS[row % 6],
            "long": f"Beschreibung {row} die für ihre Spalte bei weitem zu lang ist und weitergeht",
            "umlauts": f"ÄÖÜäöüß € {row}"}[kind]
    pieces, ats, euro = prices(row)
    return [str(row), str(4700 + row), text, str(pieces), amount(ats), amount(euro), "Katalog",
            "http://www.vexmart.example/", amount(pieces * ats), amount(pieces * euro)], False


def check_log(log, lines, kind):
    width, height, text_height = log["page"]
    total = sum(w for _, w in GRID)
    x = [round(width * 0.06)]
    for _, w in GRID:
        x.append(x[-1] + round(w * (width * 0.9)) // total)
    line = text_height + 120
    per_page = height // line - 6
    pages = (lines + per_page) // per_page
    asked = {}
    for text in log["texts"]:
        asked.setdefault(text["page"], []).append(text)
    expect(sorted(asked) == list(range(1, pages + 1)), f"pages {sorted(asked)}, not 1 to {pages}")
    for page in range(1, pages + 1):
        texts = iter(asked.get(page, []))

        def following(what, left, top, points, bold, right=None, cut=False):
            got = next(texts, None)
            if got is None:
                problems.append(f"page {page}: {what} is missing")
                return
            whole = got["text"] == what or (cut and what.startswith(got["text"]))
            place = (got["x"] == left) if right is None else (got["x"] + got["width"] == right)
            expect(whole and place and (got["y"], got["points"], got["bold"]) == (top, points, bold),
                   f"page {page}: {what} expected at {left or right},{top}, asked: {got}")

        following("Warenkorb", x[0], line, 16, True)
        footer = next(texts)
        expect(footer["text"] == f"Seite {page} von {pages}" and
               footer["x"] + footer["width"] == x[10] and footer["points"] == 12 and
               not footer["bold"], f"page {page}: footer {footer}")
        y = round(line * 2.8)
        for c, (caption, w) in enumerate(GRID):
            if w and caption:
                following(caption, x[c] + 45, y + 30, 10, True)
        for row in range((page - 1) * per_page + 1, min(page * per_page, lines + 1) + 1):
            y += line
            cells, bold = expected_row(row, lines, kind)
            for c, text in enumerate(cells):
                if not GRID[c][1] or not text:
                    continue
                if c <= 2:
                    following(text, x[c] + 45, y + 30, 10, bold, cut=True)
                else:
                    following(text, None, y + 30, 10, bold, right=x[c + 1] - 45, cut=True)
        expect(next(texts, None) is None, f"page {page}: more was asked than expected")
    for text in log["texts"]:  # nothing wider than its column
        for c in range(10):
            if text["points"] == 10 and x[c] < text["x"] < x[c + 1]:
                expect(text["width"] <= x[c + 1] - x[c] - 45, f"too wide: {text}")
    return x, line, pages


def read_log(path):
    log = {"texts": [], "messages": []}
    with open(path, encoding="utf-8") as file:
        for record in file.read().splitlines():
            kind, *fields = record.split("\t")
            if kind == "paper":
                names = "dpi_x dpi_y width height left top paper_width paper_height".split()
                log["paper"] = dict(zip(names, map(int, fields)))
            elif kind == "page":
                log["page"] = tuple(map(int, fields))
            elif kind == "text":
                page, left, top, points, bold, width = map(int, fields[:6])
                log["texts"].append({"page": page, "x": left, "y": top, "points": points,
                                     "bold": bool(bold), "width": width, "text": fields[6]})
            elif kind == "message":
                log["messages"].append(fields[0])
            elif kind == "end":
                log["end"] = fields
    return log


def glyphs(pdf):
    """Per page: (character, left, right, baseline) in points from the top left."""
    text = subprocess.run(["gs", "-q", "-dNOPAUSE", "-dBATCH", "-r7200", "-sDEVICE=txtwrite",
                           "-dTextFormat=0", "-sOutputFile=-", pdf],
                          check=True, capture_output=True).stdout.decode("utf-8")
    pages = []
    for page in text.split("<page>")[1:]:
        found = re.findall(r'<char bbox="(-?\d+) (-?\d+) (-?\d+) -?\d+" c="([^"]*)"', page)
        pages.append([(html.unescape(c), int(left) / 100, int(right) / 100, int(base) / 100)
                      for left, base, right, c in found])
    return pages


def check_pdf(log, pdf, pages):
    bbox = subprocess.run(["pdftotext", "-bbox", pdf, "-"], check=True, capture_output=True).stdout
    root = ElementTree.fromstring(bbox)
    space = {"h": "http://www.w3.org/1999/xhtml"}
    printed = [[word.text for word in page.findall("h:word", space)]
               for page in root.findall(".//h:page", space)]
    expect(len(printed) == pages, f"the PDF has {len(printed)} pages, not {pages}")
    expect(TITLE in root.find(".//h:title", space).text, "the document has another name")
    paper = log["paper"]
    worst = 0.0
    for number, (words, page) in enumerate(zip(printed, glyphs(pdf)), 1):
        on_baseline = {}
        for glyph in page:
            on_baseline.setdefault(round(glyph[3]), []).append(glyph)
        asked = []
        for text in log["texts"]:
            if text["page"] != number:
                continue
            asked += text["text"].split()
            left = paper["left"] * 72 / paper["dpi_x"] + text["x"] / 20
            right = left + text["width"] / 20
            base = paper["top"] * 72 / paper["dpi_y"] + text["y"] / 20 + ASCENT * text["points"]
            near = [glyph for n in (-1, 0, 1) for glyph in on_baseline.get(round(base) + n, [])]
            off = max(min((max(abs(glyph[edge] - place), abs(glyph[3] - base)) for glyph in near
                           if glyph[0] == letter), default=999.0)
                      for letter, place, edge in ((text["text"][0], left, 1),
                                                  (text["text"][-1], right, 2)))
            expect(off <= 1, f"page {number}: {text['text']} is {off:.2f} points off")
            worst = max(worst, off)
        expect(sorted(asked) == sorted(words), f"page {number}: other words than were printed")
    return worst


def runs(pixels):
    """(start, length) of the dark stretches."""
    found, start = [], None
    for i, value in enumerate(list(pixels) + [255]):
        if value < 128 and start is None:
            start = i
        elif value >= 128 and start is not None:
            found.append((start, i - start))
            start = None
    return found


def check_frames(log, pdf, x, line):
    paper = log["paper"]
    with tempfile.TemporaryDirectory() as folder:
        image = os.path.join(folder, "page.pgm")
        subprocess.run(["gs", "-q", "-dNOPAUSE", "-dBATCH", "-dFirstPage=1", "-dLastPage=1",
                        "-sDEVICE=pgmraw", f"-r{paper['dpi_x']}", f"-sOutputFile={image}", pdf],
                       check=True, stdout=subprocess.DEVNULL)
        with open(image, "rb") as file:
            data = file.read()
    header = re.match(rb"P5\s+(?:#.*\n)?(\d+)\s+(\d+)\s+255\s", data)
    columns = int(header.group(1))
    pixels = memoryview(data)[header.end():]
    dots = paper["dpi_x"] / 1440
    y = round(line * 2.8)
    # across the header line, between the feet of its letters and its lower frame
    across = int(paper["top"] + (y + line - 40) * dots)
    edges = [(edge * dots + paper["left"], "vertical") for edge in sorted(set(x))]
    lines = runs(pixels[across * columns:(across + 1) * columns])
    thick = compare_lines(lines, edges)
    # down the line numbers' column, right of the numbers
    down = int(paper["left"] + (x[1] - 30) * dots)
    begin = int(paper["top"] + (y - 60) * dots)
    lines = [(start + begin, length) for start, length in
             runs(pixels[i * columns + down] for i in range(begin, len(pixels) // columns))]
    edges = [((y + n * line) * dots + paper["top"], "horizontal") for n in range(len(lines))]
    expect(len(lines) >= 3, f"{len(lines)} horizontal lines")
    return max(thick, compare_lines(lines, edges))


def compare_lines(lines, edges):
    """Every line lies on its edge, and all are equally thick: their thickness."""
    expect(len(lines) == len(edges), f"{len(lines)} lines, {len(edges)} edges: {lines}")
    expect(len({length for _, length in lines}) == 1, f"uneven lines: {lines}")
    for (start, length), (edge, what) in zip(lines, edges):
        middle = start + length / 2
        expect(abs(middle - edge) <= 1.5, f"{what} line at dot {middle} for the edge {edge}")
    return max((length for _, length in lines), default=0)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("log")
    parser.add_argument("pdf")
    parser.add_argument("--lines", type=int, required=True)
    parser.add_argument("--pages", type=int)
    parser.add_argument("--kind", default="plain")
    parser.add_argument("--frames", action="store_true")
    arguments = parser.parse_args()
    log = read_log(arguments.log)
    expect(not log["messages"], f"messages: {log['messages']}")
    if "page" not in log:
        sys.exit(f"nothing was printed: {log['messages']}")
    x, line, pages = check_log(log, arguments.lines, arguments.kind)
    if arguments.pages is not None:
        expect(pages == arguments.pages, f"{pages} pages, not {arguments.pages}")
    expect(log.get("end") == ["vorher", str(pages)],
           f"status bar and painting at the end: {log.get('end')}")
    worst = check_pdf(log, arguments.pdf, pages)
    thick = check_frames(log, arguments.pdf, x, line) if arguments.frames else None
    for problem in problems[:20]:
        print("  " + problem)
    if problems:
        sys.exit(f"{len(problems)} problems")
    print(f"  {pages} pages, {len(log['texts'])} texts, at most {worst:.2f} points off" +
          (f", lines {thick} dots thick" if thick else ""))


main()
