# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

"""Measures the program beside its peers and holds the figures against limits.

Ours and the peers take turns, so that whatever else the machine does meets all
of them; the table shows medians. On a disk the peers write to it too: each is
given all files in one process, one random pass, and its fastest removal. Started by scripts/bench, which builds the
measuring programs. Arguments: their folder, the real program, where to write,
the document that a whole measurement goes into.
"""

import contextlib
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from dirtymemory import DirtyMemory
from places import Place, places

ROUNDS = int(os.environ.get("BENCH_ROUNDS", "5"))
SCALE = float(os.environ.get("BENCH_SCALE", "1"))
IDLE_SECONDS = int(os.environ.get("BENCH_IDLE_SECONDS", "3600"))


def scaled(number):
    """A size or a number of files, as large as is wanted today."""
    return max(1, round(number * SCALE))


MEBIBYTE = 1024 * 1024
LARGE = scaled(1024)  # MiB
HUGE = scaled(4096)  # MiB
MANY = scaled(10000)
STOPPED = 10000  # fewer would be gone before the click
TREES = tuple(map(scaled, (1000, 10000, 100000)))

# One random pass and the fastest removal that each of them has.
PEERS = {
    "shred -n1 -u": ["shred", "-n1", "-u"],
    "shred -n1 --remove=unlink": ["shred", "-n1", "--remove=unlink"],
    "wipe -q -Q1 -F -Z": ["wipe", "-f", "-s", "-q", "-Q1", "-F", "-Z", "-Sp"],
    "srm -ll": ["srm", "-ll"],
    "scrub -p random -r": ["scrub", "-S", "-p", "random", "-r"],
}

PROGRAMS, SHREDDER, OUTPUT, DOCUMENT = sys.argv[1:5]

# What lies between them in the document is the last whole measurement.
FIRST_LINE = "<!-- measured by scripts/bench, from here -->\n"
LAST_LINE = "<!-- to here -->\n"


class Table:
    """The figures, and the worst that each may be."""

    def __init__(self):
        self.rows = []

    def add(self, figure, place, ours, peer_name, peer, ratio, limit, met):
        """Ours and peer are texts with their units, met a bool."""
        self.rows.append((figure, place, ours, f"{peer_name} {peer}".strip(), ratio, limit,
                          "yes" if met else "**no**"))
        print(*self.rows[-1], sep=" | ", flush=True)

    def against(self, figure, place, ours, peer_name, peer, most):
        """Milliseconds of ours and a peer, and how many times the peer ours may take."""
        ratio = ours / peer
        self.add(figure, place, f"{ours:.0f} ms", peer_name, f"{peer:.0f} ms", f"{ratio:.2f}",
                 f"≤ {most:g} ×" if most >= 1 else f"≥ {1 / most:g} times faster", ratio <= most)

    def below(self, figure, place, ours, most, unit):
        """A figure of ours that has a limit of its own."""
        self.add(figure, place, f"{ours:.1f} {unit}", "", "", "", f"≤ {most:g} {unit}",
                 ours <= most)

    def markdown(self):
        head = ("figure", "where", "ours", "peer", "ratio", "limit", "met")
        lines = [head, ("---",) * len(head), *self.rows]
        return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def milliseconds(command):
    """How long a peer takes."""
    os.sync()
    begin = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return (time.monotonic() - begin) * 1000


def ours(place, program, *arguments, **environment):
    """What one of the measuring programs tells, by name."""
    os.sync()
    told = subprocess.run([os.path.join(PROGRAMS, program), *map(str, arguments)],
                          env={**place.environment(), **environment}, check=True,
                          stdout=subprocess.PIPE, text=True, timeout=900).stdout
    return {name: float(value) for name, value in map(str.split, told.splitlines())}


def rounds(*measurements, count=ROUNDS):
    """Medians of the measurements, which take turns."""
    taken = [[measurement() for measurement in measurements] for _ in range(count)]
    return [statistics.median(values) for values in zip(*taken)]


def removal(command, paths):
    """How long a peer takes to shred all of the paths."""
    took = milliseconds([*command, *paths])
    if any(map(os.path.lexists, paths)):
        sys.exit(f"{command[0]} has left something")
    return took


