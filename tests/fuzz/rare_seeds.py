"""Writes fuzzers' kept inputs in variants that no program at hand writes: rare_seeds.py FOLDER (see make-seeds)."""

import os
import struct
import sys
import zlib

W, H = 9, 5
folder = sys.argv[1]


def put(kind, name, *parts):
    os.makedirs(f"{folder}/{kind}", exist_ok=True)
    with open(f"{folder}/{kind}/rare_{name}", "wb") as file:
        file.write(b"".join(parts))


def noise(count, step=37):
    return bytes(i * step % 256 for i in range(count))


# BMP.
def bmp(name, bits, compression, rest, header=40, height=H, masks=b"", palette=b"", extra=b""):
    body = struct.pack("<iiHHIIiiII", W, height, 1, bits, compression, len(rest), 2835, 2835, len(palette) // 4, 0)
    body += masks if header == 40 else (masks + extra).ljust(header - 40, b"\0")
    start = 14 + 4 + len(body) + len(palette)
    info = struct.pack("<I", header) + body + palette
    put("bmp", name, b"BM", struct.pack("<IHHI", start + len(rest), 0, 0, start), info, rest)
    return info + rest


palette = b"".join(struct.pack("BBBB", i * 15, 255 - i * 11, i * 7, 0) for i in range(16))
rle4 = bytes([5, 0x12, 4, 0x34, 0, 0, 0, 5, 0x12, 0x34, 0x50, 0, 0, 2, 2, 1, 3, 0x77, 0, 0, 9, 0x11, 0, 1])
rle8 = bytes([5, 1, 4, 2, 0, 0, 0, 5, 1, 2, 3, 4, 5, 0, 0, 0, 0, 2, 2, 1, 3, 7, 0, 0, 9, 3, 0, 1])
rle24 = bytes([5, 10, 20, 30, 4, 40, 50, 60, 0, 0, 0, 3]) + noise(9) + bytes([0, 0, 0, 9, 1, 2, 3, 0, 1])
bmp("rle4", 4, 2, rle4, palette=palette)
bmp("rle8", 8, 1, rle8, palette=palette)
bmp("rle8_cut", 8, 1, rle8[:9], palette=palette)
bmp("rle8_outside", 8, 1, bytes([200, 1, 200, 2, 0, 1]), palette=palette)
bmp("two_bits", 2, 0, noise(4 * H), palette=palette[:16])
bmp("top_down", 24, 0, noise(28 * H), height=-H)
bmp("top_down_cut", 24, 0, noise(28 * 2), height=-H)
bmp("cut", 24, 0, noise(28 * 2))
bmp("masks", 16, 3, noise(20 * H), masks=struct.pack("<III", 0xF800, 0x7E0, 0x1F))
bmp("alpha_masks", 32, 6, noise(36 * H), masks=struct.pack("<IIII", 0xFF, 0xFF00, 0xFF0000, 0xFF000000))
bmp("v3", 32, 3, noise(36 * H), header=56, masks=struct.pack("<IIII", 0xFF, 0xFF00, 0xFF0000, 0xFF000000))
bmp("v3_plain", 32, 0, noise(36 * H), header=56, masks=struct.pack("<IIII", 0, 0, 0, 0xFF000000))
bmp("os2_rle24", 24, 4, rle24, header=64)
bmp("os2_fax", 1, 3, noise(20), header=64)
bmp("v5_profile", 24, 0, noise(28 * H), header=124, masks=struct.pack("<IIII", 0, 0, 0, 0),
    extra=b"DEBM" + bytes(48) + struct.pack("<III", 0, 124, 16))
put("bmp", "bare", bmp("plain", 24, 0, noise(28 * H)))
core = struct.pack("<IHHHH", 12, W, H, 1, 24)
put("bmp", "core", b"BM", struct.pack("<IHHI", 0, 0, 0, 0), core, noise(28 * H))

# PCX and DCX.
def pcx(bits, planes, line, rows, version=5, packed=1, end=b"", colors=bytes(48)):
    header = struct.pack("<BBBBHHHHHH", 10, version, packed, bits, 0, 0, W - 1, H - 1, 72, 72) + colors
    header += struct.pack("<BBHH", 0, planes, line, 1)
    return header.ljust(128, b"\0") + rows + end


put("pcx", "four_planes", pcx(8, 4, 10, noise(40 * H, 13), packed=0))
put("pcx", "two_bits", pcx(2, 1, 4, noise(4 * H, 11), packed=0, colors=noise(48)))
put("pcx", "card_colors", pcx(4, 1, 6, noise(6 * H, 11), packed=0, version=3))
put("pcx", "gray", pcx(8, 1, 10, noise(10 * H), packed=0))
put("pcx", "runs", pcx(8, 3, 10, bytes([0xC0 | 40, 7, 0xC0 | 63, 200, 0xC0 | 50, 9])))
put("pcx", "cut", pcx(8, 3, 10, bytes([0xC0 | 40, 7, 0xC0])))
one, two = pcx(1, 1, 2, noise(2 * H)), pcx(8, 3, 10, noise(30 * H, 13), packed=0)
put("pcx", "dcx", struct.pack("<IIII", 0x3ADE68B1, 16, 16 + len(one), 0), one, two)

# TGA.
def tga(kind, bits, rest, flags=0, map_bits=0, map_count=0, name=b"", area=None):
    header = struct.pack("<BBBHHBHHHHBB", len(name), map_bits > 0, kind, 0, map_count, map_bits, 0, 0, W, H, bits, flags)
    file = header + name + rest
    if area is not None:
        extension = struct.pack("<H", 495) + bytes(492) + bytes([area])
        file += extension + struct.pack("<II", len(file), 0) + b"TRUEVISION-XFILE.\0"
    return file


put("tga", "fifteen", tga(2, 15, noise(2 * W * H)))
put("tga", "sixteen", tga(2, 16, noise(2 * W * H), flags=0x31))
put("tga", "map16", tga(1, 8, noise(32) + bytes(i % 16 for i in range(W * H)), map_bits=16, map_count=16))
put("tga", "map32", tga(1, 16, noise(64) + bytes(v for i in range(W * H) for v in (i % 20, 0)), map_bits=32, map_count=16))
put("tga", "unused_map", tga(2, 24, noise(48) + noise(3 * W * H), map_bits=24, map_count=16, flags=0x10))
put("tga", "premultiplied", tga(2, 32, noise(4 * W * H), flags=8, area=4))
put("tga", "straight", tga(3, 16, noise(2 * W * H), flags=8, area=3))
put("tga", "empty_alpha", tga(2, 32, bytes(v for i in range(W * H) for v in (i, 2, 3, 0)), flags=8))
put("tga", "cut", tga(10, 24, bytes([0x80 | 20, 1, 2, 3, 5]) + noise(10)))

# PSD: modes and depths of the merged picture, and layers.
def psd(channels, depth, mode, rest, map_data=b"", resources=b"", layers=b"", large=False):
    head = b"8BPS" + struct.pack(">H6xHIIHH", 2 if large else 1, channels, H, W, depth, mode)
    head += struct.pack(">I", len(map_data)) + map_data + struct.pack(">I", len(resources)) + resources
    return head + struct.pack(">Q" if large else ">I", len(layers)) + layers + rest


def resource(number, content):
    return b"8BIM" + struct.pack(">HHI", number, 0, len(content)) + content + bytes(len(content) % 2)


def zipped(data, compression=2):
    return struct.pack(">H", compression) + zlib.compress(data)


raw = struct.pack(">H", 0)
floats = b"".join(struct.pack(">f", i / (W * H)) for i in range(W * H))
put("psd", "float", psd(1, 32, 1, raw + floats))
put("psd", "float_predicted", psd(1, 32, 1, zipped(noise(4 * W * H), 3)))
put("psd", "sixteen_predicted", psd(3, 16, 3, zipped(noise(6 * W * H), 3)))
put("psd", "eight_predicted", psd(3, 8, 3, zipped(noise(3 * W * H), 3)))
put("psd", "zip_cut", psd(3, 8, 3, zipped(noise(3 * W * H, 101))[:40]))
put("psd", "multichannel", psd(2, 8, 7, raw + noise(2 * W * H)))
put("psd", "duotone", psd(1, 8, 8, raw + noise(W * H)))
put("psd", "indexed", psd(1, 8, 2, raw + noise(W * H), map_data=noise(768)))
put("psd", "large", psd(4, 8, 3, raw + noise(4 * W * H), large=True))
put("psd", "cut", psd(3, 8, 3, raw + noise(2 * W * H + 20)))
runs = b"".join(bytes([3]) + noise(4) + bytes([252, 7]) for _ in range(3 * H))
put("psd", "runs", psd(3, 8, 3, struct.pack(">H", 1) + struct.pack(">H", 7) * (3 * H) + runs))
names = resource(1006, b"\x0cTransparency") + resource(1005, struct.pack(">IHHIHH", 72 << 16, 1, 1, 72 << 16, 1, 1))
put("psd", "named_alpha", psd(4, 8, 3, raw + noise(4 * W * H), resources=names))
put("psd", "named_mask", psd(4, 8, 3, raw + noise(4 * W * H), resources=resource(1006, b"\x04Mask")))


def layer(channels, mode=b"8BIMnorm", extra=b"\0" * 8 + b"\x03one", left=0):
    info = struct.pack(">h", -1) + struct.pack(">iiii", 0, left, H, W) + struct.pack(">H", len(channels))
    for number, content in channels:
        info += struct.pack(">hI", number, len(content))
    info += mode + bytes([255, 0, 0, 0]) + struct.pack(">I", len(extra)) + extra
    info += b"".join(content for _, content in channels)
    info += bytes(len(info) % 2)
    return struct.pack(">I", len(info)) + info + bytes(4)


plane = noise(W * H, 5)
planes = [(0, zipped(plane)), (1, zipped(plane, 3)), (2, raw + plane), (-1, raw + noise(W * H, 3))]
merged = raw + noise(4 * W * H)
put("psd", "layer_zip", psd(4, 8, 3, merged, layers=layer(planes)))
put("psd", "layer_blended", psd(4, 8, 3, merged, layers=layer(planes, mode=b"8BIMmul ")))
put("psd", "layer_moved", psd(4, 8, 3, merged, layers=layer(planes, left=1)))
put("psd", "layer_cut", psd(4, 8, 3, merged, layers=layer(planes)[:100]))
put("psd", "layer_gray", psd(2, 8, 1, raw + noise(2 * W * H), layers=layer(planes)))
