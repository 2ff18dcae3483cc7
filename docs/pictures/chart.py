"""Draws the results of scripts/bench as a chart: `chart.py RESULTS.json CHART.svg`. One bar a row and measure: what ours takes
of the reference, which is the line at 1. A goal is a mark on its bar."""

import html
import json
import sys

MEASURES = {"cpu": "CPU time", "wall": "time", "instructions": "instructions", "peak": "peak memory"}
LEFT, WIDTH, ROW, TOP = 420, 380, 26, 46


def draw(results):
    rows = [row for row in results if row["reference"] and row["measure"] in MEASURES]
    if not rows:
        sys.exit("the results have no ratios")
    longest = max(2.0, *(max(row["ratio"], row["goal"] or 0) for row in rows))
    x = lambda ratio: LEFT + WIDTH * ratio / longest
    height = TOP + ROW * len(rows) + 14
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {LEFT + WIDTH + 80} {height}" role="img" '
           'font-family="Helvetica, Arial, sans-serif" font-size="13" fill="#6b7f99">')
    yield "<title>What the library costs, as a share of the reference</title>"
    yield f'<text x="{x(1):.0f}" y="16" text-anchor="middle">1 = the reference</text>'
    yield f'<text x="{LEFT - 8}" y="16" text-anchor="end">less is better; the mark is the goal</text>'
    for number, row in enumerate(rows):
        y = TOP + ROW * number - 12
        what = row["what"].split(" / ")[0]
        name = html.escape(f"{row['row'] if what.startswith('the same') else what}, {MEASURES[row['measure']]}")
        colour = "#b3404a" if row["met"] is False else "#4a6fa5"
        yield f'<text x="{LEFT - 8}" y="{y + 14}" text-anchor="end">{name}</text>'
        yield f'<rect x="{LEFT}" y="{y}" width="{x(row["ratio"]) - LEFT:.1f}" height="18" rx="3" fill="{colour}"/>'
        if row["goal"]:
            yield f'<rect x="{x(row["goal"]):.1f}" y="{y - 2}" width="3" height="22" fill="#b8860b"/>'
        yield f'<text x="{max(x(row["ratio"]), x(row["goal"] or 0)) + 8:.0f}" y="{y + 14}">{row["ratio"]:.2f}</text>'
    yield f'<line x1="{x(1):.1f}" x2="{x(1):.1f}" y1="24" y2="{height - 6}" stroke="#6b7f99" stroke-dasharray="4 3"/>'
    yield "</svg>"


with open(sys.argv[1], encoding="utf-8") as file:
    text = "\n".join(draw(json.load(file))) + "\n"
with open(sys.argv[2], "w", encoding="utf-8") as file:
    file.write(text)
