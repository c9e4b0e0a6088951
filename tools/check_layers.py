#!/usr/bin/env python3
"""Checks that every include of the library points down the layer list."""
import os
import re
import sys

LAYERS = ["api", "utils", "asc2bin", "bin2asc", "sections", "instructions", "text", "binfmt",
          "core", "platform"]
SAME_LEVEL = {("sections", "instructions"), ("instructions", "sections")}
RANK = {name: i for i, name in enumerate(LAYERS)}
RANK["instructions"] = RANK["sections"]


def main(root):
    bad = []
    for layer in LAYERS:
        folder = os.path.join(root, layer)
        for name in sorted(os.listdir(folder)) if os.path.isdir(folder) else []:
            if not name.endswith((".h", ".cpp")):
                continue
            with open(os.path.join(folder, name), encoding="latin-1") as f:
                for number, line in enumerate(f, 1):
                    m = re.match(r'\s*#include "([a-z0-9_]+)/', line)
                    if not m or m.group(1) not in RANK:
                        continue
                    target = m.group(1)
                    if RANK[target] < RANK[layer]:
                        bad.append(f"{layer}/{name}:{number}: includes {target}/")
    for b in bad:
        print(b)
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else "."))
