"""A plot of lines over logarithmic axes, as SVG."""

from math import ceil, floor, log10
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 860, 480
LEFT, RIGHT, TOP, BOTTOM = 70, 270, 30, 60  # margins
COLOURS = ("#888888", "#bb7700", "#0055aa", "#00aaaa", "#aa0055", "#7755cc", "#000000")


def write_plot(file, what, over, lines):
    """Writes a plot of `lines`, pairs of a name and of points (x, y), all above 0."""
    points = [point for _, line in lines for point in line]
    x_axis = Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    y_axis = Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    parts = [f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>', text(LEFT, TOP - 12, what)]
    for tick in x_axis.ticks():
        x = x_axis.place(tick)
        parts += [grid_line(x, TOP, x, HEIGHT - BOTTOM), text(x, HEIGHT - BOTTOM + 20, f"{tick:,.0f}", "middle")]
    for tick in y_axis.ticks():
        y = y_axis.place(tick)
        parts += [grid_line(LEFT, y, WIDTH - RIGHT, y), text(LEFT - 8, y + 4, f"{tick:g}", "end")]
    parts.append(text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - BOTTOM + 45, over, "middle"))
    for number, (name, line) in enumerate(lines):
        colour = COLOURS[number % len(COLOURS)]
        places = [(x_axis.place(x), y_axis.place(y)) for x, y in line]
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>' for x, y in places]
        height = TOP + 20 + 22 * number
        parts.append(f'<circle cx="{WIDTH - RIGHT + 20}" cy="{height - 4}" r="5" fill="{colour}"/>')
        parts.append(text(WIDTH - RIGHT + 32, height, name))
    file.write_text(f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
                    'font-family="sans-serif" font-size="13">\n' + "\n".join(parts) + "\n</svg>\n")


class Axis:
    """Logarithmic, from the power of ten below the least value to the one above the greatest."""

    def __init__(self, values, start, end):
        self.low = floor(log10(min(values)))
        self.high = max(ceil(log10(max(values))), self.low + 1)
        self.start = start
        self.end = end

    def place(self, value):
        return self.start + (log10(value) - self.low) / (self.high - self.low) * (self.end - self.start)

    def ticks(self):
        return [10.0**power for power in range(self.low, self.high + 1)]


def grid_line(x1, y1, x2, y2):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="#dddddd"/>'


def text(x, y, content, anchor="start"):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}">{escape(content)}</text>'