def large_file(table, place):
    def on_file(measure):
        return lambda: measure(place.file(LARGE * MEBIBYTE))

    def overwrite(*how, source="/dev/zero"):
        def dd(path):
            took = milliseconds(["dd", f"if={source}", f"of={path}", "status=none", *how])
            os.unlink(path)
            return took
        return dd

    # Bytes that no drive finds easy, from memory, and the removal, which takes a while as well.
    def overwrite_and_remove(path):
        with tempfile.NamedTemporaryFile(dir="/dev/shm") as source:
            for _ in range(LARGE):
                source.write(os.urandom(MEBIBYTE))
            source.flush()
            return milliseconds(["sh", "-c", f"dd if={source.name} of='{path}' bs=1M status=none "
                                             f"conv=notrunc,fdatasync && rm '{path}'"])

    def engine(path):
        return ours(place, "benchengine", path)["run_ms"]

    def window(path):
        return ours(place, "benchwindow", "run", path)["run_ms"]

    def peer(command):
        return lambda path: removal(command, [path])

    name = f"one file of {LARGE} MiB"
    if place.is_disk:
        dd = overwrite("bs=1M", f"count={LARGE}", "conv=notrunc,fdatasync")
        alone, whole, limit, removed, *peers = rounds(
            *map(on_file, (engine, window, dd, overwrite_and_remove, *map(peer, PEERS.values()))))
        table.against(f"{name}, whole program", place.name, whole,
                      "dd bs=1M conv=notrunc,fdatasync of zeros", limit, 1.15)
        table.against(f"{name}, whole program", place.name, whole,
                      "dd bs=1M conv=notrunc,fdatasync of random bytes, and rm", removed, 1.15)
        for told, taken in zip(PEERS, peers):
            table.against(f"{name}, whole program", place.name, whole, told, taken, 1)
    else:
        dd = overwrite("bs=4096", f"count={LARGE * MEBIBYTE // 4096}", "conv=notrunc")
        alone, whole, limit = rounds(*map(on_file, (engine, window, dd)))
        table.against(f"{name}, engine", place.name, alone, "dd bs=4096 conv=notrunc", limit, 1.15)
    table.below(f"{name}, whole program beyond the engine", place.name, whole - alone, 300, "ms")


def many_files(table, place):
    stalls = []

    def whole():
        told = ours(place, "benchwindow", "run", place.flat(MANY))
        stalls.append(told["stall_ms"])
        return told["run_ms"]

    def stop():
        told = ours(place, "benchwindow", "stop", place.flat(STOPPED))
        place.clear()
        stalls.append(told["stall_ms"])
        return told["stop_ms"]

    def peer(command):
        return lambda: removal(command, place.loose(MANY))

    def bare_loop():
        return ours(place, "bareloop", place.flat(MANY))["run_ms"]

    def remove():
        return milliseconds(["rm", "-rf", place.flat(MANY)])

    window, engine, answer, limit, *peers = rounds(
        whole,
        lambda: ours(place, "benchengine", place.flat(MANY))["run_ms"],
        stop,
        *([bare_loop, *map(peer, PEERS.values())] if place.is_disk else [remove]))
    alone = f"{MANY} files of 4 KiB, engine"
    name = f"{MANY} files of 4 KiB, whole program with history"
    if place.is_disk:
        table.against(alone, place.name, engine, "bare loop", limit, 1.5)
        table.against(name, place.name, window, "bare loop", limit, 2.5)
        for told, taken in zip(PEERS, peers):
            table.against(name, place.name, window, told, taken, 1 / 3)
    else:
        table.against(alone, place.name, engine, "rm -rf", limit, 4)
        table.against(name, place.name, window, "rm -rf", limit, 4)
    table.below(f"longest stall of the window in a run of {MANY} files", place.name,
                max(stalls), 50, "ms")
    table.below("a click on stop until the button answers", place.name, answer, 100, "ms")


