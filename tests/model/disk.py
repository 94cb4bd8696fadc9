"""The file system as the model sees it, and as it should look after each call.

What a call reads comes from the real tree, before the library's own call changes it. What it
should write goes into `expected`, which is compared with the tree at the end.
"""

import errno
import os
import stat

from fileformat import Failure, Fault, narrow, to_utf8

NEW_DIRECTORY_MODE = 0o750
MAKE_DIRECTORY_FAULTS = {errno.ENOENT: 0x80050003, errno.ENOTDIR: 0x8001000A, errno.ENAMETOOLONG: 0x8001000A}
ENDLESS = 2**20
SILENT_LISTING_ERRORS = (errno.ENOENT, errno.ENOTDIR)


def kind(path):
    """What stands at a path: a file's bytes, a link's target, or the type of anything else."""
    status = os.lstat(path)
    if stat.S_ISREG(status.st_mode):
        with open(path, "rb") as file:
            return file.read()
    if stat.S_ISLNK(status.st_mode):
        return "link", os.readlink(path)
    return stat.filemode(status.st_mode), None


def snapshot(base):
    found, waiting = {base: kind(base)}, [base]
    while waiting:
        with os.scandir(waiting.pop()) as entries:
            for entry in entries:
                found[entry.path] = kind(entry.path)
                if entry.is_dir(follow_symlinks=False):
                    waiting.append(entry.path)
    return found


def shown(path):
    """A path as it stands in the log."""
    return "".join("?" if one < " " or one == "\x7f" else one for one in path)


def is_directory(entry):
    return isinstance(entry, tuple) and entry[0].startswith("d")


class Disk:
    def __init__(self, base):
        self.base = base
        self.expected = snapshot(base)

    def exists(self, path):
        return os.path.exists(narrow(path))

    def read(self, path):
        """The bytes at a path, None when it cannot be opened; -7 for a directory and the like."""
        try:
            file = os.open(narrow(path), os.O_RDONLY | os.O_NONBLOCK)
        except OSError:
            return None
        data = b""
        try:
            while len(data) < ENDLESS and (more := os.read(file, ENDLESS)):
                data += more
            return data
        except OSError:
            raise Failure(-7) from None
        finally:
            os.close(file)

    def entries(self, directory, report):
        """The names in a directory in its own order, with whether each is a directory."""
        path = narrow(directory)
        if not path:
            raise Fault(0x8001000A)
        path = path[:-1] if path[-1:] in (b"/", b"\\") else path
        try:
            with os.scandir(path) as listing:
                names = [entry.name for entry in listing]
        except OSError as error:
            if error.errno not in SILENT_LISTING_ERRORS:
                report("Cannot list directory: " + shown(directory))
            return []
        real = os.path.realpath(path)
        entries = ((name, self.expected.get(os.path.join(real, name))) for name in names)
        known = [(name, entry) for name, entry in entries if entry is not None]
        return [(name, self.has_directory_bit(path + b"/" + name, entry)) for name, entry in known]

    def has_directory_bit(self, path, entry):
        if isinstance(entry, bytes):
            return False
        try:
            return bool(os.stat(path).st_mode & stat.S_IFDIR)
        except OSError:
            return False

    def link_target(self, path):
        return os.path.realpath(narrow(path))

    def target(self, path):
        """Where writing to a path ends up, None when it cannot be opened for writing."""
        if not path:
            return None
        path = os.path.realpath(path)
        entry = self.expected.get(path, b"")
        writable = isinstance(entry, bytes) and is_directory(self.expected.get(os.path.dirname(path)))
        return path if writable else None

    def write(self, path, data):
        """True when the file could be opened for writing."""
        target = self.target(narrow(path))
        if target:
            self.expected[target] = data
        return target is not None

    def make_directory(self, path):
        path = narrow(path)
        try:
            os.stat(os.path.dirname(path) + b"/")
        except OSError as error:
            code = MAKE_DIRECTORY_FAULTS.get(error.errno)
            raise Fault(code or 0x80050000, 0 if code else error.errno) from None
        if os.path.lexists(path):
            raise Fault(0x80050004)
        mask = os.umask(0)
        os.umask(mask)
        mode = stat.filemode(stat.S_IFDIR | NEW_DIRECTORY_MODE & ~mask)
        self.expected[os.path.realpath(path)] = mode, None


class Log:
    """The log file of one database."""

    def __init__(self, disk, directory, informational):
        self.disk, self.informational = disk, informational
        self.name = narrow(f"{directory}/qmdb.log")
        parent, name = os.path.split(self.name)
        self.path = os.path.join(os.path.realpath(parent), name)

    def delete(self):
        try:
            os.close(os.open(self.name, os.O_RDONLY | os.O_NONBLOCK))
        except OSError:
            return
        if not any(path.startswith(self.path + b"/") for path in self.disk.expected):
            del self.disk.expected[self.path]

    def write(self, text, informational=False):
        expected = self.disk.expected
        entry = expected.get(self.path, b"")
        if informational and not self.informational or not isinstance(entry, bytes):
            return
        try:
            line = (b"" if informational else b"ERROR: ") + to_utf8(text) + b"\n"
        except Fault:
            return
        if self.name and is_directory(expected.get(os.path.dirname(self.path))):
            expected[self.path] = entry + line
