"""Russian texts of phases and changes."""

PHASES = {
    "Solid": "Твёрдая", "Solid (alpha)": "Твёрдая (альфа)", "Solid (beta)": "Твёрдая (бета)",
    "Solid (gamma)": "Твёрдая (гамма)", "Solid (delta)": "Твёрдая (дельта)", "Ice Ih": "Лёд Ih", "Liquid": "Жидкость",
    "Gas": "Газ", "Steam": "Пар",
}
CHANGES = {
    "Melting": "Плавление", "Vaporisation": "Парообразование", "Sublimation": "Сублимация", "Alpha to beta": "Альфа в бета",
    "Beta to gamma": "Бета в гамма", "Gamma to delta": "Гамма в дельта", "Alpha to gamma": "Альфа в гамма",
}
