# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

"""How much memory waits to be written to a disk, while something runs."""

import threading

SECONDS_BETWEEN_LOOKS = 0.02


def dirty_kib():
    """What is dirty, and what is on its way."""
    with open("/proc/meminfo", encoding="ascii") as info:
        return sum(int(line.split()[1]) for line in info
                   if line.startswith(("Dirty:", "Writeback:")))


class DirtyMemory:
    """Notes the most there was within a with statement."""

    def __enter__(self):
        self._before = self._most = dirty_kib()
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._watch)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._ended.set()
        self._thread.join()

    def growth_mib(self):
        """Beyond what there was at the beginning."""
        return (self._most - self._before) / 1024

    def _watch(self):
        while not self._ended.wait(SECONDS_BETWEEN_LOOKS):
            self._most = max(self._most, dirty_kib())
