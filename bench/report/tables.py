#!/usr/bin/python3 -B
"""Makes the page of figures from what qv_bench_audio has written:

    tables.py TABLE >PAGE
"""
import pathlib
import sys

HEAD = """# Audio figures

Made by `script/bench --report`; [benchmarks.md](benchmarks.md) says what is measured and how the peers are set up. Times
are ours, in processor time, on one core; the other columns say how many times as long the peer takes, so above 1 this
library is the faster one. Figures of other machines differ; the ratios less so.
"""


def read(file):
    """{group: {work: [(who, value, ratio)]}}, all in the order in which they were measured."""
    groups = {}
    for line in pathlib.Path(file).read_text().splitlines():
        group, work, who, value, ratio = line.split("\t")
        groups.setdefault(group, {}).setdefault(work, []).append((who, float(value), float(ratio)))
    return groups


def time(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3)):
        if seconds >= size:
            return f"{seconds / size:.3g} {unit}"
    return f"{seconds / 1e-6:.3g} µs"


def table(first, columns, rows):
    lines = [f"| {first} | " + " | ".join(columns) + " |", "|" + "---|" * (len(columns) + 1)]
    lines += [f"| {name} | " + " | ".join(cells) + " |" for name, cells in rows]
    return "\n".join(lines) + "\n"


def beside_peers(works):
    """Our time, and each peer's ratio; a work that a peer doesn't know has no figure for it."""
    peers = list(dict.fromkeys(who for rows in works.values() for who, _, _ in rows[1:]))
    rows = []
    for work, measured in works.items():
        ratios = {who: f"{ratio:.2f}" for who, _, ratio in measured[1:]}
        rows.append((work, [time(measured[0][1])] + [ratios.get(peer, "") for peer in peers]))
    return table("", ["ours"] + peers, rows)


def designs(works):
    columns = [who for who, _, _ in next(iter(works.values()))]
    return table("", columns, [(work, [time(value) for _, value, _ in rows]) for work, rows in works.items()])


def growth(works):
    channels, *lengths = works.items()
    work, rows = channels
    text = table(work, ["time", "beside the first"], [(who, [time(value), f"{ratio:.2f}"]) for who, value, ratio in rows])
    cells = [(work, [time(second[1]), f"{peak[1]:.1f} MiB"]) for work, (second, peak) in lengths]
    return text + "\n" + table("", ["a second of it", "peak of the process's memory"], cells)


def main():
    shapes = {"Designs": designs, "Growth": growth}
    print(HEAD)
    groups = read(sys.argv[1])
    print("\n".join(f"## {group}\n\n{shapes.get(group, beside_peers)(works)}" for group, works in groups.items()), end="")


main()
