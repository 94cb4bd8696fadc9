// Curves of values, in the units that are shown.

const componentNames = ["x", "y", "z"];

/** "p = 100 kPa": what a curve of a table of two arguments is at. */
function firstArgumentText(value, subtable) {
    const { symbol, units } = argumentOf(value, 0);
    const number = numberText(units.convert(subtable.first));
    return `${symbol} = ${number}${units.label ? ` ${units.label}` : ""}`;
}

/** The parts of a table that are curves of their own: for each subtable, for each component. */
function partsOf(value) {
    const isTwo = value.arguments.length === 2;
    return tableOf(value).flatMap((subtable) =>
        subtable.components.map((numbers, component) => ({
            x: subtable.x,
            y: numbers,
            component,
            labels: [
                isTwo && firstArgumentText(value, subtable),
                value.vector && componentNames[component],
            ].filter(Boolean),
        })),
    );
}

/** The curves of one table. */
function curvesOf(value) {
    const units = shownUnits(value.parameter.units);
    const argument = argumentOf(value, -1);
    const subtables = tableOf(value).length;
    return partsOf(value).map((part, index) => ({
        label: part.labels.join(", ") || nameOf(value.parameter),
        x: part.x.map(argument.units.convert),
        y: part.y.map(units.convert),
        colour:
            subtables > 1
                ? orderedColour(Math.floor(index / componentsOf(value)), subtables)
                : distinctColour(index),
        dash: value.vector ? dashes[part.component] : undefined,
    }));
}

/** What the chart of one table needs. */
function chartOf(value) {
    const { name, units } = argumentOf(value, -1);
    return {
        curves: curvesOf(value),
        xLabel: withUnits(name, units.label),
        ...valueLabels(value.parameter),
    };
}

/** What stands beside the axis of values, in full and short. */
function valueLabels(parameter) {
    const { label } = shownUnits(parameter.units);
    return {
        yLabel: withUnits(nameOf(parameter), label),
        yShort: withUnits(parameter.symbol || nameOf(parameter), label),
    };
}

/** Level lines of a constant. */
function levelsOf(value) {
    const units = shownUnits(value.parameter.units);
    return constantOf(value).map((number, component) => ({
        label: [ownerText(value.owner), value.vector && componentNames[component], say("constant")]
            .filter(Boolean)
            .join(", "),
        x: [],
        y: [units.convert(number)],
        level: true,
        dash: dashes[2],
    }));
}

/** The curves of several values of one parameter over one quantity, each value in a colour of its own. */
function comparedCurves(values, toCommonX) {
    return values.flatMap((value, place) => {
        const curves = isTable(value) ? comparedParts(value, toCommonX(value)) : levelsOf(value);
        return curves.map((curve, index) => ({
            ...curve,
            colour: distinctColour(place),
            dash: curve.level ? curve.dash : dashes[index % dashes.length],
        }));
    });
}

function comparedParts(value, convertX) {
    const units = shownUnits(value.parameter.units);
    return partsOf(value).map((part) => ({
        label: [ownerText(value.owner), ...part.labels].join(", "),
        x: part.x.map(convertX),
        y: part.y.map(units.convert),
    }));
}
