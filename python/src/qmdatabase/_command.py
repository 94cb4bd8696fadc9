"""What the library's functions do not tell: formulas, aliases, symbols, sources. The command `qmdb` reads it."""

from __future__ import annotations

import json
import os
import shutil
import subprocess
import threading
from collections.abc import Iterator
from dataclasses import dataclass
from typing import Any

from ._native import carried
from .errors import CommandError, CommandNotFoundError

COMMAND = "qmdb"
COMMAND_VARIABLE = "QMDB_COMMAND"
_FINDINGS = 1  # the exit status when some values cannot be read; the rest is there


@dataclass(frozen=True)
class SubstanceNotes:
    """What is told of a substance."""

    formula: str = ""
    aliases: tuple[str, ...] = ()
    cas: str = ""


@dataclass(frozen=True)
class ParameterNotes:
    """What is told of a parameter and its value."""

    symbol: str = ""
    argument_names: tuple[str, ...] = ()
    argument_units: tuple[str, ...] = ()
    source: str = ""
    accuracy: str = ""
    comments: str = ""


def find_command(given: str | None = None) -> str:
    """The command: the one given, of QMDB_COMMAND, of the wheel, or on the PATH.

    Raises:
        CommandNotFoundError: there is none.
    """
    named = given or os.environ.get(COMMAND_VARIABLE)
    inside = carried(COMMAND)
    candidates = [named] if named else [str(inside), COMMAND]
    for candidate in candidates:
        found = shutil.which(candidate)
        if found:
            return found
    raise CommandNotFoundError(
        f"the command {named or COMMAND} is not found, which reads formulas, aliases, symbols, sources, accuracies, "
        "comments and the units of arguments; install it (the package qmdb-tools), use a wheel of qmdatabase "
        f"that carries it, or set {COMMAND_VARIABLE} to its file"
    )


class Annotations:
    """All notes of one database, read by one run of the command when the first of them is asked for."""

    def __init__(self, path: str, language: str, command: str | None) -> None:
        self._path, self._language, self._command = path, language, command
        self._lock = threading.Lock()
        self._process: subprocess.Popen[bytes] | None = None
        self._substances: dict[int, SubstanceNotes] | None = None
        self._parameters: dict[tuple[int, str, int | None, int], ParameterNotes] = {}

    def start(self) -> None:
        """Starts the command, so that it runs while the caller does something else."""
        with self._lock:
            if self._substances is None and self._process is None:
                self._process = self._run()

    def stop(self) -> None:
        """Ends a command that nobody waits for."""
        with self._lock:
            self._stop()

    def forget(self) -> None:
        """Something was added; what is asked next reads anew."""
        with self._lock:
            self._stop()
            self._substances = None

    def substance(self, number: int) -> SubstanceNotes:
        return self._loaded().get(number, SubstanceNotes())

    def parameter(self, substance: int, kind: str, owner: int | None, parameter: int) -> ParameterNotes:
        self._loaded()
        return self._parameters.get((substance, kind, owner, parameter), ParameterNotes())

    def symbols(self) -> dict[int, str]:
        """The symbol of each parameter that something has."""
        self._loaded()
        return {key[-1]: notes.symbol for key, notes in self._parameters.items() if notes.symbol}

    def _loaded(self) -> dict[int, SubstanceNotes]:
        with self._lock:
            if self._substances is None:
                substances = self._read()
                self._parameters = {key: notes for one in substances for key, notes in _parameters_of(one)}
                self._substances = {one["id"]: _substance_notes(one) for one in substances}
            return self._substances

    def _run(self) -> subprocess.Popen[bytes]:
        command = [find_command(self._command), "list", self._path, "--json", "--comments", "--no-values"]
        command += ["--lang", self._language]
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def _stop(self) -> None:
        if self._process:
            self._process.kill()
            self._process.communicate()
            self._process = None

    def _read(self) -> list[dict[str, Any]]:
        process, self._process = self._process or self._run(), None
        output, messages = process.communicate()
        command = find_command(self._command)
        if process.returncode not in (0, _FINDINGS) or not output:
            raise CommandError(
                f"the command {command} failed with the exit status {process.returncode}: "
                + messages.decode("utf-8", "replace").strip()
            )
        substances: list[dict[str, Any]] = json.loads(output)
        if substances and "formula" not in substances[0]:
            raise CommandError(
                f"the command {command} is too old: it tells no formulas and sources; "
                "install the version that belongs to this module"
            )
        return substances


def _substance_notes(substance: dict[str, Any]) -> SubstanceNotes:
    return SubstanceNotes(substance["formula"] or "", tuple(substance["aliases"] or ()), substance["cas"] or "")


def _parameters_of(substance: dict[str, Any]) -> Iterator[tuple[tuple[int, str, int | None, int], ParameterNotes]]:
    owners = [("substance", None, substance)]
    owners += [("phase", one["id"], one) for one in substance["phases"]]
    owners += [("change", one["id"], one) for one in substance["changes"]]
    for kind, number, owner in owners:
        for parameter in owner["parameters"]:
            yield (substance["id"], kind, number, parameter["id"]), _parameter_notes(parameter)


def _parameter_notes(parameter: dict[str, Any]) -> ParameterNotes:
    return ParameterNotes(
        symbol=parameter.get("symbol") or "",
        argument_names=tuple(one or "" for one in parameter.get("argumentNames") or ()),
        argument_units=tuple(one or "" for one in parameter.get("argumentUnits") or ()),
        source=parameter.get("source") or "",
        accuracy=parameter.get("accuracy") or "",
        comments=parameter.get("comments") or "",
    )