def dirty_memory(table, place):
    """What waits to be written while a huge file is shredded, and the desktop with it."""
    def most():
        path = place.file(HUGE * MEBIBYTE)
        os.sync()
        with DirtyMemory() as dirty:
            ours(place, "benchwindow", "run", path)
        return dirty.growth_mib()

    growth_mib, = rounds(most)
    table.below(f"dirty memory while {HUGE} MiB are shredded, above what it was", place.name,
                growth_mib, 256, "MiB")


def growth(table, place, curves):
    for shape, make in (("flat", place.flat), ("nested", place.nested)):
        times = []
        for count in TREES:
            taken = [ours(place, "benchwindow", "run", make(count)) for _ in range(ROUNDS)]
            times.append(statistics.median(told["run_ms"] for told in taken))
            peak = statistics.median(told["peak_kib"] for told in taken) / 1024
            curves.append((place.name, shape, count, times[-1], peak))
            if len(times) > 1:
                table.add(f"{TREES[len(times) - 2]} → {count} files, {shape}", place.name,
                          f"{times[-1]:.0f} ms", "before", f"{times[-2]:.0f} ms",
                          f"{times[-1] / times[-2]:.2f}", "≤ 11 ×", times[-1] / times[-2] <= 11)
        table.below(f"memory at {TREES[-1]} files, {shape}", place.name, peak, 100, "MiB")


def table_rows(table, place):
    def dropped(count):
        taken = [ours(place, "benchwindow", "rows", *place.loose(count)) for _ in range(ROUNDS)]
        return {name: statistics.median(told[name] for told in taken) for name in taken[0]}

    few, many = dropped(50), dropped(200)
    table.below("a drop of 200 files until all rows are drawn", place.name, many["rows_ms"], 300,
                "ms")
    ratio = many["rows_ms"] / few["rows_ms"]
    table.add("50 → 200 rows", place.name, f"{many['rows_ms']:.0f} ms", "before",
              f"{few['rows_ms']:.0f} ms", f"{ratio:.2f}", "≤ 4.4 ×", ratio <= 4.4)
    for name, text in (("uncheck_ms", "untick all of 200 rows"),
                       ("check_ms", "tick all of 200 rows"), ("remove_ms", "remove 200 rows")):
        table.below(text, place.name, many[name], 100, "ms")


@contextlib.contextmanager
def screen():
    """The number of an X server's display; what is shown there is really drawn."""
    reading, writing = os.pipe()
    with subprocess.Popen(["Xvfb", "-noreset", "-displayfd", str(writing)], pass_fds=[writing],
                          stderr=subprocess.DEVNULL) as server:
        try:
            yield {"QT_QPA_PLATFORM": "xcb", "DISPLAY": ":" + os.read(reading, 16).decode().strip()}
        finally:
            server.terminate()


def start(table, place):
    """A start includes finding the X server and being shown by it."""
    with screen() as display:
        def shown(*program):
            return ours(place, *program, time.monotonic() * 1000, **display)["start_ms"]

        window, empty = rounds(lambda: shown("benchwindow", "start"), lambda: shown("benchempty"),
                               count=3 * ROUNDS)
    table.against("start until the window is drawn", "X server", window, "empty window", empty, 1.5)


def idle(table, place):
    """The real program from outside, by what the kernel counts for it. Nothing else runs then: on
    a busy machine each of its hundred looks a second for work costs more."""
    with screen() as display:
        program = subprocess.Popen([SHREDDER], env={**place.environment(), **display})

        def used():
            with open(f"/proc/{program.pid}/stat", encoding="ascii") as stat:
                ticks = sum(map(int, stat.read().rpartition(")")[2].split()[11:13]))
            with open(f"/proc/{program.pid}/status", encoding="ascii") as status:
                resident = [line for line in status if line.startswith("VmRSS")]
            if not resident:
                sys.exit("the program that was to idle has ended")
            return ticks / os.sysconf("SC_CLK_TCK"), int(resident[0].split()[1])

        try:
            time.sleep(5)
            seconds_before, memory_before = used()
            time.sleep(IDLE_SECONDS)
            seconds_after, memory_after = used()
        finally:
            program.terminate()
            program.wait()
    table.below(f"idle for {IDLE_SECONDS} s: processor", "X server",
                (seconds_after - seconds_before) / IDLE_SECONDS * 100, 1, "% of a core")
    table.below("idle: memory", "X server", memory_after / 1024, 60, "MiB")
    table.below("idle: growth of memory", "X server", memory_after - memory_before, 0, "KiB")


