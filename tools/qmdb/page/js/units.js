// Units: what each quantity is shown in, and the conversion between that and what the database holds.

const chosenUnits = new Map(); // a quantity's index → the index of its choice

/** The 15 digits that a double keeps of a sum whose larger part has a magnitude. */
function roundedTo(number, magnitude) {
    if (number === 0 || !Number.isFinite(number) || !Number.isFinite(magnitude)) {
        return number;
    }
    const exponent = (of) => Math.floor(Math.log10(Math.abs(of)));
    const digits = 14 - Math.max(0, exponent(magnitude) - exponent(number));
    return digits < 0 ? 0 : Number(number.toExponential(digits));
}

function converted(number, factor, offset) {
    if (factor === 1 && offset === 0) {
        return number;
    }
    const scaled = factor * number;
    return roundedTo(scaled + offset, Math.max(Math.abs(scaled), Math.abs(offset)));
}

/** How numbers in units of the database are shown: a label, a conversion and its inverse. */
function shownUnits(index) {
    const units = model.units[index];
    const choice = chosenUnits.get(units.quantity);
    if (choice === undefined) {
        return { label: storedLabel(units), convert: (number) => number, back: (number) => number };
    }
    const [factor, offset, backFactor, backOffset] = units.to[choice];
    return {
        label: textIn(model.quantities[units.quantity].choices[choice]),
        convert: (number) => converted(number, factor, offset),
        back: (number) => converted(number, backFactor, backOffset),
    };
}

/** The database's own text. One that is the same in both languages is translated where it is known. */
function storedLabel(units) {
    const isSame = units.to?.findIndex(([factor, offset]) => factor === 1 && offset === 0) ?? -1;
    const translate = language > 0 && !Array.isArray(units.text) && isSame >= 0;
    return translate ? textIn(model.quantities[units.quantity].choices[isSame]) : textIn(units.text);
}

/** The quantities that the database has units of. */
function usedQuantities() {
    return [...new Set(model.units.map((units) => units.quantity))]
        .filter((index) => index !== undefined)
        .sort((a, b) => a - b);
}

/** Whether numbers in two units can share an axis, and how the second is brought to the first. */
function commonUnits(first, second) {
    const [a, b] = [model.units[first], model.units[second]];
    if (a === b) {
        return (number) => number;
    }
    if (a.quantity === undefined || a.quantity !== b.quantity) {
        return null;
    }
    const [factor, offset] = b.to[0];
    const [, , backFactor, backOffset] = a.to[0];
    return (number) => converted(converted(number, factor, offset), backFactor, backOffset);
}

function withUnits(text, label) {
    return label ? `${text}, ${label}` : text;
}
