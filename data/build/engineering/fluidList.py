"""The fluids of the database, in the order of their IDs: add new ones at the end."""

import math
from dataclasses import dataclass, field

from .cea import AIR_COMPOSITION


@dataclass(frozen=True)
class Entry:
    coolprop: str
    name: str
    russian: str
    formula: str
    cas: str
    aliases: tuple = ()
    gas: str = "Gas"
    comment: str = ""
    russian_comment: str = ""
    components: tuple = ()
    is_pseudo_pure: bool = False
    limits: dict = field(default_factory=dict)


def limits(temperature=None, pressure=None, lowest=None):
    given = {"highest_temperature": temperature, "highest_pressure": pressure, "lowest_temperature": lowest}
    return {name: limit for name, limit in given.items() if limit is not None}


HIGH_PRESSURE = limits(pressure=1e8)

FLUIDS = (
    Entry("Water", "Water", "Вода", "H2O", "7732-18-5", ("H2O",), "Steam",
          "Water, steam and ice Ih", "Вода, пар и лёд Ih", limits=limits(1273.15, 1e8)),
    Entry("Air", "Air, dry", "Воздух сухой", "", "", ("Air",), "Gas", "Treated as one gas",
          "Рассматривается как один газ", AIR_COMPOSITION, True, limits(2000.0, lowest=70.0)),
    Entry("Nitrogen", "Nitrogen", "Азот", "N2", "7727-37-9", ("R728",)),
    Entry("Oxygen", "Oxygen", "Кислород", "O2", "7782-44-7", ("R732",)),
    Entry("Hydrogen", "Hydrogen", "Водород", "H2", "1333-74-0", ("R702",), "Gas", "Normal hydrogen",
          "Нормальный водород", limits=HIGH_PRESSURE),
    Entry("Helium", "Helium", "Гелий", "He", "7440-59-7", ("R704",), "Gas", "Helium-4; the liquid is He I",
          "Гелий-4; жидкость — He I", limits=limits(pressure=1e7) | {"conductivity_beyond": 12.0}),
    Entry("Argon", "Argon", "Аргон", "Ar", "7440-37-1", ("R740",)),
    Entry("CarbonDioxide", "Carbon dioxide", "Диоксид углерода", "CO2", "124-38-9", ("R744",),
          limits=limits(1000.0, 5e7)),
    Entry("CarbonMonoxide", "Carbon monoxide", "Монооксид углерода", "CO", "630-08-0"),
    Entry("Methane", "Methane", "Метан", "CH4", "74-82-8", ("R50",)),
    Entry("Ethane", "Ethane", "Этан", "C2H6", "74-84-0", ("R170",)),
    Entry("Propane", "Propane", "Пропан", "C3H8", "74-98-6", ("R290",)),
    Entry("n-Butane", "n-Butane", "н-Бутан", "C4H10", "106-97-8", ("R600",)),
    Entry("IsoButane", "Isobutane", "Изобутан", "C4H10", "75-28-5", ("R600a",)),
    Entry("n-Pentane", "n-Pentane", "н-Пентан", "C5H12", "109-66-0"),
    Entry("n-Hexane", "n-Hexane", "н-Гексан", "C6H14", "110-54-3"),
    Entry("Ammonia", "Ammonia", "Аммиак", "NH3", "7664-41-7", ("R717",)),
    Entry("R134a", "R134a", "R134a", "C2H2F4", "811-97-2", ("1,1,1,2-Tetrafluoroethane",), "Gas",
          "1,1,1,2-Tetrafluoroethane", "1,1,1,2-Тетрафторэтан"),
    Entry("R1234yf", "R1234yf", "R1234yf", "C3H2F4", "754-12-1", (), "Gas", "2,3,3,3-Tetrafluoropropene",
          "2,3,3,3-Тетрафторпропен"),
    Entry("R1234ze(E)", "R1234ze(E)", "R1234ze(E)", "C3H2F4", "29118-24-9", (), "Gas",
          "trans-1,3,3,3-Tetrafluoropropene", "транс-1,3,3,3-Тетрафторпропен"),
    Entry("R32", "R32", "R32", "CH2F2", "75-10-5", ("Difluoromethane",), "Gas", "Difluoromethane", "Дифторметан",
          limits={"conductivity_from": 3e5}),
    Entry("R245fa", "R245fa", "R245fa", "C3H3F5", "460-73-1", (), "Gas", "1,1,1,3,3-Pentafluoropropane; no k of the gas",
          "1,1,1,3,3-Пентафторпропан; без k газа", limits={"conductivity_from": math.inf}),
    Entry("SulfurHexafluoride", "Sulphur hexafluoride", "Гексафторид серы", "SF6", "2551-62-4", ("Sulfur hexafluoride",)),
    Entry("SulfurDioxide", "Sulphur dioxide", "Диоксид серы", "SO2", "7446-09-5", ("Sulfur dioxide", "R764")),
    Entry("Methanol", "Methanol", "Метанол", "CH4O", "67-56-1", ("Methyl alcohol",)),
    Entry("Ethanol", "Ethanol", "Этанол", "C2H6O", "64-17-5", ("Ethyl alcohol",)),
    Entry("Toluene", "Toluene", "Толуол", "C7H8", "108-88-3"),
    Entry("Benzene", "Benzene", "Бензол", "C6H6", "71-43-2"),
    Entry("Acetone", "Acetone", "Ацетон", "C3H6O", "67-64-1"),
)
