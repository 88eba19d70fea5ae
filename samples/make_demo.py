#!/usr/bin/env python3
"""Writes the demo mine's data files and builds its world with tarvik-cli.

    make_demo.py OUT_DIR [--cli PATH] [--data-only]

The data are deterministic (a fixed seed) and in mine-grid metres: a decline
spiralling down from the portal, a level every 100 m with its access and ore
drives, stopes in the lode, ventilation raises, drillholes with collars,
surveys and attributes, seismic events and stress points.

The world is made by running demo.tvs (copied next to the data) through
`tarvik-cli run`. A section of the script marked "# section NAME [needs OTHER]"
... "# end section" is dropped when it uses a command or form the program does
not have yet, when it fails, or when the section it needs was dropped, so the
demo builds with whatever readers exist; sections.txt in OUT_DIR says what was
kept and why anything was dropped.
"""

import math
import os
import random
import re
import shutil
import subprocess
import sys

# The mine's reference corner, metres.
X0, Y0 = 478000.0, 6771000.0

# Decline: a spiral around this centre, 1 in 7 down from the portal.
DECLINE_CENTRE = (X0 + 250.0, Y0 + 250.0)
DECLINE_RADIUS = 60.0
DECLINE_GRADE = 1.0 / 7.0
DECLINE_STEP = 12.0  # metres of decline a segment
DRIVE_SIZE = 5.5  # width and height of decline and drives

LEVELS = [-100.0, -200.0, -300.0, -400.0, -500.0]
# The lode: strikes north along x = LODE_X at the surface, dips 75 degrees east.
LODE_X = X0 + 420.0
LODE_DIP = 75.0
LODE_Y = (Y0 + 120.0, Y0 + 380.0)

# Map3D colour codes (the importer's table): 1 blue, 3 yellow, 11 cyan, 4 red,
# 2 green, 5 pink, 13 light green.
CODE_DECLINE = 1
CODE_DRIVE = 11
CODE_STOPES = [4, 2, 3, 5]
CODE_RAISE = 13

SEED = 20260115


def fmt(v):
    """Millimetre text, without a trailing '.0' run."""
    s = "%.3f" % v
    s = s.rstrip("0").rstrip(".")
    return "0" if s in ("-0", "") else s


def lode_x(z):
    """The lode's east-west position at depth z (z <= 0)."""
    return LODE_X - z / math.tan(math.radians(LODE_DIP))


# ---- wireframes -----------------------------------------------------------


def tunnel_quads(a, b, width, height):
    """Floor, walls and back of a square tunnel from a to b (floor centre line)."""
    dx, dy = b[0] - a[0], b[1] - a[1]
    n = math.hypot(dx, dy)
    if n == 0:
        return []
    # Horizontal side vector, perpendicular to the tunnel.
    sx, sy = -dy / n * width / 2, dx / n * width / 2

    def corners(p):
        left_floor = (p[0] + sx, p[1] + sy, p[2])
        right_floor = (p[0] - sx, p[1] - sy, p[2])
        left_back = (left_floor[0], left_floor[1], p[2] + height)
        right_back = (right_floor[0], right_floor[1], p[2] + height)
        return left_floor, right_floor, right_back, left_back

    ca, cb = corners(a), corners(b)
    quads = []
    for i in range(4):
        j = (i + 1) % 4
        quads.append((ca[i], ca[j], cb[j], cb[i]))
    return quads


def box_quads(lo, hi):
    """The six faces of an axis-aligned box."""
    x0, y0, z0 = lo
    x1, y1, z1 = hi
    return [
        ((x0, y0, z0), (x1, y0, z0), (x1, y1, z0), (x0, y1, z0)),
        ((x0, y0, z1), (x0, y1, z1), (x1, y1, z1), (x1, y0, z1)),
        ((x0, y0, z0), (x0, y0, z1), (x1, y0, z1), (x1, y0, z0)),
        ((x0, y1, z0), (x1, y1, z0), (x1, y1, z1), (x0, y1, z1)),
        ((x0, y0, z0), (x0, y1, z0), (x0, y1, z1), (x0, y0, z1)),
        ((x1, y0, z0), (x1, y0, z1), (x1, y1, z1), (x1, y1, z0)),
    ]


