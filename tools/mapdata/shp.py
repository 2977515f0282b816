"""A reader of the shapefile main file (.shp): polyline and polygon records (types 3, 5)
as lists of parts, each a list of (lon, lat) in degrees."""

import struct


def read_shp(path):
    data = open(path, "rb").read()
    if struct.unpack(">i", data[:4])[0] != 9994:
        raise ValueError("%s: not a shapefile" % path)
    records = []
    pos = 100
    while pos + 8 <= len(data):
        _, words = struct.unpack(">ii", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + 2 * words]
        pos += 8 + 2 * words
        kind = struct.unpack("<i", body[:4])[0]
        if kind == 0:
            continue
        if kind not in (3, 5):
            raise ValueError("%s: record type %d" % (path, kind))
        nparts, npoints = struct.unpack("<ii", body[36:44])
        starts = list(struct.unpack("<%di" % nparts, body[44:44 + 4 * nparts])) + [npoints]
        off = 44 + 4 * nparts
        xy = struct.unpack("<%dd" % (2 * npoints), body[off:off + 16 * npoints])
        pts = [(xy[2 * i], xy[2 * i + 1]) for i in range(npoints)]
        records.append([pts[starts[k]:starts[k + 1]] for k in range(nparts)])
    return records
