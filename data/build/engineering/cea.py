"""Dilute gases: transport coefficients of the NASA Glenn library of transport properties."""

import math

from .model import table
from .placing import place

# Mole per cent of the air of the NASA Glenn library: N2 78.084, O2 20.9476, Ar 0.9365, CO2 0.0319 (Gordon 1982).
AIR_COMPOSITION = (("Nitrogen", 0.78084), ("Oxygen", 0.209476), ("Argon", 0.009365), ("Carbon dioxide", 0.000319))

TRANSPORT = "R. A. Svehla, NASA Glenn transport coefficients (trans.inp of the CEA program, 1994/1995)"
SCALES = {"viscosity": 1e-7, "conductivity": 1e-4}
DILUTE = "Dilute gas: holds up to some bar, away from the saturation line."

# ln(y/scale) = A ln T + B/T + C/T^2 + D; low, high temperature; check value at 300 K and at 1000 K
COEFFICIENTS = {
    ("Carbon monoxide", "viscosity"): (
        (200, 1000, (0.62526577, -31.779652, -1640.7983, 1.7454992)), "by analogy with nitrogen", 1.7906e-05, 4.1624e-05),
    ("Carbon monoxide", "conductivity"): (
        (200, 1000, (0.85439436, 105.73224, -12347.848, 0.47793128)), "by analogy with nitrogen", 0.02615, 0.06476),
    ("Sulphur dioxide", "viscosity"): (
        (300, 1000, (0.53157084, -295.89873, 21224.84, 2.5975549)), "Zeleznik and Svehla 1970", 1.3150e-05, 4.0135e-05),
    ("Sulphur dioxide", "conductivity"): (
        (300, 1000, (0.61476551, -564.09295, 49580.787, 2.3940064)), "Zeleznik and Svehla 1970", 0.00966, 0.04577),
}


def evaluate(coefficients, scale, temperature):
    a, b, c, d = coefficients
    return scale * math.exp(a * math.log(temperature) + b / temperature + c / temperature ** 2 + d)


def dilute_gas(material):
    """The transport values of a gas whose equation of state comes without them."""
    for (name, parameter), ((low, high, coefficients), remark, *checks) in COEFFICIENTS.items():
        if name != material:
            continue
        scale = SCALES[parameter]
        for temperature, expected in zip((300, 1000), checks):
            if abs(evaluate(coefficients, scale, temperature) / expected - 1) > 1e-3:
                raise ValueError(f"{name} {parameter}: coefficients do not give {expected} at {temperature} K")
        rows = place(lambda t, c=coefficients, s=scale: evaluate(c, s, t), low, high, 0.005)
        yield table(parameter, rows, f"{TRANSPORT}, {remark}; {low} to {high} K",
                    "not given by the source; linear interpolation within 0.5 % of the fit", DILUTE)
