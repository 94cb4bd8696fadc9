#include "page/unitChoices.h"

#include <algorithm>

namespace tool {

namespace {

constexpr OfferedUnit temperatures[]
    = { { "K", { "K", "К" } }, { "degC", { "°C", "°C" } }, { "degF", { "°F", "°F" } } };
constexpr OfferedUnit pressures[] = { { "Pa", { "Pa", "Па" } }, { "kPa", { "kPa", "кПа" } },
    { "bar", { "bar", "бар" } }, { "MPa", { "MPa", "МПа" } }, { "GPa", { "GPa", "ГПа" } } };
constexpr OfferedUnit densities[] = { { "kg/m3", { "kg/m³", "кг/м³" } }, { "g/cm3", { "g/cm³", "г/см³" } } };
constexpr OfferedUnit molarMasses[]
    = { { "kg/mol", { "kg/mol", "кг/моль" } }, { "g/mol", { "g/mol", "г/моль" } } };
constexpr OfferedUnit heatCapacities[]
    = { { "J/(kg K)", { "J/(kg·K)", "Дж/(кг·К)" } }, { "kJ/(kg K)", { "kJ/(kg·K)", "кДж/(кг·К)" } } };
constexpr OfferedUnit molarHeatCapacities[]
    = { { "J/(mol K)", { "J/(mol·K)", "Дж/(моль·К)" } }, { "kJ/(mol K)", { "kJ/(mol·K)", "кДж/(моль·К)" } } };
constexpr OfferedUnit volumetricHeatCapacities[] = { { "J/(m3 K)", { "J/(m³·K)", "Дж/(м³·К)" } },
    { "kJ/(m3 K)", { "kJ/(m³·K)", "кДж/(м³·К)" } }, { "MJ/(m3 K)", { "MJ/(m³·K)", "МДж/(м³·К)" } } };
constexpr OfferedUnit thermalConductivities[] = { { "W/(m K)", { "W/(m·K)", "Вт/(м·К)" } },
    { "mW/(m K)", { "mW/(m·K)", "мВт/(м·К)" } }, { "W/(cm K)", { "W/(cm·K)", "Вт/(см·К)" } } };
constexpr OfferedUnit heatTransferCoefficients[]
    = { { "W/(m2 K)", { "W/(m²·K)", "Вт/(м²·К)" } }, { "kW/(m2 K)", { "kW/(m²·K)", "кВт/(м²·К)" } } };
constexpr OfferedUnit dynamicViscosities[] = { { "Pa s", { "Pa·s", "Па·с" } },
    { "mPa s", { "mPa·s", "мПа·с" } }, { "uPa s", { "µPa·s", "мкПа·с" } } };
constexpr OfferedUnit diffusivities[] = { { "m2/s", { "m²/s", "м²/с" } }, { "cm2/s", { "cm²/s", "см²/с" } },
    { "mm2/s", { "mm²/s", "мм²/с" } } };
constexpr OfferedUnit surfaceTensions[] = { { "N/m", { "N/m", "Н/м" } }, { "mN/m", { "mN/m", "мН/м" } } };
constexpr OfferedUnit specificEnergies[] = { { "J/kg", { "J/kg", "Дж/кг" } },
    { "kJ/kg", { "kJ/kg", "кДж/кг" } }, { "MJ/kg", { "MJ/kg", "МДж/кг" } } };
constexpr OfferedUnit molarEnergies[]
    = { { "J/mol", { "J/mol", "Дж/моль" } }, { "kJ/mol", { "kJ/mol", "кДж/моль" } } };
constexpr OfferedUnit expansions[] = { { "1/K", { "1/K", "1/К" } }, { "1e-6/K", { "10⁻⁶/K", "10⁻⁶/К" } } };
constexpr OfferedUnit ratios[]
    = { { "1", { "1", "1" } }, { "%", { "%", "%" } }, { "1e-6", { "10⁻⁶", "10⁻⁶" } } };
constexpr OfferedUnit resistivities[] = { { "ohm m", { "Ω·m", "Ом·м" } }, { "uohm m", { "µΩ·m", "мкОм·м" } },
    { "uohm cm", { "µΩ·cm", "мкОм·см" } }, { "nohm m", { "nΩ·m", "нОм·м" } } };
constexpr OfferedUnit conductivities[] = { { "S/m", { "S/m", "См/м" } }, { "MS/m", { "MS/m", "МСм/м" } } };
constexpr OfferedUnit specificVolumes[]
    = { { "m3/kg", { "m³/kg", "м³/кг" } }, { "cm3/g", { "cm³/g", "см³/г" } } };
constexpr OfferedUnit compressibilities[] = { { "1/Pa", { "1/Pa", "1/Па" } },
    { "1/MPa", { "1/MPa", "1/МПа" } }, { "1/GPa", { "1/GPa", "1/ГПа" } } };
constexpr OfferedUnit speeds[] = { { "m/s", { "m/s", "м/с" } }, { "km/s", { "km/s", "км/с" } } };
constexpr OfferedUnit lengths[] = { { "m", { "m", "м" } }, { "mm", { "mm", "мм" } },
    { "um", { "µm", "мкм" } }, { "nm", { "nm", "нм" } } };

constexpr Quantity all[] = { { { "Temperature", "Температура" }, temperatures },
    { { "Pressure, stress", "Давление, напряжение" }, pressures }, { { "Density", "Плотность" }, densities },
    { { "Molar mass", "Молярная масса" }, molarMasses },
    { { "Specific heat capacity", "Удельная теплоёмкость" }, heatCapacities },
    { { "Molar heat capacity", "Молярная теплоёмкость" }, molarHeatCapacities },
    { { "Volumetric heat capacity", "Объёмная теплоёмкость" }, volumetricHeatCapacities },
    { { "Thermal conductivity", "Теплопроводность" }, thermalConductivities },
    { { "Heat transfer coefficient", "Коэффициент теплоотдачи" }, heatTransferCoefficients },
    { { "Dynamic viscosity", "Динамическая вязкость" }, dynamicViscosities },
    { { "Diffusivity, kinematic viscosity", "Диффузия, кинематическая вязкость" }, diffusivities },
    { { "Surface tension", "Поверхностное натяжение" }, surfaceTensions },
    { { "Specific energy", "Удельная энергия" }, specificEnergies },
    { { "Molar energy", "Молярная энергия" }, molarEnergies },
    { { "Thermal expansion", "Тепловое расширение" }, expansions }, { { "Ratio", "Отношение" }, ratios },
    { { "Electrical resistivity", "Удельное сопротивление" }, resistivities },
    { { "Electrical conductivity", "Удельная проводимость" }, conductivities },
    { { "Specific volume", "Удельный объём" }, specificVolumes },
    { { "Compressibility", "Сжимаемость" }, compressibilities }, { { "Speed", "Скорость" }, speeds },
    { { "Length", "Длина" }, lengths } };

} // namespace

std::span<const Quantity> quantities()
{
    return all;
}

std::optional<ChosenUnits> chosenUnits(const std::string& units)
{
    const auto measured = std::ranges::find_if(all, [&](const Quantity& quantity) {
        return findConversion(units, quantity.choices[0].units).has_value();
    });
    if (measured == std::end(all)) {
        return std::nullopt;
    }
    ChosenUnits chosen { static_cast<std::size_t>(measured - std::begin(all)), {} };
    for (const OfferedUnit& choice : measured->choices) {
        chosen.conversions.push_back(*findConversion(units, choice.units));
    }
    return chosen;
}

} // namespace tool
