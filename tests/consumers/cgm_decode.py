#!/usr/bin/python3
"""A decoder of binary CGM files, as a reader of the CGM driver's output: it walks the
elements by their headers and partitions, checks that every length stays inside the file
and that the elements come in the order the standard allows (BEGIN METAFILE first, the
descriptor, then pictures each with BEGIN PICTURE, its descriptor, BEGIN PICTURE BODY,
drawing and END PICTURE, and END METAFILE; only blanks after it), and draws the
polylines, polygons and polygon sets of a picture into a PNG (PIL) to look at.

Usage: cgm_decode.py FILE.cgm [OUT.png [PICTURE]]   exits 1 with a message on a fault.
"""
import struct
import sys

NAMES = {
    (0, 1): "BEGIN METAFILE", (0, 2): "END METAFILE", (0, 3): "BEGIN PICTURE",
    (0, 4): "BEGIN PICTURE BODY", (0, 5): "END PICTURE",
    (1, 1): "METAFILE VERSION", (1, 2): "METAFILE DESCRIPTION", (1, 11): "METAFILE ELEMENT LIST",
    (2, 1): "SCALING MODE", (2, 2): "COLOUR SELECTION MODE",
    (2, 3): "LINE WIDTH SPECIFICATION MODE", (2, 6): "VDC EXTENT", (2, 7): "BACKGROUND COLOUR",
    (4, 1): "POLYLINE", (4, 7): "POLYGON", (4, 8): "POLYGON SET",
    (5, 3): "LINE WIDTH", (5, 4): "LINE COLOUR", (5, 22): "INTERIOR STYLE",
    (5, 23): "FILL COLOUR",
}


class Fault(Exception):
    pass


def elements(data):
    """Yields (class, id, parameters, offset) and the offset after END METAFILE last."""
    at = 0
    while at < len(data):
        if at + 2 > len(data):
            raise Fault(f"header cut at byte {at}")
        head = struct.unpack_from(">H", data, at)[0]
        start = at
        at += 2
        cls, eid, n = head >> 12, (head >> 5) & 0x7F, head & 0x1F
        params = b""
        if n < 31:
            params = data[at:at + n]
            at += n + (n & 1)
        else:
            more = True
            while more:
                if at + 2 > len(data):
                    raise Fault(f"partition header cut at byte {at}")
                word = struct.unpack_from(">H", data, at)[0]
                at += 2
                more, m = bool(word & 0x8000), word & 0x7FFF
                params += data[at:at + m]
                at += m + (m & 1)
        if at > len(data):
            raise Fault(f"element {cls},{eid} at byte {start} runs past the end")
        yield cls, eid, params, start
        if (cls, eid) == (0, 2):
            rest = data[at:]
            if rest.strip(b" "):
                raise Fault("bytes other than blanks after END METAFILE")
            if len(data) % 80 != 0:
                raise Fault(f"length {len(data)} is not a multiple of 80")
            return


def decode(data, picture_wanted=1):
    """Checks the order; returns (extent, shapes of the wanted picture, pictures)."""
    state = "start"
    pictures = 0
    extent = None
    shapes = []
    colour = (0, 0, 0)
    fill = (0, 0, 0)
    width = 1
    ended = False
    for cls, eid, p, at in elements(data):
        key = (cls, eid)
        if key not in NAMES:
            raise Fault(f"unknown element {cls},{eid} at byte {at}")
        name = NAMES[key]
        if state == "start":
            if key != (0, 1):
                raise Fault(f"{name} before BEGIN METAFILE")
            state = "metafile"
        elif key == (0, 1):
            raise Fault("a second BEGIN METAFILE")
        elif state == "metafile":
            if key == (0, 3):
                state = "picture"
                pictures += 1
            elif key == (0, 2):
                ended = True
            elif cls != 1:
                raise Fault(f"{name} in the metafile descriptor")
        elif state == "picture":
            if key == (0, 4):
                state = "body"
            elif cls != 2:
                raise Fault(f"{name} in a picture descriptor")
            elif key == (2, 6):
                extent = struct.unpack(">4h", p[:8])
        elif state == "body":
            if key == (0, 5):
                state = "metafile"
            elif cls not in (4, 5):
                raise Fault(f"{name} inside a picture body")
            elif pictures == picture_wanted:
                if key == (5, 4):
                    colour = tuple(p[:3])
                elif key == (5, 23):
                    fill = tuple(p[:3])
                elif key == (5, 3):
                    width = struct.unpack(">h", p[:2])[0]
                elif key in ((4, 1), (4, 7)):
                    if len(p) % 4 != 0 or len(p) < 8:
                        raise Fault(f"{name} of {len(p)} bytes at byte {at}")
                    pts = list(zip(*[iter(struct.unpack(f">{len(p) // 2}h", p))] * 2))
                    shapes.append(("line" if key == (4, 1) else "fill", colour if key == (4, 1) else fill, width, [pts]))
                elif key == (4, 8):
                    if len(p) % 6 != 0:
                        raise Fault(f"POLYGON SET of {len(p)} bytes at byte {at}")
                    rings, ring = [], []
                    for x, y, flag in struct.iter_unpack(">hhh", p):
                        ring.append((x, y))
                        if flag in (2, 3):
                            rings.append(ring)
                            ring = []
                    if ring:
                        raise Fault(f"POLYGON SET without a closing flag at byte {at}")
                    shapes.append(("fill", fill, width, rings))
    if not ended:
        raise Fault("no END METAFILE")
    return extent, shapes, pictures


def draw(extent, shapes, out, scale=0.1):
    from PIL import Image, ImageDraw
    x0, y0, x1, y1 = extent
    w, h = int((x1 - x0) * scale) + 1, int((y1 - y0) * scale) + 1
    img = Image.new("RGB", (w, h), "white")
    d = ImageDraw.Draw(img)

    def tr(pt):
        return ((pt[0] - x0) * scale, (y1 - pt[1]) * scale)

    for kind, rgb, width, rings in shapes:
        for ring in rings:
            pts = [tr(p) for p in ring]
            if kind == "line":
                d.line(pts, fill=rgb, width=max(1, int(width * scale)))
            elif len(pts) >= 3:
                d.polygon(pts, fill=rgb)
    img.save(out)


def main():
    data = open(sys.argv[1], "rb").read()
    wanted = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    try:
        extent, shapes, pictures = decode(data, wanted)
    except Fault as e:
        print(f"{sys.argv[1]}: {e}")
        return 1
    if len(sys.argv) > 2:
        draw(extent, shapes, sys.argv[2])
    print(f"{sys.argv[1]}: {pictures} picture(s), {len(shapes)} shapes in picture {wanted}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