def asc_lines(quads, code):
    """Four lines a facet: X Y Z, an unused column, the colour code."""
    out = []
    for q in quads:
        for p in q:
            out.append("%s %s %s 0 %d" % (fmt(p[0]), fmt(p[1]), fmt(p[2]), code))
    return out


def decline_path():
    """Floor centre points of the decline, portal first, down to the last level."""
    cx, cy = DECLINE_CENTRE
    dtheta = DECLINE_STEP / DECLINE_RADIUS
    dz = DECLINE_STEP * DECLINE_GRADE
    pts, theta, z = [], 0.0, 0.0
    bottom = LEVELS[-1] - 10.0
    while z >= bottom:
        pts.append((cx + DECLINE_RADIUS * math.cos(theta), cy + DECLINE_RADIUS * math.sin(theta), z))
        theta += dtheta
        z -= dz
    return pts


def decline_at(path, z):
    """The decline point closest to depth z."""
    return min(path, key=lambda p: abs(p[2] - z))


def make_declines(path):
    quads = []
    for a, b in zip(path, path[1:]):
        quads += tunnel_quads(a, b, DRIVE_SIZE, DRIVE_SIZE)
    return asc_lines(quads, CODE_DECLINE)


def make_drives(path):
    quads = []
    for z in LEVELS:
        start = decline_at(path, z)
        ore_x = lode_x(z) - 15.0  # the ore drive runs in the footwall
        access_end = (ore_x, start[1], start[2])
        quads += tunnel_quads(start, access_end, DRIVE_SIZE, DRIVE_SIZE)
        # Ore drive along strike, in segments so that it bends with the lode.
        ys = [LODE_Y[0] + i * 20.0 for i in range(int((LODE_Y[1] - LODE_Y[0]) / 20.0) + 1)]
        for ya, yb in zip(ys, ys[1:]):
            quads += tunnel_quads((ore_x, ya, start[2]), (ore_x, yb, start[2]), DRIVE_SIZE,
                                  DRIVE_SIZE)
    return asc_lines(quads, CODE_DRIVE)


def make_stopes():
    """Open stopes between levels, 25 m along strike, a colour per mining sequence."""
    lines = []
    for li, (top, bottom) in enumerate(zip(LEVELS, LEVELS[1:])):
        y = LODE_Y[0] + 10.0
        k = 0
        while y + 25.0 <= LODE_Y[1] - 10.0:
            if (k + li) % 3 != 2:  # pillars left between some stopes
                xm = lode_x((top + bottom) / 2)
                lo = (xm - 7.5, y, bottom + DRIVE_SIZE)
                hi = (xm + 7.5, y + 25.0, top)
                lines += asc_lines(box_quads(lo, hi), CODE_STOPES[(k + li) % len(CODE_STOPES)])
            y += 30.0
            k += 1
    return lines


def make_raises():
    """Two ventilation raises from surface to the bottom level, as pen strings."""
    lines = []
    for x, y in ((X0 + 320.0, Y0 + 90.0), (X0 + 330.0, Y0 + 410.0)):
        zs = [0.0] + LEVELS
        for i, z in enumerate(zs):
            pen = 3 if i == 0 else 2
            lines.append("%s %s %s %d %d" % (fmt(x), fmt(y), fmt(z), pen, CODE_RAISE))
    return lines


# ---- drillholes -----------------------------------------------------------


