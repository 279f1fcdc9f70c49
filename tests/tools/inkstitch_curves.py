#!/usr/bin/env python3
"""The digitizer's troubleshoot on the curve output of every shared picture.

Usage: inkstitch_curves.py PICTRACE SHARED_DIR WORK_DIR

Traces each picture of SHARED_DIR/images at 4 output units per pixel with
curves, runs Ink/Stitch's troubleshoot extension on the SVG (through the
helpers of SHARED_DIR/tools/inkstitch) and fails when it finds a border that
crosses itself. Exits 77 (skipped) when the digitizer is not set up.
"""
import glob
import os
import struct
import subprocess
import sys
import tempfile

SKIP = 77


def main(pictrace, shared, work):
    tool = os.path.join(shared, "tools", "inkstitch")
    sys.path.insert(0, tool)
    try:
        import stitch_report as ink
    except ImportError:
        print("Ink/Stitch helpers not found: skipped")
        return SKIP
    if os.path.realpath(sys.executable) != os.path.realpath(ink.PYTHON) and os.path.exists(ink.PYTHON):
        # The digitizer's helpers need the system Python's packages.
        os.execv(ink.PYTHON, [ink.PYTHON] + sys.argv)
    if not os.path.isfile(os.path.join(ink.SRC, "inkstitch.py")):
        print(f"Ink/Stitch is not set up ({tool}/setup.sh): skipped")
        return SKIP
    os.makedirs(work, exist_ok=True)
    failures = 0
    for picture in sorted(glob.glob(os.path.join(shared, "images", "*.png"))):
        with open(picture, "rb") as f:
            width, height = struct.unpack(">II", f.read(24)[16:24])
        svg = os.path.join(work, os.path.basename(picture) + ".svg")
        run = subprocess.run([pictrace, "trace", picture, "-o", svg, "--curves",
                              "--size", f"{4 * width}x{4 * height}"], capture_output=True, text=True)
        if run.returncode != 0:
            print(f"{picture}: trace failed: {run.stderr.strip()}")
            failures += 1
            continue
        config = tempfile.mkdtemp(prefix="inkstitch-cfg-")
        with tempfile.TemporaryFile() as out:
            rc, err, _ = ink.run_extension(["--extension=troubleshoot", svg], ink.inkstitch_env(config), out)
            out.seek(0)
            data = out.read()
        if rc != 0:
            print(f"{picture}: troubleshoot failed: {err.strip()[:300]}")
            failures += 1
            continue
        found = ink.parse_troubleshoot_svg(data) if data.strip() else {"errors": {}, "warnings": {}}
        crossings = sum(found.get(group, {}).get("Border crosses itself", 0) for group in ("errors", "warnings"))
        print(f"{os.path.basename(picture)} at {4 * width}x{4 * height} units: {crossings} borders crossing themselves; "
              f"errors {found.get('errors', {})}, warnings {found.get('warnings', {})}")
        failures += crossings > 0
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
