#include "common/russian.h"

#include <algorithm>
#include <utility>

namespace tool {

namespace {

constexpr std::pair<std::string_view, std::string_view> argumentNames[] = { { "temperature", "температура" },
    { "pressure", "давление" }, { "reference temperature", "начальная температура" },
    { "initial temperature", "начальная температура" }, { "relative humidity", "относительная влажность" },
    { "humidity", "влажность" }, { "moisture", "влагосодержание" }, { "density", "плотность" },
    { "concentration", "концентрация" }, { "mass fraction", "массовая доля" },
    { "molar fraction", "мольная доля" }, { "mole fraction", "мольная доля" },
    { "volume fraction", "объёмная доля" }, { "porosity", "пористость" }, { "wavelength", "длина волны" },
    { "frequency", "частота" }, { "time", "время" }, { "depth", "глубина" }, { "strain", "деформация" },
    { "strain rate", "скорость деформации" }, { "stress", "напряжение" }, { "shear rate", "скорость сдвига" },
    { "velocity", "скорость" }, { "angle", "угол" }, { "magnetic field", "магнитное поле" },
    { "electric field", "электрическое поле" } };

} // namespace

bool isRussian(std::string_view language)
{
    return language.starts_with("ru");
}

std::string argumentInRussian(std::string_view name)
{
    const auto found = std::ranges::find(argumentNames, name, [](const auto& pair) { return pair.first; });
    return std::string(found == std::end(argumentNames) ? name : found->second);
}

} // namespace tool