def make_drillholes(rng):
    """Collars, surveys and attributes of fans drilled across the lode."""
    collars, surveys, attributes = [], [], []
    holes = []
    for level in LEVELS[:4]:
        for j, y in enumerate((Y0 + 150.0, Y0 + 250.0, Y0 + 350.0)):
            hid = "DD%03d%d" % (-int(level), j + 1)
            x = lode_x(level) - 15.0
            depth = 90.0 + 10.0 * j
            holes.append((hid, x, y, level + 1.5, depth))
    for hid, x, y, z, depth in holes:
        collars.append("%s %s %s %s %s" % (hid, fmt(x), fmt(y), fmt(z), fmt(depth)))
        azimuth = 90.0 + rng.uniform(-8.0, 8.0)
        plunge = 25.0 + rng.uniform(-5.0, 5.0)
        d = 0.0
        while d < depth:
            surveys.append("%s %s %s %s" % (hid, fmt(d), fmt(azimuth), fmt(plunge)))
            azimuth += rng.uniform(-1.5, 1.5)
            plunge += rng.uniform(-0.8, 0.4)
            d += 30.0
        # Attribute intervals: better rock in the lode (from about 35 m).
        f = 0.0
        while f < depth:
            t = min(f + 10.0, depth)
            in_lode = 30.0 <= f < 60.0
            rqd = rng.randint(70, 98) if in_lode else rng.randint(35, 85)
            ucs = rng.randint(150, 220) if in_lode else rng.randint(90, 160)
            ff = round(rng.uniform(0.5, 3.0) if in_lode else rng.uniform(2.0, 12.0), 1)
            rec = rng.randint(92, 100)
            weathering = 1
            q = round(rng.uniform(5.0, 40.0) if in_lode else rng.uniform(0.5, 12.0), 2)
            rmr = rng.randint(60, 80) if in_lode else rng.randint(40, 65)
            rock_type = 2 if in_lode else 1
            lith = "QTZ" if in_lode else "BSLT"
            attributes.append("%s %s %s %d %d %d %d %s %s %d %d %s" % (
                hid, fmt(f), fmt(t), rec, rqd, ucs, weathering, fmt(ff), fmt(q), rmr,
                rock_type, lith))
            f = t
    return collars, surveys, attributes


# ---- seismic and stress ---------------------------------------------------


def make_seismic(rng):
    """Events clustered on the stoping front, magnitudes roughly Gutenberg-Richter."""
    lines = []
    seconds = 0
    for _ in range(240):
        seconds += rng.randint(600, 9000)
        day, rest = divmod(seconds, 86400)
        date = 20260101 + day if day < 31 else 20260201 + (day - 31)
        hh, rest = divmod(rest, 3600)
        mm, ss = divmod(rest, 60)
        z = min(-250.0, max(-520.0, rng.gauss(-400.0, 35.0)))
        x = lode_x(z) + rng.gauss(0.0, 12.0)
        y = rng.uniform(LODE_Y[0], LODE_Y[1])
        ml = -1.5 + rng.expovariate(2.3)
        lines.append("%d %02d%02d%02d %s %s %s %s" % (date, hh, mm, ss, fmt(x), fmt(y), fmt(z),
                                                       "%.2f" % min(ml, 2.4)))
    return lines


def make_stress(rng):
    """Principal stresses on a grid around the lower stopes, three mining steps."""
    lines = []
    for step in (1, 2, 3):
        for i in range(8):
            for j in range(8):
                for k in range(4):
                    z = -470.0 + 25.0 * k
                    x = lode_x(z) - 35.0 + 10.0 * i
                    y = LODE_Y[0] + 35.0 * j
                    near = math.exp(-abs(x - lode_x(z)) / 20.0)
                    s1 = 25.0 + 0.045 * -z + step * 6.0 * near + rng.uniform(-2.0, 2.0)
                    s3 = max(0.0, 8.0 - step * 2.5 * near + rng.uniform(-1.0, 1.0))
                    lines.append("\t".join(
                        [str(step), fmt(x), fmt(y), fmt(z), "%.2f" % s1, "%.2f" % s3]))
    return lines


# ---- the world ------------------------------------------------------------


def write_lines(path, lines):
    with open(path, "w") as f:
        for line in lines:
            f.write(line + "\n")


def write_data(out):
    rng = random.Random(SEED)
    path = decline_path()
    write_lines(os.path.join(out, "declines.asc"), make_declines(path))
    write_lines(os.path.join(out, "drives.asc"), make_drives(path))
    write_lines(os.path.join(out, "stopes.asc"), make_stopes())
    write_lines(os.path.join(out, "raises.pnt"), make_raises())
    collars, surveys, attributes = make_drillholes(rng)
    write_lines(os.path.join(out, "collars.txt"), collars)
    write_lines(os.path.join(out, "surveys.txt"), surveys)
    write_lines(os.path.join(out, "attributes.txt"), attributes)
    write_lines(os.path.join(out, "events.txt"), make_seismic(rng))
    write_lines(os.path.join(out, "stress.MCF"), make_stress(rng))


