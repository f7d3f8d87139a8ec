# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT

"""Where is measured: a folder on the disk and one in memory, each with a sandbox
home for the history and with the files that a measurement wants."""

import os
import shutil
import tempfile

BLOCK = b"x" * 4096


class Place:
    """A folder that exists within a with statement; every file is made anew when asked for."""

    def __init__(self, name, folder):
        self.name = name
        self.is_disk = name == "disk"
        self.parent = folder

    def __enter__(self):
        self.root = tempfile.mkdtemp(prefix="fileshredder-sandbox.", dir=self.parent)
        self.home = os.path.join(self.root, "home")
        os.makedirs(os.path.join(self.home, "runtime"), mode=0o700)
        user, group = os.getuid(), os.getgid()
        self._write("passwd", f"bench:x:{user}:{group}::{self.home}:/bin/sh\n".encode())
        self._write("group", f"bench:x:{group}:\n".encode())
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.root)

    def environment(self):
        """Of a program whose home is here."""
        return {**os.environ, "LD_PRELOAD": "libnss_wrapper.so",
                "NSS_WRAPPER_PASSWD": os.path.join(self.root, "passwd"),
                "NSS_WRAPPER_GROUP": os.path.join(self.root, "group"),
                "XDG_RUNTIME_DIR": os.path.join(self.home, "runtime"),
                "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"}

    def file(self, size):
        """One file of so many bytes, a multiple of a mebibyte."""
        path = self._fresh()
        piece = os.urandom(1024 * 1024)
        with open(path, "wb", buffering=0) as out:
            for _ in range(size // len(piece)):
                out.write(piece)
        return path

    def flat(self, count):
        """A folder of so many files of 4 KiB."""
        path = self._fresh()
        self._fill(path, count)
        return path

    def nested(self, count):
        """A tree of so many files of 4 KiB, ten in a folder and ten folders in a folder."""
        path = self._fresh()
        folders = [path]
        while count > 0:
            folder = folders.pop(0)
            self._fill(folder, min(10, count))
            count -= 10
            folders += [os.path.join(folder, f"folder-{number}") for number in range(10)]
        return path

    def loose(self, count):
        """So many files of 4 KiB, by their paths."""
        folder = self.flat(count)
        return [os.path.join(folder, name) for name in sorted(os.listdir(folder))]

    def clear(self):
        """Removes what was made last."""
        self._fresh()

    def _fresh(self):
        path = os.path.join(self.root, "target")
        if os.path.isdir(path):
            shutil.rmtree(path)
        elif os.path.exists(path):
            os.unlink(path)
        return path

    def _write(self, name, contents):
        with open(os.path.join(self.root, name), "wb") as out:
            out.write(contents)

    def _fill(self, folder, count):
        os.makedirs(folder)
        for number in range(count):
            with open(os.path.join(folder, f"file-{number}.dat"), "wb", buffering=0) as out:
                out.write(BLOCK)


def places():
    """The places that BENCH_PLACES names, both without it."""
    folders = {"tmpfs": "/dev/shm", "disk": tempfile.gettempdir()}
    wanted = os.environ.get("BENCH_PLACES", " ".join(folders)).split()
    return [Place(name, folders[name]) for name in wanted]
