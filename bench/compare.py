#!/usr/bin/python3
"""Compares rounds of the programs that were kept with rounds of the present ones, which took turns.

    bench/compare.py SUSPECTS KEPT,NEW KEPT,NEW ...

SUSPECTS is a file that gets the works that have changed; if it exists, only the works in it are compared. Each of the
other arguments is a round: two files of results. Another program that is busy on the same core slows samples by up to
the half, and never makes one faster, so that the fastest samples are compared: a work counts as changed if the fastest
fifth of each round says so, in the same direction in all rounds but one and by a median of 3 % or more, and the fastest
tenth of all samples together, too. Of eight rounds that differ by chance alone, seven agree in 7 of 100 works (the test
of signs), and in the same direction when they are measured again in 1 of 400. With less than 3 %, two builds of the
same sources differ as well. Where nothing has changed, the samples of the new programs are also made 10 % slower, and
works in which that would not be noticed are listed: there was too much noise. Ends with 1 if a work has become slower.
"""
import os
import statistics
import sys

from results import amount, higher_is_better, read, title

LEAST_CHANGE = 0.03
NOTICED = 1.1


def rounds_of(arguments):
    return [tuple(read(path) for path in argument.split(",")) for argument in arguments]


def fastest(samples, share, work):
    """The sample that this share of the others is faster than."""
    return sorted(samples, reverse=higher_is_better(work))[int(share * len(samples))]


def changed(work, pairs, factor=1):
    """How many times slower the new samples are if they differ, otherwise nothing; they are made slower by the factor."""
    def slower(kept, new, share):
        ratio = fastest(new, share, work) / fastest(kept, share, work)
        return factor * (1 / ratio if higher_is_better(work) else ratio)

    rounds = [slower(kept.samples, new.samples, 0.2) for kept, new in pairs]
    ratio = statistics.median(rounds)
    direction = 1 if ratio > 1 else -1
    together = slower(*([sample for pair in pairs for sample in pair[at].samples] for at in (0, 1)), 0.1)
    agreeing = sum(1 for each in rounds if (each - 1) * direction > 0)
    if min((ratio - 1) * direction, (together - 1) * direction) < LEAST_CHANGE or agreeing < len(rounds) - 1:
        return None
    return ratio


def main():
    suspects_file = sys.argv[1]
    rounds = rounds_of(sys.argv[2:])
    compared = None
    if os.path.exists(suspects_file):
        with open(suspects_file, encoding="utf-8") as lines:
            compared = lines.read().splitlines()
    suspects = []
    slower = faster = same = 0
    lines = []
    blind = []
    for work, sizes in rounds[0][1].items():
        for rows, peers in sizes.items():
            for peer in peers:
                pairs = []
                for kept, new in rounds:
                    both = [run.get(work, {}).get(rows, {}).get(peer) for run in (kept, new)]
                    if all(entry and entry.samples for entry in both):
                        pairs.append(both)
                suspect = f"{work} {rows} {peer}"
                if not pairs or (compared is not None and suspect not in compared):
                    continue
                name = f"{title(work)}, {rows:,} rows, {peer}"
                ratio = changed(work, pairs)
                if ratio is None:
                    same += 1
                    if (changed(work, pairs, NOTICED) or 0) <= 1:
                        blind.append(name)
                    continue
                suspects.append(suspect)
                slower += ratio > 1
                faster += ratio < 1
                kept, new = (fastest([sample for pair in pairs for sample in pair[at].samples], 0.1, work) for at in (0, 1))
                lines.append(f"{'slower' if ratio > 1 else 'faster'}: {name}: {amount(work, new)} instead of "
                             f"{amount(work, kept)} (takes {ratio:.2f} times as long, {len(pairs)} rounds)")
    with open(suspects_file, "w", encoding="utf-8") as file:
        file.writelines(suspect + "\n" for suspect in suspects)
    for line in sorted(lines):
        print(line)
    for name in blind:
        print(f"10 % slower would not be noticed: {name}")
    print(f"{slower} slower, {faster} faster, {same} the same" + (f", {len(blind)} of them with much noise" if blind else ""))
    return 1 if slower else 0


sys.exit(main())