def history(place):
    """The table of another program, which measures it."""
    told = subprocess.run([os.path.join(PROGRAMS, "benchhistory")], env=place.environment(),
                          check=True, stdout=subprocess.PIPE, text=True).stdout
    print(told)
    with open(os.path.join(OUTPUT, "history.md"), "w", encoding="utf-8") as out:
        out.write(told)
    return told


def draw(curves):
    data = os.path.join(OUTPUT, "growth.dat")
    blocks = []
    for place, shape in dict.fromkeys(curve[:2] for curve in curves):
        lines = [f"{count} {taken / 1000:.3f} {peak:.1f}" for *key, count, taken, peak in curves
                 if key == [place, shape]]
        blocks.append("\n".join([f'"{shape}, {place}"', *lines]) + "\n")
    with open(data, "w", encoding="utf-8") as out:
        out.write("\n\n".join(blocks))
    script = os.path.join(os.path.dirname(__file__), "growth.gnuplot")
    subprocess.run(["gnuplot", "-e", f"data='{data}'; picture='{OUTPUT}/growth.svg'", script],
                   check=True)


def machine():
    """The machine in words, as far as the figures depend on it."""
    with open("/proc/meminfo", encoding="ascii") as info:
        memory = int(info.readline().split()[1]) / 1024 / 1024
    return (f"{os.cpu_count()} cores, {memory:.0f} GiB of memory, Linux "
            f"{'.'.join(platform.release().split('.')[:2])}, {time.strftime('%B %Y')}. Medians of "
            f"{ROUNDS}, of {3 * ROUNDS} for the start; the longest of all stalls; idling and the "
            "history once.")


def document(table, told):
    """Puts a whole measurement into the document in the place of the one before."""
    with open(DOCUMENT, encoding="utf-8") as file:
        before, first, rest = file.read().partition(FIRST_LINE)
    _, last, after = rest.partition(LAST_LINE)
    if not first or not last:
        sys.exit(f"{DOCUMENT} has no place for the figures")
    picture = os.path.join(os.path.splitext(DOCUMENT)[0], "growth.svg")
    shutil.copyfile(os.path.join(OUTPUT, "growth.svg"), picture)
    link = os.path.relpath(picture, os.path.dirname(DOCUMENT))
    shown = f"![Time and memory of a run by the number of files]({link})"
    with open(DOCUMENT, "w", encoding="utf-8") as file:
        file.write("\n".join([before + FIRST_LINE, machine(), "", table.markdown(), "", shown, "",
                              "The history, whatever it holds:", "", told, LAST_LINE]) + after)


def measure(wanted, table, curves):
    """Fills the table and the curves with what is wanted; returns what there is of the history."""
    told = ""
    for place in places():
        with place:
            for name, one in (("large", large_file), ("many", many_files), ("rows", table_rows)):
                if name in wanted:
                    one(table, place)
            if "dirty" in wanted and place.is_disk:
                dirty_memory(table, place)
            if "growth" in wanted:
                growth(table, place, curves)
    with Place("tmpfs", "/dev/shm") as place:
        if "history" in wanted:
            told = history(place)
        for name, one in (("start", start), ("idle", idle)):
            if name in wanted:
                one(table, place)
    return told


def main():
    os.makedirs(OUTPUT, exist_ok=True)
    table, curves = Table(), []
    everything = "large many dirty growth rows start idle history"
    try:
        told = measure(os.environ.get("BENCH_ONLY", everything).split(), table, curves)
    finally:
        with open(os.path.join(OUTPUT, "table.md"), "w", encoding="utf-8") as out:
            out.write(table.markdown() + "\n")
    if curves:
        draw(curves)
    # A shorter idling is told by its row.
    if not any(name.startswith("BENCH_") for name in os.environ if name != "BENCH_IDLE_SECONDS"):
        document(table, told)


main()
