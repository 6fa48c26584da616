#!/ usr / bin / env python3
"""Draws the toolbar glyphs and the window's icon from pictures.txt.

  make_pictures.py pictures.txt OUTPUT_FOLDER

Writes OUTPUT_FOLDER/glyph_<number>_<size>.bmp (4 bits a pixel, the classic 16 colours, magenta for
"nothing here"), OUTPUT_FOLDER/basket.ico and OUTPUT_FOLDER/pictures.rc, which names them all.

The source has one shape a line, later shapes over earlier ones, in units of which 16 make the width
of the picture. Edges are moved to whole pixels before anything is drawn, so that lines stay crisp
at every size:

  glyph NUMBER NAME          starts a toolbar glyph (bitmap resource NUMBER)
  icon NUMBER                starts the icon
  rect COLOUR x y w h        filled rectangle
  frame COLOUR x y w h       its outline, inside
  poly COLOUR x,y x,y ...    filled polygon
  line COLOUR x,y x,y ...    line through pixels (a unit square each)
  disc COLOUR x y r          filled circle around a point
  ring COLOUR x y r          its outline
"""
import math
import os
import struct
import sys

PALETTE = {
    'black': (0, 0, 0), 'maroon': (128, 0, 0), 'green': (0, 128, 0), 'olive': (128, 128, 0),
    'navy': (0, 0, 128), 'purple': (128, 0, 128), 'teal': (0, 128, 128), 'silver': (192, 192, 192),
    'gray': (128, 128, 128), 'red': (255, 0, 0), 'lime': (0, 255, 0), 'yellow': (255, 255, 0),
    'blue': (0, 0, 255), 'magenta': (255, 0, 255), 'aqua': (0, 255, 255), 'white': (255, 255, 255),
}
NAMES = list(PALETTE)
NOTHING = 'magenta'
#resource numbers of a glyph : NUMBER for 16 pixels, NUMBER + offset for the others
GLYPH_SIZES = {16: 0, 20: 1000, 24: 2000, 32: 3000, 40: 4000, 48: 5000, 64: 6000}
ICON_SIZES = (16, 24, 32, 48)


