#!/usr/bin/env python3
"""Satin columns through the digitizer: each strip stitched as satin against
the same strip stitched as a fill.

Usage: inkstitch_satin.py PICTRACE SHARED_DIR WORK_DIR [PICTURE WIDTH ...]

Traces a synthetic picture of strips (straight, bent and branching, 1.5 to
3 mm at ten units a millimetre, and a block that is no strip) and the given
pictures (default: the shared flag and frog at 100mm) with --inkstitch, and
again with --no-satin. The whole satin design must stitch with no error and
no warning from the digitizer or its troubleshoot; then every strip's
columns are stitched alone and must reach the strip's extent (within 0.5 mm
on the synthetic strips, 1.2 mm on traced pictures, whose strips end in
rounded or ragged tips), and the strip's fill is stitched for the stitch
counts. Exits 77
(skipped) when the digitizer is not set up.
"""
import json
import os
import re
import struct
import subprocess
import sys

SKIP = 77
STRIPS = [(40, 30, 440, 50, (220, 0, 0)), (40, 90, 240, 115, (0, 160, 0)), (215, 90, 240, 200, (0, 160, 0)),
          (280, 90, 460, 120, (0, 0, 220)), (360, 120, 375, 240, (0, 0, 220)), (40, 150, 160, 270, (230, 200, 0))]


def write_strips(path, width=500, height=300):
    row = (width * 3 + 3) // 4 * 4
    data = bytearray()
    for stored in range(height):
        y = height - 1 - stored
        line = bytearray()
        for x in range(width):
            c = (255, 255, 255)
            for x0, y0, x1, y1, color in STRIPS:
                if x0 <= x < x1 and y0 <= y < y1:
                    c = color
            line += bytes((c[2], c[1], c[0]))
        data += line + b"\0" * (row - 3 * width)
    header = struct.pack("<2sIHHI", b"BM", 54 + len(data), 0, 0, 54)
    header += struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    with open(path, "wb") as f:
        f.write(header + data)


def paths(svg):
    """(colour, satin, d, bbox) of every path, and the SVG's head (root and metadata)."""
    text = open(svg).read()
    head = text[:text.index("<g ")]
    out = []
    for m in re.finditer(r'<path style="([^"]*)"([^>]*) d="([^"]*)"', text):
        color = re.search(r"(?:fill|stroke):(#[0-9a-f]{6})", m.group(1)).group(1)
        satin = 'satin_column="true"' in m.group(2)
        d = m.group(3)
        # A satin column's extent is its rails' (the first two sub-paths).
        body = "M".join(d.split("M")[:3]) if satin else d
        nums = [float(v) for v in re.findall(r"-?\d+(?:\.\d+)?(?:e-?\d+)?", body)]
        xs, ys = nums[0::2], nums[1::2]
        out.append((color, satin, m.group(0) + "/>", (min(xs), min(ys), max(xs), max(ys))))
    return head, out


def stitch(tool, head, elements, name, check=False):
    svg = name + ".svg"
    with open(svg, "w") as f:
        f.write(head + '<g id="layer1" inkscape:groupmode="layer">\n' + "\n".join(elements) + "\n</g>\n</svg>\n")
    args = [os.path.join(tool, "stitch.sh")] + ([] if check else ["--no-check"]) + [svg, name + ".dst"]
    run = subprocess.run(args, capture_output=True, text=True)
    return json.loads(run.stdout.strip().splitlines()[-1])


def main(pictrace, shared, work, *pictures):
    tool = os.path.join(shared, "tools", "inkstitch")
    if not os.path.isfile(os.path.join(tool, "stitch.sh")) or not os.path.isdir(
            os.environ.get("INKSTITCH_HOME", "/tmp/inkstitch-tool")):
        print("Ink/Stitch is not set up: skipped")
        return SKIP
    os.makedirs(work, exist_ok=True)
    strips = os.path.join(work, "strips.bmp")
    write_strips(strips)
    runs = [(strips, None)]
    pictures = pictures or (os.path.join(shared, "images", "clip_flag_kr.png"), "100mm",
                            os.path.join(shared, "images", "line_frog.png"), "100mm")
    runs += list(zip(pictures[0::2], pictures[1::2]))
    failures = 0
    for picture, width in runs:
        slack = 0.5 if width is None else 1.2
        base = os.path.join(work, os.path.splitext(os.path.basename(picture))[0])
        size = ["--width", width] if width else []
        for suffix, extra in (("", []), ("-fill", ["--no-satin"])):
            subprocess.run([pictrace, "trace", picture, "-o", base + suffix + ".svg", "--inkstitch"] + size + extra,
                           check=True, capture_output=True)
        head, satin = paths(base + ".svg")
        text = open(base + ".svg").read()
        whole = stitch(tool, head, [text[text.index("<g "):text.rindex("</svg>")]], base + "-all", check=True)
        found = sum(sum(v.values()) for v in whole.get("check", {}).values()) + len(whole["errors"]) + len(whole["warnings"])
        print(f"{os.path.basename(picture)}: {whole['stitches']} stitches, digitizer findings {whole.get('check')}, "
              f"errors {whole['errors'][:2]}, warnings {whole['warnings'][:2]}")
        failures += found > 0 or not whole["ok"]
        _, fills = paths(base + "-fill.svg")
        groups = {}
        for color, is_satin, element, box in satin:
            if not is_satin:
                continue
            # The strip: the smallest fill of that colour around the column.
            around = [(b[2] - b[0]) * (b[3] - b[1]) for c, _, _, b in fills]
            best = min((i for i, (c, _, _, b) in enumerate(fills) if c == color and b[0] - 3 <= box[0]
                        and b[1] - 3 <= box[1] and b[2] + 3 >= box[2] and b[3] + 3 >= box[3]),
                       key=lambda i: around[i], default=None)
            groups.setdefault(best, []).append(element)
        totals = [0, 0]
        for n, (strip, columns) in enumerate(sorted(groups.items(), key=lambda g: -1 if g[0] is None else g[0])):
            if strip is None:
                print(f"  {len(columns)} columns lie outside every strip")
                failures += 1
                continue
            box = fills[strip][3]
            s = stitch(tool, head, columns, f"{base}-satin{n}")
            f = stitch(tool, head, [fills[strip][2]], f"{base}-fill{n}")
            want = ((box[2] - box[0]) / 10, (box[3] - box[1]) / 10)
            short = max(want[0] - s["width_mm"], want[1] - s["height_mm"])
            print(f"  strip {n}: {want[0]:.1f} x {want[1]:.1f} mm, satin ({len(columns)} columns) "
                  f"{s['width_mm']:.1f} x {s['height_mm']:.1f} mm in {s['stitches']} stitches, "
                  f"fill {f['width_mm']:.1f} x {f['height_mm']:.1f} mm in {f['stitches']} stitches")
            totals[0] += s["stitches"]
            totals[1] += f["stitches"]
            failures += short > slack or not s["ok"]
        print(f"  all strips: satin {totals[0]} stitches, fill {totals[1]} stitches")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
