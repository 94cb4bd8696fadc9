// A material: what it is, its constants, its tables.

const rowsAtFirst = 300; // of a table's numbers; the others on demand

function identityRows(substance) {
    const { formula, cas, aliases, comment } = substance;
    return [
        [say("formula"), formula && formulaElement(formula)],
        [say("cas"), cas],
        [say("aliases"), aliases?.join(", ")],
        [null, comment && textIn(comment)],
    ].filter(([, content]) => content);
}

function identityElement(substance) {
    const rows = identityRows(substance);
    const comment = rows.find(([label]) => label === null)?.[1];
    const named = rows.filter(([label]) => label !== null);
    return [
        comment && element("p", { class: "comment" }, comment),
        named.length > 0 &&
            element(
                "dl",
                { class: "identity" },
                named.map(([label, content]) =>
                    element("div", {}, element("dt", {}, label), element("dd", {}, content)),
                ),
            ),
        substance.components && compositionElement(substance.components),
    ];
}

function componentLink(id) {
    const substance = model.byId.get(id);
    return substance ? linkTo({ substance }, nameOf(substance)) : say("missing", id);
}

function compositionElement(components) {
    if (components.length === 0) {
        return element("p", {}, say("mixture"));
    }
    const rows = components.map(([id, fraction]) =>
        element(
            "tr",
            {},
            element("th", { scope: "row" }, componentLink(id)),
            element("td", { class: "number" }, numberElement(fraction)),
        ),
    );
    return element(
        "section",
        {},
        element("h3", {}, say("composition")),
        tableElement(say("composition"), [say("component"), say("fraction")], rows, { class: "composition" }),
    );
}

/** "Solid", "Melting", and what they are. */
function ownerHeading(owner) {
    if (owner.kind === ownerKinds.substance) {
        return element("h3", {}, say("substance"));
    }
    return element("h3", {}, nameOf(owner), " ", element("span", { class: "kind" }, ownerKindText(owner)));
}

function ownerKindText(owner) {
    if (owner.kind === ownerKinds.phase) {
        return stateText(owner.state);
    }
    const [before, after] = owner.between.map((id) => {
        const phase = phaseOf(owner.substance, id);
        return phase ? nameOf(phase) : say("missing", id);
    });
    return say("change", before, after);
}

function parameterElements(parameter) {
    return [
        nameOf(parameter),
        parameter.symbol && element("span", { class: "symbol" }, ` ${parameter.symbol}`),
    ];
}

function pinButton(value) {
    return toggleElement(
        say("compare"),
        `${say("compare")}: ${nameOf(value.parameter)}, ${ownerText(value.owner)}`,
        pins.has(value),
        (isOn) => setPinned(value, isOn),
    );
}

const noted = (index) => (index === undefined ? "" : model.texts[index]);

function constantRow(value, noteKeys) {
    const units = shownUnits(value.parameter.units);
    return element(
        "tr",
        { id: elementId(value) },
        element("th", { scope: "row" }, parameterElements(value.parameter)),
        element("td", { class: "number" }, componentElements(constantOf(value).map(units.convert), "")),
        element("td", { class: "units" }, units.label),
        noteKeys.map((key) => element("td", { class: key }, noted(value[key]))),
        element("td", { class: "pin" }, pinButton(value)),
    );
}

/** The constants of an owner, with columns for those notes that one of them has. */
function constantsElement(owner, constants) {
    const noteKeys = ["accuracy", "source"].filter((key) =>
        constants.some((value) => value[key] !== undefined),
    );
    const heads = ["property", "value", "units", ...noteKeys].map((key) => say(key));
    const unseen = element("span", { class: "unseen" }, say("compare"));
    return element(
        "div",
        { class: "wide" },
        withRoles(
            tableElement(
                say("constantsOf", ownerText(owner)),
                [...heads, unseen],
                constants.map((value) => constantRow(value, noteKeys)),
                { class: "constants" },
            ),
        ),
    );
}

function elementId(value) {
    return `value-${placeText(valuePlace(value)).replace(/\s/g, "_")}`;
}

function numberCells(numbers) {
    return numbers.map((number) => element("td", { class: "number" }, numberElement(number)));
}

