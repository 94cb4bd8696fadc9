// The value at a point that somebody types.

/** A field for an argument, with its units and its range. */
function pointField(argument, range, oninput) {
    const hint = range ? range.map((number) => numberText(argument.units.convert(number))).join(" … ") : "";
    const input = element("input", {
        type: "text",
        inputmode: "decimal",
        size: Math.max(9, hint.length),
        placeholder: hint,
        oninput,
        autocomplete: "off",
    });
    const label = element(
        "label",
        {},
        `${argument.symbol} = `,
        input,
        argument.units.label ? ` ${argument.units.label}` : "",
    );
    return { input, label, argument };
}

/** Why there is no value, in the units that are shown. */
function refusalText(refusal, shownArguments) {
    const { symbol, units } = shownArguments[refusal.argument];
    const shown = (number, of = units) =>
        `${numberText(of.convert(number))}${of.label ? ` ${of.label}` : ""}`;
    if (refusal.reason !== "outside") {
        return say(refusal.reason, symbol);
    }
    const where =
        refusal.first === undefined
            ? ""
            : ` (${shownArguments[0].symbol} = ${shown(refusal.first, shownArguments[0].units)})`;
    return (
        say("outside", symbol, shown(refusal.at), shown(refusal.range[0]), shown(refusal.range[1])) + where
    );
}

/** The value at a point in the database's units: elements of its numbers, or of the refusal. */
function valueElements(value, point, shownArguments) {
    const units = shownUnits(value.parameter.units);
    try {
        const numbers = componentsAt(tableOf(value), point).map(units.convert);
        return componentElements(numbers, units.label);
    } catch (failure) {
        if (!(failure instanceof Refusal)) {
            throw failure;
        }
        return [element("span", { class: "refused" }, refusalText(failure, shownArguments))];
    }
}

/** Numbers with the names of components where there are several, and units. */
function componentElements(numbers, label) {
    const parts = numbers.flatMap((number, index) =>
        numbers.length === 1
            ? [numberElement(number)]
            : [index > 0 ? "; " : "", `${componentNames[index]} `, numberElement(number)],
    );
    return label ? [...parts, ` ${label}`] : parts;
}

/** The numbers of fields; nothing while one is empty. Throws the text of one that is no number. */
function pointOf(fields) {
    const texts = fields.map(({ input }) => input.value);
    if (texts.some((text) => text.trim() === "")) {
        return null;
    }
    return fields.map(({ argument }, index) => {
        const number = typedNumber(texts[index]);
        if (Number.isNaN(number)) {
            throw texts[index];
        }
        return argument.units.back(number);
    });
}

/** Shows in `output` what `show` makes of the point that the fields hold. */
function showPoint(fields, output, show) {
    try {
        const point = pointOf(fields);
        output.replaceChildren(...(point ? show(point) : []));
    } catch (text) {
        if (typeof text !== "string") {
            throw text;
        }
        output.replaceChildren(element("span", { class: "refused" }, say("notNumber", text)));
    }
}

/** The form of one table. */
function pointForm(value) {
    const shownArguments = value.arguments.map((_, index) => argumentOf(value, index));
    const output = element("output", {});
    const update = () => showPoint(fields, output, (point) => valueElements(value, point, shownArguments));
    const fields = shownArguments.map((argument, index) =>
        pointField(argument, argumentRange(value, index), update),
    );
    return element(
        "form",
        { class: "point", onsubmit: (event) => event.preventDefault() },
        element("span", { class: "point-title" }, say("atPoint")),
        fields.map(({ label }) => label),
        output,
    );
}
