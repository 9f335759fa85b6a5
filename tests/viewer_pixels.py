#!/usr/bin/env python3
"""Looks at the viewer's window on the crossing of examples/editing: viewer_pixels.py PICTURE.ppm

The network reaches 200 m from its middle in all four directions; its roads are 14 m wide. Where the plan lies in the window
is taken from the picture: lanes have a colour of their own.
"""
import sys

LANE, CHOSEN, JUNCTION, PAPER = (0x8B, 0x93, 0x9E), (0xE8, 0x6A, 0x17), (0xC5, 0xCB, 0xD3), (0xFF, 0xFF, 0xFF)


def read(path):
    with open(path, "rb") as file:
        kind, size, depth, pixels = file.read().split(b"\n", 3)
    assert kind == b"P6" and depth == b"255", "no picture of the kind that was asked for"
    width, height = map(int, size.split())
    return width, height, pixels


def main():
    width, height, pixels = read(sys.argv[1])

    def at(x, y):
        return tuple(pixels[3 * (y * width + x) : 3 * (y * width + x) + 3])

    roads = [(x, y) for y in range(height) for x in range(width) if at(x, y) in (LANE, CHOSEN)]
    assert roads, "no lane is drawn"
    left, right = min(x for x, _ in roads), max(x for x, _ in roads)
    top, bottom = min(y for _, y in roads), max(y for _, y in roads)
    scale = (right - left + 1) / 400
    assert scale > 1 and abs((bottom - top + 1) / 400 - scale) < 0.02, f"{right - left} by {bottom - top} pixels for 400 m"

    def expect(x, y, colour, what):
        found = at(round(left + (x + 200) * scale), round(top + (200 - y) * scale))
        assert found == colour, f"{what} is {found}"

    # Who comes from the north drives on the west side; lane 1 is outside, and was chosen.
    expect(-5.25, 150, CHOSEN, "lane 1 from the north")
    expect(-1.75, 150, LANE, "lane 2 from the north")
    expect(5.25, 150, LANE, "lane 1 to the north")
    expect(-9, 150, PAPER, "beside the road from the north")
    expect(150, 5.25, LANE, "lane 1 from the east")
    expect(-150, -5.25, LANE, "lane 1 from the west")
    expect(0, -4, JUNCTION, "the middle of the crossing")
    expect(12, 12, PAPER, "the corner of the crossing")
    # The fields of what was chosen stand in black on white beside the plan.
    beside = [at(x, y) for y in range(60, height - 20) for x in range(right + 30, width - 20)]
    assert sum(pixel < (0x60, 0x60, 0x60) for pixel in beside) > 500, "no fields are shown"


main()