/** The rows of a table, a heading before each subtable, not more than a number of them. */
function numberRows(value, most) {
    const units = shownUnits(value.parameter.units);
    const argument = argumentOf(value, -1);
    const rows = [];
    for (const subtable of tableOf(value)) {
        if (rows.length >= most) {
            break;
        }
        if (value.arguments.length === 2) {
            rows.push(
                element(
                    "tr",
                    { class: "subtable" },
                    element(
                        "th",
                        { colspan: 1 + componentsOf(value), scope: "rowgroup" },
                        firstArgumentText(value, subtable),
                    ),
                ),
            );
        }
        for (let row = 0; row < subtable.x.length && rows.length < most; ++row) {
            rows.push(
                element(
                    "tr",
                    {},
                    numberCells([
                        argument.units.convert(subtable.x[row]),
                        ...subtable.components.map((column) => units.convert(column[row])),
                    ]),
                ),
            );
        }
    }
    return rows;
}

function numberHeads(value) {
    const argument = argumentOf(value, -1);
    const label = shownUnits(value.parameter.units).label;
    const names = value.vector ? componentNames : [value.parameter.symbol || nameOf(value.parameter)];
    return [withUnits(argument.symbol, argument.units.label), ...names.map((name) => withUnits(name, label))];
}

function numbersElement(value) {
    const count = rowCount(value) + (value.arguments.length === 2 ? tableOf(value).length : 0);
    const caption = say("numbersOf", `${nameOf(value.parameter)}, ${ownerText(value.owner)}`);
    const table = (most) =>
        tableElement(caption, numberHeads(value), numberRows(value, most), { class: "numbers" });
    const box = element(
        "div",
        { class: "numbers-box", tabindex: 0, role: "region", "aria-label": caption },
        table(rowsAtFirst),
    );
    if (count > rowsAtFirst) {
        box.append(
            element(
                "button",
                { type: "button", onclick: () => box.replaceChildren(table(Infinity)) },
                say("allRows", rowCount(value)),
            ),
        );
    }
    return box;
}

/** "over temperature · temperature: 100 K to 800 K · 6 rows". */
function extentText(value) {
    const shown = value.arguments.map((_, index) => argumentOf(value, index));
    const ranges = shown.map(({ name, units }, index) => {
        const range = argumentRange(value, index)?.map((number) => numberText(units.convert(number)));
        return range
            ? say("range", name, range[0], `${range[1]}${units.label ? ` ${units.label}` : ""}`)
            : name;
    });
    return [...ranges, countOfRows(rowCount(value))].join(" · ");
}

function notesElement(value) {
    const notes = [
        ["accuracy", noted(value.accuracy)],
        ["source", noted(value.source)],
    ].filter(([, text]) => text);
    return (
        notes.length > 0 &&
        element(
            "dl",
            { class: "notes" },
            notes.map(([key, text]) =>
                element("div", {}, element("dt", {}, say(key)), element("dd", {}, text)),
            ),
        )
    );
}

function tableContent(value) {
    if (rowCount(value) === 0) {
        return [element("p", { class: "notice" }, say("noRows"))];
    }
    return [
        element("p", { class: "extent" }, extentText(value)),
        element(
            "div",
            { class: "beside" },
            chartElement(() => chartOf(value)),
            numbersElement(value),
        ),
        pointForm(value),
        notesElement(value),
    ];
}

function missingText(value) {
    return value.leftOut === undefined ? say("unreadable", value.unreadable) : say("leftOut", value.leftOut);
}

function cardElement(value) {
    const isShown = isHeld(value);
    return element(
        "section",
        { class: "card", id: elementId(value) },
        element(
            "div",
            { class: "card-head" },
            element(
                "h4",
                {},
                linkTo(valuePlace(value), ...parameterElements(value.parameter).filter(Boolean)),
            ),
            isShown && rowCount(value) > 0 && pinButton(value),
        ),
        isShown ? tableContent(value) : element("p", { class: "notice" }, missingText(value)),
    );
}

function ownerElement(owner) {
    const constants = owner.values.filter((value) => isHeld(value) && !isTable(value));
    const tables = owner.values.filter((value) => !constants.includes(value));
    if (owner.kind === ownerKinds.substance && owner.values.length === 0) {
        return null;
    }
    return element(
        "section",
        { class: "owner", id: ownerId(owner) },
        ownerHeading(owner),
        constants.length > 0 && constantsElement(owner, constants),
        tables.map(cardElement),
        owner.values.length === 0 && element("p", { class: "faint" }, say("nothingKnown")),
    );
}

function ownerId(owner) {
    return `owner-${owner.kind}-${owner.id}`;
}

function materialElements(substance) {
    return [
        element("h2", { tabindex: -1 }, nameOf(substance)),
        ...identityElement(substance),
        ...substance.owners.map(ownerElement),
    ].filter(Boolean);
}

/** What a place of a material is on the page: its heading when it is the material itself. */
function targetOf({ owner, value }) {
    return document.getElementById(value ? elementId(value) : owner ? ownerId(owner) : "");
}