class Canvas:
    """A square picture; `sub` samples to the pixel in each direction smooth its edges."""

    def __init__(self, size, sub=1):
        self.size = size
        self.n = size * sub
        self.scale = size / 16.0
        self.sub = sub
        self.stroke = max(1, size // 16) * sub
        self.cells = [[None] * self.n for _ in range(self.n)]

    def at(self, value):
        """A coordinate as a whole pixel (in samples)."""
        return int(math.floor(value * self.scale + 0.5)) * self.sub

    def fill(self, colour, x0, y0, x1, y1):
        for y in range(max(0, y0), min(self.n, y1)):
            for x in range(max(0, x0), min(self.n, x1)):
                self.cells[y][x] = colour

    def rect(self, colour, x, y, w, h):
        self.fill(colour, self.at(x), self.at(y), self.at(x + w), self.at(y + h))

    def frame(self, colour, x, y, w, h):
        x0, y0, x1, y1, t = self.at(x), self.at(y), self.at(x + w), self.at(y + h), self.stroke
        self.fill(colour, x0, y0, x1, y0 + t)
        self.fill(colour, x0, y1 - t, x1, y1)
        self.fill(colour, x0, y0, x0 + t, y1)
        self.fill(colour, x1 - t, y0, x1, y1)

    def poly(self, colour, points):
        if self.sub == 1:
            points = [(self.at(x), self.at(y)) for x, y in points]
        else:
            points = [(x * self.scale * self.sub, y * self.scale * self.sub) for x, y in points]
        for y in range(self.n):
            cy = y + 0.5
            crossings = []
            for (x0, y0), (x1, y1) in zip(points, points[1:] + points[:1]):
                if (y0 <= cy) != (y1 <= cy):
                    crossings.append(x0 + (cy - y0) * (x1 - x0) / (y1 - y0))
            crossings.sort()
            for left, right in zip(crossings[::2], crossings[1::2]):
                for x in range(max(0, math.ceil(left - 0.5)), min(self.n, math.ceil(right - 0.5))):
                    self.cells[y][x] = colour

    def line(self, colour, points):
        t = self.stroke
        if self.sub > 1:
            t = max(t, int(self.scale * self.sub))
#from the first sample of the first unit square to that of the last
        points = [(self.at(x), self.at(y)) for x, y in points]
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            steps = max(abs(x1 - x0), abs(y1 - y0), 1)
            for i in range(steps + 1):
                x = int(math.floor(x0 + (x1 - x0) * i / steps + 0.5))
                y = int(math.floor(y0 + (y1 - y0) * i / steps + 0.5))
                self.fill(colour, x, y, x + t, y + t)

    def disc(self, colour, x, y, r, inner=-1.0):
        cx, cy = x * self.scale * self.sub, y * self.scale * self.sub
        outer = r * self.scale * self.sub
        for py in range(self.n):
            for px in range(self.n):
                d = math.hypot(px + 0.5 - cx, py + 0.5 - cy)
                if inner < d <= outer:
                    self.cells[py][px] = colour

    def ring(self, colour, x, y, r):
        width = self.stroke if self.sub == 1 else max(self.stroke, self.scale * self.sub)
        self.disc(colour, x, y, r, r * self.scale * self.sub - width)

    def draw(self, shapes):
        for kind, colour, arguments in shapes:
            if kind in ('poly', 'line'):
                getattr(self, kind)(colour, arguments)
            else:
                getattr(self, kind)(colour, *arguments)

    def pixel(self, x, y):
        """(red, green, blue, alpha) of a pixel: the mean of its samples."""
        total = [0, 0, 0]
        covered = 0
        for sy in range(self.sub):
            for sx in range(self.sub):
                colour = self.cells[y * self.sub + sy][x * self.sub + sx]
                if colour is not None:
                    covered += 1
                    for i in range(3):
                        total[i] += PALETTE[colour][i]
        if covered == 0:
            return 0, 0, 0, 0
        return (*(round(c / covered) for c in total), round(255 * covered / self.sub ** 2))


def bitmap(canvas):
    """A 4-bit .bmp file."""
    size = canvas.size
    stride = (size + 1) // 2 + 3 & ~3
    rows = bytearray()
    for y in range(size - 1, -1, -1):
        row = bytearray(stride)
        for x in range(size):
            index = NAMES.index(canvas.cells[y][x] or NOTHING)
            row[x // 2] |= index << (4 if x % 2 == 0 else 0)
        rows += row
    colours = b''.join(struct.pack('BBBB', b, g, r, 0) for r, g, b in PALETTE.values())
    header = struct.pack('<IiiHHIIiiII', 40, size, size, 1, 4, 0, len(rows), 0, 0, 16, 16)
    offset = 14 + len(header) + len(colours)
    return struct.pack('<2sIHHI', b'BM', offset + len(rows), 0, 0, offset) + header + colours + rows


def icon(canvases):
    """An .ico file with 32 bits a pixel and a mask for those who cannot blend."""
    images = []
    for canvas in canvases:
        size = canvas.size
        pixels, mask = bytearray(), bytearray()
        for y in range(size - 1, -1, -1):
            row = bytearray((size + 31) // 32 * 4)
            for x in range(size):
                r, g, b, a = canvas.pixel(x, y)
                pixels += struct.pack('BBBB', b, g, r, a)
                if a < 128:
                    row[x // 8] |= 0x80 >> x % 8
            mask += row
        header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask),
                             0, 0, 0, 0)
        images.append((size, header + pixels + mask))
    out = struct.pack('<HHH', 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, image in images:
        out += struct.pack('<BBBBHHII', size, size, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    return out + b''.join(image for _, image in images)


def read(path):
    """[(kind, number, shapes)]"""
    pictures = []
    with open(path, encoding='utf-8') as source:
        for number, text in enumerate(source, 1):
            words = text.split('#')[0].split()
            if not words:
                continue
            try:
                if words[0] in ('glyph', 'icon'):
                    pictures.append((words[0], int(words[1]), []))
                elif words[0] in ('poly', 'line'):
                    points = [tuple(float(v) for v in word.split(',')) for word in words[2:]]
                    if any(len(p) != 2 for p in points):
                        raise ValueError('a point has two coordinates')
                    pictures[-1][2].append((words[0], words[1], points))
                elif words[0] in ('rect', 'frame', 'disc', 'ring'):
                    pictures[-1][2].append((words[0], words[1], [float(v) for v in words[2:]]))
                else:
                    raise ValueError('unknown shape')
                if words[0] not in ('glyph', 'icon') and words[1] not in PALETTE:
                    raise ValueError('unknown colour')
            except (ValueError, IndexError) as error:
                sys.exit(f'{path}:{number}: {error}')
    return pictures


def main(source, folder):
    os.makedirs(folder, exist_ok=True)
    lines = []

    def write(name, data):
        with open(os.path.join(folder, name), 'wb') as out:
            out.write(data)

    for kind, number, shapes in read(source):
        if kind == 'icon':
            canvases = [Canvas(size, 8) for size in ICON_SIZES]
            for canvas in canvases:
                canvas.draw(shapes)
            write('basket.ico', icon(canvases))
            lines.append(f'{number} ICON "basket.ico"')
            continue
        for size, offset in GLYPH_SIZES.items():
            canvas = Canvas(size)
            canvas.draw(shapes)
            write(f'glyph_{number}_{size}.bmp', bitmap(canvas))
            lines.append(f'{number + offset} BITMAP "glyph_{number}_{size}.bmp"')
    write('pictures.rc', ('\n'.join(lines) + '\n').encode())


if __name__ == '__main__':
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
