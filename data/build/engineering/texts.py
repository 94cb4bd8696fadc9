"""Russian texts of phases and changes, and the numbers of strings."""

PHASES = {
    "Solid": "Твёрдая", "Solid (alpha)": "Твёрдая (альфа)", "Solid (beta)": "Твёрдая (бета)",
    "Solid (gamma)": "Твёрдая (гамма)", "Solid (delta)": "Твёрдая (дельта)", "Ice Ih": "Лёд Ih", "Liquid": "Жидкость",
    "Gas": "Газ", "Steam": "Пар",
}
CHANGES = {
    "Melting": "Плавление", "Vaporisation": "Парообразование", "Sublimation": "Сублимация", "Alpha to beta": "Альфа в бета",
    "Beta to gamma": "Бета в гамма", "Gamma to delta": "Гамма в дельта", "Alpha to gamma": "Альфа в гамма",
}

# Beginnings of the ranges of string IDs
PARAMETER_NAMES, UNITS, PHASE_NAMES, CHANGE_NAMES, MATERIAL_NAMES, COMMENTS = 100, 200, 500, 600, 10000, 20000


def string_ids(names, begin):
    return {name: begin + index for index, name in enumerate(names, 1)}
