"""The screen of a private desktop as a user sees it: pictures, what changed between two of them, where an icon is and
how visible it is; and its pointer and keyboard. Coordinates are the screen's own pixels."""
import subprocess

import gi
import numpy

gi.require_version("GdkPixbuf", "2.0")
from gi.repository import GdkPixbuf, GLib  # noqa: E402
from ravlin_desktop import DEADLINE_SECONDS, eventually  # noqa: E402
from Xlib import X, display  # noqa: E402

BLOCK = 8  # pixels: what changes within this distance belongs together


class Area:
    """A rectangle of the screen; `right` and `bottom` are the first pixels outside."""

    def __init__(self, left, top, right, bottom):
        self.left, self.top, self.right, self.bottom = left, top, right, bottom

    @property
    def width(self):
        return self.right - self.left

    @property
    def height(self):
        return self.bottom - self.top

    @property
    def center(self):
        return (self.left + self.right) // 2, (self.top + self.bottom) // 2

    def overlaps(self, other):
        return (self.left < other.right and other.left < self.right and
                self.top < other.bottom and other.top < self.bottom)

    def gap_to(self, other):
        """The distance between the two, in the direction in which it is greater."""
        return max(self.left - other.right, other.left - self.right, self.top - other.bottom, other.top - self.bottom, 0)

    def grown(self, by):
        return Area(max(self.left - by, 0), max(self.top - by, 0), self.right + by, self.bottom + by)

    def shrunk(self, by):
        return Area(self.left + by, self.top + by, self.right - by, self.bottom - by)

    def of(self, pixels):
        return pixels[self.top:self.bottom, self.left:self.right]

    def __repr__(self):
        return f"{self.width}x{self.height}+{self.left}+{self.top}"


class Screen:
    """The X server on which a desktop runs, or which has a Wayland desktop as a window."""

    def __init__(self, name):
        self.display = display.Display(name)
        self.root = self.display.screen().root
        self.environment = {"DISPLAY": name, "PATH": "/usr/bin:/bin"}
        geometry = self.root.get_geometry()
        self.width, self.height = geometry.width, geometry.height

    def pixels(self):
        """What can be seen: height x width x (red, green, blue)."""
        data = self.root.get_image(0, 0, self.width, self.height, X.ZPixmap, 0xFFFFFFFF).data
        return numpy.frombuffer(data, numpy.uint8).reshape(self.height, self.width, 4)[:, :, 2::-1].copy()

    def settled(self):
        """The picture once nothing has moved for a moment, or else whatever is there after some seconds."""
        pictures = [self.pixels()]

        def is_quiet():
            pictures.append(self.pixels())
            return len(pictures) > 3 and all(changed(pictures[-1], each).sum() < 40 for each in pictures[-4:-1])

        try:
            eventually(is_quiet, "the screen is quiet", 8)
        except AssertionError:
            pass
        return pictures[-1]

    def input(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.environment, check=True, timeout=DEADLINE_SECONDS)

    def move(self, x, y):
        self.input("mousemove", x, y)

    def click(self, x, y, button=1):
        # In steps, as a hand does: some bars notice the pointer only by its motion.
        self.input("mousemove", x, y, "sleep", "0.05", "mousemove", x + 1, y, "sleep", "0.1", "click", button)

    def type(self, text):
        self.input("type", "--delay", 40, text)

    def key(self, name):
        self.input("key", "--delay", 40, name)


def save(pixels, path):
    height, width = pixels.shape[:2]
    data = GLib.Bytes.new(numpy.ascontiguousarray(pixels).tobytes())
    GdkPixbuf.Pixbuf.new_from_bytes(data, GdkPixbuf.Colorspace.RGB, False, 8, width, height, width * 3).savev(
        str(path), "png", [], [])


def changed(before, after):
    """Which pixels look different to the eye."""
    return numpy.abs(before.astype(int) - after).max(axis=2) > 12


