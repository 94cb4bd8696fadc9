#include "commands/commonParameters.h"

#include <algorithm>

namespace tool {

namespace {

constexpr CommonUnits units[] = {
    { 201, "kg/mol", "кг/моль" },
    { 202, "K", "К" },
    { 203, "Pa", "Па" },
    { 204, "kg/m³", "кг/м³" },
    { 205, "J/(kg·K)", "Дж/(кг·К)" },
    { 206, "W/(m·K)", "Вт/(м·К)" },
    { 207, "Pa·s", "Па·с" },
    { 208, "N/m", "Н/м" },
    { 209, "1/K", "1/К" },
    { 211, "J/kg", "Дж/кг" },
    { 212, "Ω·m", "Ом·м" },
    { 213, "m/s", "м/с" },
    { 214, "1", "1" },
};

constexpr CommonParameter parameters[] = {
    { 1, "molar-mass", "Molar mass", "Молярная масса", 201, "C", "", false, "M", "", "" },
    { 2, "triple-temperature", "Triple-point temperature", "Температура тройной точки", 202, "C", "", false,
        "Tt", "", "" },
    { 3, "triple-pressure", "Triple-point pressure", "Давление в тройной точке", 203, "C", "", false, "pt",
        "", "" },
    { 4, "critical-temperature", "Critical temperature", "Критическая температура", 202, "C", "", false, "Tc",
        "", "" },
    { 5, "critical-pressure", "Critical pressure", "Критическое давление", 203, "C", "", false, "pc", "",
        "" },
    { 6, "critical-density", "Critical density", "Критическая плотность", 204, "C", "", false, "rhoc", "",
        "" },
    { 7, "density", "Density", "Плотность", 204, "CtpT", "SLV", false, "rho", "Pa;K",
        "T: over pressure and temperature" },
    { 8, "heat-capacity", "Specific heat capacity", "Удельная теплоёмкость", 205, "CtpT", "SLV", false, "cp",
        "Pa;K", "at constant pressure" },
    { 9, "thermal-conductivity", "Thermal conductivity", "Теплопроводность", 206, "CtpT", "SLV", true, "k",
        "Pa;K", "a vector gives the principal axes of a crystal" },
    { 10, "viscosity", "Dynamic viscosity", "Динамическая вязкость", 207, "CtpT", "LV", false, "mu", "Pa;K",
        "" },
    { 11, "surface-tension", "Surface tension", "Поверхностное натяжение", 208, "Ct", "L", false, "sigma",
        "K", "against the vapour" },
    { 12, "linear-expansion", "Linear thermal expansion", "Коэффициент линейного расширения", 209, "Ct", "S",
        true, "alpha", "K", "a vector gives the principal axes of a crystal" },
    { 14, "transition-temperature", "Transition temperature", "Температура перехода", 202, "Cp", "", false,
        "Ttr", "Pa", "of a phase change" },
    { 15, "saturation-pressure", "Saturation pressure", "Давление насыщения", 203, "Ct", "", false, "ps", "K",
        "of a phase change" },
    { 16, "latent-heat", "Latent heat", "Удельная теплота перехода", 211, "Ctp", "", false, "L", "Pa;K",
        "of a phase change" },
    { 19, "electrical-resistivity", "Electrical resistivity", "Удельное электрическое сопротивление", 212,
        "Ct", "SL", true, "rhoe", "K", "a vector gives the principal axes of a crystal" },
    { 20, "youngs-modulus", "Young's modulus", "Модуль Юнга", 203, "Ct", "S", false, "E", "K", "" },
    { 21, "poissons-ratio", "Poisson's ratio", "Коэффициент Пуассона", 214, "Ct", "S", false, "nu", "K", "" },
    { 22, "speed-of-sound", "Speed of sound", "Скорость звука", 213, "CtpT", "SLV", false, "w", "Pa;K", "" },
};

} // namespace

std::span<const CommonParameter> commonParameters()
{
    return parameters;
}

std::span<const CommonUnits> commonUnits()
{
    return units;
}

const CommonUnits& unitsOf(const CommonParameter& parameter)
{
    return *std::ranges::find(units, parameter.units, &CommonUnits::id);
}

} // namespace tool
