"""The shapes of published fits. A fit has a range and check points: check() holds it against them."""

import math
import pathlib
import tomllib
from dataclasses import dataclass

GAS_CONSTANT_OF_NASA = 8.314510
TABLES = pathlib.Path(__file__).with_name("tables")


class CheckFailed(Exception):
    pass


@dataclass(frozen=True)
class Fit:
    """A function of the temperature in kelvin, with points that its source or a reader of it gives."""
    function: object
    low: float
    high: float
    checks: tuple = ()  # pairs of a temperature and a number
    within: float = 0.006  # check points are printed with two to four digits

    def verified(self, name):
        for temperature, expected in self.checks:
            got = self.function(temperature)
            if abs(got - expected) > self.within * abs(expected):
                raise CheckFailed(f"{name}: {got:.6g} at {temperature} K, not {expected}")
        return self


def celsius(function):
    return lambda temperature: function(temperature - 273.15)


def polynomial(*coefficients):
    """c0 + c1 T + c2 T^2 + ..."""
    return lambda t: sum(c * t ** power for power, c in enumerate(coefficients))


def log10_polynomial(*coefficients):
    """log10 y = a + b x + c x^2 + ..., x = log10 T."""
    inner = polynomial(*coefficients)
    return lambda t: 10 ** inner(math.log10(t))


def strain_polynomial(*coefficients):
    """(L - L293)/L293 from 1e5 times it."""
    inner = polynomial(*coefficients)
    return lambda t: 1e-5 * inner(t)


def arrhenius(factor, temperature):
    return lambda t: factor * math.exp(temperature / t)


@dataclass(frozen=True)
class NasaPhase:
    """Specific heat capacity of one phase out of nasa9.toml."""
    name: str
    molar_mass: float
    remark: str
    ranges: tuple

    @property
    def low(self):
        return self.ranges[0]["low"]

    @property
    def high(self):
        return self.ranges[-1]["high"]

    @property
    def breaks(self):
        return tuple(part["high"] for part in self.ranges[:-1])

    def __call__(self, temperature):
        part = next((part for part in self.ranges if temperature <= part["high"]), self.ranges[-1])
        powers = sum(a * temperature ** (power - 2) for power, a in enumerate(part["a"]))
        return GAS_CONSTANT_OF_NASA * powers / self.molar_mass * 1000

    def verified(self):
        for part in self.ranges:
            temperature, expected = part["check"]
            alone = NasaPhase(self.name, self.molar_mass, self.remark, (part,))
            if abs(alone(temperature) / expected - 1) > 1e-3:
                raise CheckFailed(f"{self.name}: cp {alone(temperature):.6g} at {temperature} K, not {expected}")
        return self


def load(name):
    with (TABLES / name).open("rb") as file:
        return tomllib.load(file)


def nasa_phases():
    return {name: NasaPhase(name, given["molar-mass"], given["remark"], tuple(given["ranges"])).verified()
            for name, given in load("nasa9.toml").items()}