def changed_areas(before, after):
    """What changed, in separate pieces, the largest first."""
    mask = changed(before, after)
    height, width = (side // BLOCK for side in mask.shape)
    blocks = mask[:height * BLOCK, :width * BLOCK].reshape(height, BLOCK, width, BLOCK).any(axis=(1, 3))
    left = {(int(y), int(x)) for y, x in zip(*numpy.nonzero(blocks))}
    areas = []
    while left:
        piece, todo = [], [left.pop()]
        while todo:
            y, x = todo.pop()
            piece.append((y, x))
            near = {(y + dy, x + dx) for dy in (-1, 0, 1) for dx in (-1, 0, 1)} & left
            left -= near
            todo.extend(near)
        rows, columns = zip(*piece)
        areas.append(_shrunk(mask, min(columns) * BLOCK, min(rows) * BLOCK, (max(columns) + 1) * BLOCK,
                             (max(rows) + 1) * BLOCK))
    return sorted(areas, key=lambda area: -area.width * area.height)


def _shrunk(mask, *sides):
    area = Area(*sides)
    rows, columns = numpy.nonzero(area.of(mask))
    return Area(area.left + int(columns.min()), area.top + int(rows.min()), area.left + int(columns.max()) + 1,
                area.top + int(rows.max()) + 1)


def luminance(color):
    """The relative luminance of WCAG, 0 to 1."""
    parts = [c / 12.92 if c <= 0.03928 else ((c + 0.055) / 1.055) ** 2.4 for c in (each / 255 for each in color)]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


def contrast(one, other):
    """The contrast ratio of WCAG, 1 to 21."""
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


class Icon:
    """A drawing where it was found on the screen, in whatever colours it was painted."""

    def __init__(self, area, likeness, contrast_to_bar):
        self.area, self.likeness, self.contrast = area, likeness, contrast_to_bar

    def __repr__(self):
        return f"{self.area} contrast {self.contrast:.1f}"


MINIMUM_LIKENESS = 0.8


def find_icon(pixels, bar, drawing, sizes):
    """The drawing in the bar, an area of the screen; None if nothing resembles it."""
    gray = bar.of(pixels).astype(float).mean(axis=2)
    best = (0, None, None, None)
    for size in sizes:
        mask = _drawn(drawing, size)
        if gray.shape[0] < size or gray.shape[1] < size:
            continue
        # In one colour, or in one with an edge in another.
        edge = _widened(mask) - mask
        edge -= mask * ((edge * (mask - mask.mean())).sum() / (mask * (mask - mask.mean())).sum())
        likeness = numpy.hypot(_likeness(gray, mask), _likeness(gray, edge))
        y, x = numpy.unravel_index(likeness.argmax(), likeness.shape)
        if likeness[y, x] > best[0]:
            best = (likeness[y, x], int(x), int(y), mask)
    likeness, x, y, mask = best
    if likeness < MINIMUM_LIKENESS:
        return None
    area = Area(bar.left + x, bar.top + y, bar.left + x + mask.shape[1], bar.top + y + mask.shape[0])
    return Icon(area, likeness, _contrast(area.of(pixels), mask))


def _contrast(part, mask):
    """The drawing's contrast to what is behind it: its inside's or its edge's, whichever is greater."""
    near = _widened(mask)
    inside, edge = mask >= numpy.quantile(mask, 0.93), (mask < 0.4) & (near > 0.6)
    background = numpy.median(part[near < 0.02], axis=0)
    return max(contrast(numpy.median(part[each], axis=0), background) for each in (inside, edge))


def _widened(mask):
    """The mask and the pixels next to it."""
    near = numpy.pad(mask, 1)
    return numpy.max([near[y:y + mask.shape[0], x:x + mask.shape[1]] for y in range(3) for x in range(3)], axis=0)


def _drawn(drawing, size):
    """How much of each pixel the drawing covers, 0 to 1, without the colours that it has in its file."""
    loader = GdkPixbuf.PixbufLoader.new_with_type("svg")
    loader.set_size(size, size)
    with open(drawing, "rb") as file:
        loader.write(file.read().replace(b":root", b":link"))
    loader.close()
    pixbuf = loader.get_pixbuf()
    data = numpy.frombuffer(pixbuf.get_pixels(), numpy.uint8)
    rows = [data[row * pixbuf.get_rowstride():][:size * 4] for row in range(size)]
    return numpy.array(rows).reshape(size, size, 4)[:, :, 3] / 255


def _likeness(gray, mask):
    """The correlation of the mask with every part of the picture of its size; 0 where that part has only one colour."""
    windows = numpy.lib.stride_tricks.sliding_window_view(gray, mask.shape)
    flat = mask - mask.mean()
    deviation = windows.std(axis=(2, 3))
    product = numpy.einsum("yxij,ij->yx", windows, flat)
    divisor = deviation * mask.std() * mask.size
    return numpy.divide(product, divisor, out=numpy.zeros_like(product), where=deviation > 0.7)
