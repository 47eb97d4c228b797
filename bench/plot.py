"""Draws what a row costs against the number of rows, from the tables that site_bench prints.

    plot.py FIGURES > docs/cost-by-rows.svg

FIGURES holds lines of those tables; any other line is passed over.
"""

import math
import sys

WIDTH, HEIGHT = 720, 400
LEFT, RIGHT, TOP, BOTTOM = 60, 170, 20, 45
LINES = [  # phase, column of the seconds, name, colour, dashes
    ("site.first_fill", 2, "first fill", "#1b6ca8", ""),
    ("site.first_fill", 3, "its plain loop", "#1b6ca8", "2 4"),
    ("site.first_fill", 10, "its script", "#1b6ca8", "8 4"),
    ("site.second_copy", 2, "second copy", "#c25b12", ""),
    ("site.second_copy", 3, "its plain loop", "#c25b12", "2 4"),
    ("site.second_copy", 10, "its script", "#c25b12", "8 4"),
]


def points_of(lines, phase, column):
    for words in lines:
        if words[0] == phase and len(words) > column:
            yield int(words[1]), float(words[column]) * 1e6 / int(words[1])


def main():
    with open(sys.argv[1], encoding="ascii") as figures:
        lines = [line.split() for line in figures if line.startswith("site.") and len(line.split()) > 9]
    curves = [(sorted(points_of(lines, phase, column)), name, colour, dashes)
              for phase, column, name, colour, dashes in LINES]
    all_points = [point for curve in curves for point in curve[0]]
    first, last = (math.log10(edge(rows for rows, _ in all_points)) for edge in (min, max))
    step = 20 if max(cost for _, cost in all_points) > 80 else 10
    top = math.ceil(max(cost for _, cost in all_points) / step) * step

    def x(rows):
        return LEFT + (math.log10(rows) - first) / (last - first) * (WIDTH - LEFT - RIGHT)

    def y(cost):
        return HEIGHT - BOTTOM - cost / top * (HEIGHT - TOP - BOTTOM)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" '
           'font-size="12">', f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>']
    for cost in range(0, top + 1, step):
        out.append(f'<path d="M{LEFT} {y(cost):.0f}H{WIDTH - RIGHT}" stroke="#ddd"/>'
                   f'<text x="{LEFT - 8}" y="{y(cost) + 4:.0f}" text-anchor="end">{cost}</text>')
    for power in range(math.ceil(first), math.floor(last) + 1):
        out.append(f'<text x="{x(10 ** power):.0f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{10 ** power:,}</text>')
    out.append(f'<text x="{(WIDTH - RIGHT + LEFT) / 2:.0f}" y="{HEIGHT - 8}" text-anchor="middle">rows</text>')
    out.append(f'<text transform="translate(16 {(HEIGHT - BOTTOM + TOP) / 2:.0f}) rotate(-90)" text-anchor="middle">'
               'microseconds a row</text>')
    for place, (points, name, colour, dashes) in enumerate(curves):
        if not points:
            continue
        path = "L".join(f"{x(rows):.1f} {y(cost):.1f}" for rows, cost in points)
        line = f'fill="none" stroke="{colour}" stroke-width="2" stroke-dasharray="{dashes or "none"}"'
        at = TOP + 10 + 20 * place
        out.append(f'<path d="M{path}" {line}/><path d="M{WIDTH - RIGHT + 15} {at}h30" {line}/>'
                   f'<text x="{WIDTH - RIGHT + 52}" y="{at + 4}">{name}</text>')
    print("\n".join(out + ["</svg>"]))


main()
