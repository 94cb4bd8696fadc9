"""The quantities of the database. IDs are for good: programs refer to them."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Parameter:
    id: int
    file: str
    symbol: str
    name: str
    russian: str
    units: str
    forms: str
    states: str
    is_vector: bool = False


UNITS_IN_RUSSIAN = {
    "kg/mol": "кг/моль", "K": "К", "Pa": "Па", "kg/m³": "кг/м³", "J/(kg·K)": "Дж/(кг·К)", "W/(m·K)": "Вт/(м·К)",
    "Pa·s": "Па·с", "N/m": "Н/м", "1/K": "1/К", "m/m": "м/м", "J/kg": "Дж/кг", "m/s": "м/с", "Ω·m": "Ом·м", "1": "1",
}

PARAMETERS = {
    parameter.file: parameter for parameter in (
        Parameter(1, "molar-mass", "M", "Molar mass", "Молярная масса", "kg/mol", "C", ""),
        Parameter(2, "triple-temperature", "Tt", "Triple-point temperature", "Температура тройной точки", "K", "C", ""),
        Parameter(3, "triple-pressure", "pt", "Triple-point pressure", "Давление в тройной точке", "Pa", "C", ""),
        Parameter(4, "critical-temperature", "Tc", "Critical temperature", "Критическая температура", "K", "C", ""),
        Parameter(5, "critical-pressure", "pc", "Critical pressure", "Критическое давление", "Pa", "C", ""),
        Parameter(6, "critical-density", "rhoc", "Critical density", "Критическая плотность", "kg/m³", "C", ""),
        Parameter(7, "density", "rho", "Density", "Плотность", "kg/m³", "CtpT", "SLV"),
        Parameter(8, "heat-capacity", "cp", "Specific heat capacity", "Удельная теплоёмкость", "J/(kg·K)", "CtpT", "SLV"),
        Parameter(9, "conductivity", "k", "Thermal conductivity", "Теплопроводность", "W/(m·K)", "CtpT", "SLV", True),
        Parameter(10, "viscosity", "mu", "Dynamic viscosity", "Динамическая вязкость", "Pa·s", "CtpT", "LV"),
        Parameter(11, "surface-tension", "sigma", "Surface tension", "Поверхностное натяжение", "N/m", "Ct", "L"),
        Parameter(12, "expansion", "alpha", "Linear thermal expansion", "Коэффициент линейного расширения", "1/K",
                  "Ct", "S", True),
        Parameter(13, "strain", "eps", "Thermal strain from 293 K", "Температурная деформация от 293 К", "m/m", "t", "S"),
        Parameter(14, "transition-temperature", "Ttr", "Transition temperature", "Температура перехода", "K", "Cp", ""),
        Parameter(15, "saturation-pressure", "ps", "Saturation pressure", "Давление насыщения", "Pa", "Ct", ""),
        Parameter(16, "latent-heat", "L", "Latent heat", "Удельная теплота перехода", "J/kg", "Ct", ""),
        Parameter(17, "saturated-liquid-density", "rhol", "Density of saturated liquid",
                  "Плотность насыщенной жидкости", "kg/m³", "t", ""),
        Parameter(18, "saturated-vapour-density", "rhov", "Density of saturated vapour",
                  "Плотность насыщенного пара", "kg/m³", "t", ""),
        Parameter(19, "speed-of-sound", "w", "Speed of sound", "Скорость звука", "m/s", "CtpT", "SLV"),
        Parameter(20, "resistivity", "rhoe", "Electrical resistivity", "Удельное электрическое сопротивление", "Ω·m",
                  "Ct", "SL"),
        Parameter(21, "elastic-modulus", "E", "Young's modulus", "Модуль Юнга", "Pa", "Ct", "S"),
        Parameter(22, "poisson-ratio", "nu", "Poisson's ratio", "Коэффициент Пуассона", "1", "Ct", "S"),
        Parameter(23, "emissivity", "em", "Emissivity", "Степень черноты", "1", "Ct", "SL"),
        Parameter(24, "emissivity-oxidised", "emox", "Emissivity, oxidised surface",
                  "Степень черноты окисленной поверхности", "1", "Ct", "S"),
        Parameter(25, "boiling-temperature", "Tb", "Boiling temperature at 101325 Pa",
                  "Температура кипения при 101325 Па", "K", "C", ""),
        Parameter(26, "freezing-temperature", "Tf", "Freezing temperature", "Температура замерзания", "K", "C", ""),
        Parameter(27, "glass-transition", "Tg", "Glass transition temperature", "Температура стеклования", "K", "C", ""),
        Parameter(28, "solidus", "Tsol", "Solidus temperature", "Температура солидуса", "K", "C", ""),
        Parameter(29, "liquidus", "Tliq", "Liquidus temperature", "Температура ликвидуса", "K", "C", ""),
        Parameter(30, "volume-expansion", "beta", "Volumetric thermal expansion", "Коэффициент объёмного расширения",
                  "1/K", "CtpT", "LV"),
        Parameter(31, "melting-temperature", "Tm", "Melting temperature", "Температура плавления", "K", "C", ""),
        Parameter(32, "vapour-pressure", "pv", "Vapour pressure", "Давление паров", "Pa", "Ct", "SL"),
    )
}
