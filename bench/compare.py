#!/usr/bin/python3
"""Compares rounds of the programs that were kept with rounds of the present ones, which took turns.

    bench/compare.py KEPT,NEW KEPT,NEW ...

Each argument is a round: two files of results. A work counts as changed if the samples of all rounds differ by a
Mann-Whitney test (p below 0.001), if all rounds but one agree on the direction, and if the median of the rounds' ratios
is above 3 %: less than that, two builds of the same sources differ as well. Ends with 1 if a work has become slower.
"""
import statistics
import sys

from results import amount, higher_is_better, read, title
from scipy.stats import mannwhitneyu

LEAST_CHANGE = 0.03
LIKELIHOOD = 0.001


def rounds_of(arguments):
    return [tuple(read(path) for path in argument.split(",")) for argument in arguments]


def changed(ratios, kept, new):
    """Whether the new samples are higher (1), lower (-1) or neither (0)."""
    middle = statistics.median(ratios)
    if abs(middle - 1) < LEAST_CHANGE or mannwhitneyu(kept, new).pvalue > LIKELIHOOD:
        return 0
    direction = 1 if middle > 1 else -1
    agreeing = sum(1 for ratio in ratios if (ratio - 1) * direction > 0)
    return direction if agreeing >= len(ratios) - 1 else 0


def main():
    rounds = rounds_of(sys.argv[1:])
    slower = faster = same = 0
    lines = []
    for work, sizes in rounds[0][1].items():
        for rows, peers in sizes.items():
            for peer in peers:
                pairs = []
                for kept, new in rounds:
                    both = [run.get(work, {}).get(rows, {}).get(peer) for run in (kept, new)]
                    if all(entry and entry.samples for entry in both):
                        pairs.append(both)
                if not pairs:
                    continue
                ratios = [new.value / kept.value for kept, new in pairs]
                kept = [sample for pair in pairs for sample in pair[0].samples]
                new = [sample for pair in pairs for sample in pair[1].samples]
                direction = changed(ratios, kept, new) * (-1 if higher_is_better(work) else 1)
                if direction == 0:
                    same += 1
                    continue
                slower += direction > 0
                faster += direction < 0
                word = "slower" if direction > 0 else "faster"
                lines.append((direction, f"{word}: {title(work)}, {rows:,} rows, {peer}: "
                                         f"{amount(work, statistics.median(new))} instead of "
                                         f"{amount(work, statistics.median(kept))} "
                                         f"(x{statistics.median(ratios):.2f}, {len(pairs)} rounds)"))
    for _, line in sorted(lines):
        print(line)
    print(f"{slower} slower, {faster} faster, {same} the same")
    return 1 if slower else 0


sys.exit(main())