SECTION_START = re.compile(r"^#\s*section\s+(\S+)(?:\s+needs\s+(\S+))?\s*$")
SECTION_END = re.compile(r"^#\s*end section\s*$")


def split_sections(text, needs=None):
    """[(name or None, [lines])] in script order; `needs` gets each section's prerequisite."""
    parts, current, name = [], [], None
    for line in text.splitlines():
        m = SECTION_START.match(line)
        if m:
            parts.append((name, current))
            current, name = [], m.group(1)
            if needs is not None and m.group(2):
                needs[name] = m.group(2)
            continue
        if SECTION_END.match(line):
            parts.append((name, current))
            current, name = [], None
            continue
        current.append(line)
    parts.append((name, current))
    return parts


def missing_name(stderr):
    """The command or form a failed run did not know, or None."""
    m = re.search(r"unknown (?:command or button|command|form) '([^']+)'", stderr)
    return m.group(1) if m else None


def failing_line(stderr):
    """The script line a failed run names, or None."""
    m = re.search(r"\.tvs:(\d+):", stderr)
    return int(m.group(1)) if m else None


def build_world(out, cli, script_src):
    with open(script_src) as f:
        needs = {}
        parts = split_sections(f.read(), needs)
    dropped = {}
    script = os.path.join(out, "demo.tvs")
    while True:
        for n, prerequisite in needs.items():
            if prerequisite in dropped and n not in dropped:
                dropped[n] = "needs the %s section" % prerequisite
        kept = [(n, lines) for n, lines in parts if n is None or n not in dropped]
        spans = []  # (name, first line, last line) in the written script
        line_no = 1
        with open(script, "w") as f:
            for n, lines in kept:
                f.write("\n".join(lines) + "\n")
                spans.append((n, line_no, line_no + len(lines) - 1))
                line_no += len(lines)
        state = os.path.join(out, "demo.STATE")
        if os.path.exists(state):
            os.remove(state)
        r = subprocess.run([cli, "run", script, "--transcript", os.path.join(out, "demo.log")],
                           cwd=out, capture_output=True, text=True)
        if r.returncode == 0:
            break
        owner = None
        missing = missing_name(r.stderr)
        if missing:
            for n, lines in kept:
                if n is not None and any(missing in line for line in lines):
                    owner = n
                    break
        if owner is None:
            at = failing_line(r.stderr)
            for n, first, last in spans:
                if n is not None and at is not None and first <= at <= last:
                    owner = n
                    break
        if owner is None:
            sys.stderr.write("make_demo: the demo script failed:\n" + r.stderr)
            return 1
        if missing:
            dropped[owner] = "'%s' is not in the program yet" % missing
        else:
            message = r.stderr.strip().splitlines()[-1] if r.stderr.strip() else "exit %d" % (
                r.returncode)
            dropped[owner] = "failed: " + message
    with open(os.path.join(out, "sections.txt"), "w") as f:
        for n, _ in parts:
            if n is None:
                continue
            if n in dropped:
                f.write("%s\tskipped\t%s\n" % (n, dropped[n]))
            else:
                f.write("%s\tbuilt\n" % n)
    for n, why in dropped.items():
        print("make_demo: section %s left out: %s" % (n, why))
    return 0


def main(argv):
    args = argv[1:]
    if not args or args[0] in ("-h", "--help"):
        print(__doc__.strip())
        return 0 if args else 2
    out = args[0]
    cli = None
    data_only = False
    i = 1
    while i < len(args):
        if args[i] == "--cli" and i + 1 < len(args):
            cli = args[i + 1]
            i += 2
        elif args[i] == "--data-only":
            data_only = True
            i += 1
        else:
            sys.stderr.write("make_demo: unknown argument %s\n" % args[i])
            return 2
    os.makedirs(out, exist_ok=True)
    write_data(out)
    if data_only:
        return 0
    if not cli or not os.path.exists(cli):
        sys.stderr.write("make_demo: tarvik-cli not found (--cli PATH)\n")
        return 1
    here = os.path.dirname(os.path.abspath(__file__))
    return build_world(out, os.path.abspath(cli), os.path.join(here, "demo.tvs"))


if __name__ == "__main__":
    sys.exit(main(sys.argv))
