#!/usr/bin/env python3
"""Writes the pictures that once made the block stage's greedy merge crawl.

    bench/pathological.py OUT_DIR [--pictrace PROGRAM] [--photo PICTURE]
                          [--only NAME ...]

Pictures (PNG, 8-bit grey or RGB, standard library only):
  dither_0.25mp ... dither_2mp  the photo, resampled by `pictrace preview`,
                                grey, Floyd-Steinberg dithered to black/white
  checker_1mp, checker_4mp      one-pixel black/white checkerboard
  noise_1mp                     uniform random RGB noise (fixed seed)
The photo defaults to ../shared/images/photo_fig_large.png beside the
worktree; PROGRAM defaults to build/release/cli/pictrace.
"""
import argparse
import os
import random
import struct
import subprocess
import sys
import tempfile
import zlib

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DITHER_MP = {"dither_0.25mp": 0.25, "dither_0.5mp": 0.5, "dither_1mp": 1.0, "dither_2mp": 2.0}
CHECKER = {"checker_1mp": (1000, 1000), "checker_4mp": (2000, 2000)}
NOISE = {"noise_1mp": (1000, 1000)}


def write_png(path, width, height, channels, rows):
    """rows: an iterable of bytes, one per row, `channels` bytes a pixel."""
    raw = b"".join(b"\x00" + bytes(r) for r in rows)
    colour = {1: 0, 3: 2}[channels]

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, colour, 0, 0, 0)))
        f.write(chunk(b"IDAT", zlib.compress(raw, 6)))
        f.write(chunk(b"IEND", b""))


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def read_png_rgb(path):
    """Decodes a non-interlaced 8-bit RGB or RGBA PNG into (w, h, rows)."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        sys.exit(f"pathological: {path} is not a PNG")
    pos, idat, header = 8, [], None
    while pos < len(data):
        (length,) = struct.unpack(">I", data[pos:pos + 4])
        kind = data[pos + 4:pos + 8]
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat.append(body)
        pos += 12 + length
    w, h, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in (2, 6) or interlace:
        sys.exit(f"pathological: {path}: only 8-bit RGB/RGBA non-interlaced PNGs are read")
    bpp = 3 if colour == 2 else 4
    raw = zlib.decompress(b"".join(idat))
    stride = w * bpp
    prev = bytearray(stride)
    rows = []
    for y in range(h):
        start = y * (stride + 1)
        kind = raw[start]
        line = bytearray(raw[start + 1:start + 1 + stride])
        if kind == 1:
            for i in range(bpp, stride):
                line[i] = (line[i] + line[i - bpp]) & 255
        elif kind == 2:
            line = bytearray((a + b) & 255 for a, b in zip(line, prev))
        elif kind == 3:
            for i in range(stride):
                left = line[i - bpp] if i >= bpp else 0
                line[i] = (line[i] + ((left + prev[i]) >> 1)) & 255
        elif kind == 4:
            for i in range(stride):
                left = line[i - bpp] if i >= bpp else 0
                up_left = prev[i - bpp] if i >= bpp else 0
                line[i] = (line[i] + paeth(left, prev[i], up_left)) & 255
        prev = line
        rows.append(bytes(line[j] for j in range(stride) if j % bpp < 3) if bpp == 4 else bytes(line))
    return w, h, rows


def dithered(rows, w):
    """Grey (Rec. 601 luma) Floyd-Steinberg dithered to 0/255, row by row."""
    err_this = [0.0] * (w + 2)
    out = []
    for row in rows:
        err_next = [0.0] * (w + 2)
        line = bytearray(w)
        for x in range(w):
            r, g, b = row[3 * x], row[3 * x + 1], row[3 * x + 2]
            v = 0.299 * r + 0.587 * g + 0.114 * b + err_this[x + 1]
            q = 255 if v >= 128 else 0
            line[x] = q
            e = v - q
            err_this[x + 2] += e * 7 / 16
            err_next[x] += e * 3 / 16
            err_next[x + 1] += e * 5 / 16
            err_next[x + 2] += e * 1 / 16
        out.append(line)
        err_this = err_next
    return out


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("out_dir")
    ap.add_argument("--pictrace", default=os.path.join(ROOT, "build", "release", "cli", "pictrace"))
    ap.add_argument("--photo", default=os.path.join(ROOT, "..", "shared", "images", "photo_fig_large.png"))
    ap.add_argument("--only", nargs="*", help="names of the pictures to write (default: all)")
    args = ap.parse_args()
    os.makedirs(args.out_dir, exist_ok=True)
    wanted = set(args.only) if args.only else set(DITHER_MP) | set(CHECKER) | set(NOISE)

    for name, (w, h) in CHECKER.items():
        if name in wanted:
            even = bytes(0 if x % 2 == 0 else 255 for x in range(w))
            odd = bytes(255 - v for v in even)
            write_png(os.path.join(args.out_dir, name + ".png"), w, h, 1, (even if y % 2 == 0 else odd for y in range(h)))
    for name, (w, h) in NOISE.items():
        if name in wanted:
            rng = random.Random(14)
            write_png(os.path.join(args.out_dir, name + ".png"), w, h, 3, (rng.randbytes(3 * w) for _ in range(h)))
    dither = [n for n in DITHER_MP if n in wanted]
    if dither:
        if not os.access(args.pictrace, os.X_OK):
            sys.exit(f"pathological: no pictrace program at {args.pictrace} (build it, or pass --pictrace)")
        w0, h0 = photo_size(args)
        for name in dither:
            scale = (DITHER_MP[name] * 1e6 / (w0 * h0)) ** 0.5
            w, h = max(1, round(w0 * scale)), max(1, round(h0 * scale))
            with tempfile.TemporaryDirectory() as tmp:
                small = os.path.join(tmp, "photo.png")
                subprocess.run([args.pictrace, "preview", args.photo, "-o", small, "--width", str(w), "--height", str(h)],
                               check=True, stdout=subprocess.DEVNULL)
                _, _, rows = read_png_rgb(small)
            write_png(os.path.join(args.out_dir, name + ".png"), w, h, 1, dithered(rows, w))
    for name in sorted(wanted):
        print(os.path.join(args.out_dir, name + ".png"))


def photo_size(args):
    with open(args.photo, "rb") as f:
        head = f.read(24)
    if head[:8] != b"\x89PNG\r\n\x1a\n":
        sys.exit(f"pathological: {args.photo} is not a PNG")
    return struct.unpack(">II", head[16:24])


if __name__ == "__main__":
    main()
