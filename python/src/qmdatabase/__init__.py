"""Databases of the physical properties of materials, by the library libqmDatabase.

import qmdatabase

with qmdatabase.open("materials") as db:
copper = db["Copper"].solid
conductivity = copper["Thermal conductivity"]
print(conductivity(350.0), conductivity.units)
"""

from . import errors, interpolation
from ._catalog import Catalog
from .database import Database
from .database import open_database as open
from .entities import Component, Description, Owner, Parameter, Phase, PhaseChange, Substance
from .errors import *  # noqa: F403
from .errors import __all__ as _errors
from .value import Subtable, Value

__version__ = "1.0.0"

__all__ = [
    "Catalog",
    "Component",
    "Database",
    "Description",
    "Owner",
    "Parameter",
    "Phase",
    "PhaseChange",
    "Substance",
    "Subtable",
    "Value",
    "errors",
    "interpolation",
    "open",
    *_errors,
]
