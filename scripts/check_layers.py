#!/usr/bin/env python3
"""Checks that includes follow the project's layers; prints each one that
does not and exits 1 if there is any.

  platform/  the Win32/MFC subset: includes nothing of the project's above it
  include/   the host's headers: platform/ only
  core/      records every stage shares: include/, platform/
  segment/ outline/ thinline/  stages: core/, include/, platform/, themselves
  curve/     pure geometry: itself only
  embroidery/ stitch geometry on output shapes: core/, include/, platform/
  engine/    the facade's members and the job drivers: anything but cli/
  cli/       the command line: include/, platform/ and itself

Includes are written "folder/File.h" from the project root, or as a bare
"File.h" found beside the includer or in include/ or platform/.
"""
import os
import re
import sys

ALLOWED = {
    "platform": {"platform"},
    "include": {"include", "platform"},
    "core": {"core", "include", "platform"},
    "segment": {"segment", "core", "include", "platform"},
    "outline": {"outline", "core", "include", "platform"},
    "thinline": {"thinline", "core", "include", "platform"},
    "curve": {"curve"},
    "embroidery": {"embroidery", "core", "include", "platform"},
    "engine": {"engine", "core", "segment", "outline", "thinline", "curve", "embroidery", "include",
               "platform"},
    "cli": {"cli", "include", "platform"},
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def folder_of(root, own, name):
    if "/" in name:
        return name.split("/", 1)[0]
    for folder in (own, "include", "platform"):
        if os.path.isfile(os.path.join(root, folder, name)):
            return folder
    return None


def main(root):
    bad = []
    for top, allowed in sorted(ALLOWED.items()):
        for dirpath, _, files in os.walk(os.path.join(root, top)):
            for f in sorted(files):
                if not f.endswith((".h", ".cpp")):
                    continue
                path = os.path.join(dirpath, f)
                with open(path, encoding="utf-8", errors="replace") as fh:
                    for name in INCLUDE.findall(fh.read()):
                        target = folder_of(root, top, name)
                        if target is not None and target not in allowed:
                            bad.append("%s includes %s" % (os.path.relpath(path, root), name))
    for line in bad:
        print(line)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.dirname(os.path.abspath(__file__)))))
