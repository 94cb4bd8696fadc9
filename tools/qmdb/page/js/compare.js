// The comparison: values that were pinned, those of one parameter over one quantity in one chart.

const pins = new Set();

function setPinned(value, isPinned) {
    isPinned ? pins.add(value) : pins.delete(value);
    showPinCount();
}

/** Pinned tables whose curves share their axes, with the constants of the same parameter. */
function groupsOf(values) {
    const groups = [];
    for (const value of values.filter(isTable)) {
        const group = groups.find((other) => sharesAxes(other.values[0], value));
        group ? group.values.push(value) : groups.push({ parameter: value.parameter, values: [value] });
    }
    for (const value of values.filter((other) => !isTable(other))) {
        const same = groups.filter((group) => group.parameter === value.parameter);
        same.forEach((group) => group.values.push(value));
        if (same.length === 0) {
            groups.push({ parameter: value.parameter, values: [value] });
        }
    }
    return groups;
}

function sharesAxes(first, second) {
    const [a, b] = [first, second].map((value) => isTable(value) && argumentOf(value, -1));
    return (
        first.parameter === second.parameter &&
        a &&
        b &&
        a.key === b.key &&
        commonUnits(a.unitsIndex, b.unitsIndex) !== null
    );
}

/** How numbers of the last argument of a value are shown on the axis of a group. */
function onAxisOf(group, value) {
    const axis = argumentOf(group.values[0], -1);
    const toAxis = commonUnits(axis.unitsIndex, argumentOf(value, -1).unitsIndex);
    return (number) => axis.units.convert(toAxis(number));
}

function comparisonChart(group) {
    const { name, units } = argumentOf(group.values[0], -1);
    return {
        curves: comparedCurves(group.values, (value) => onAxisOf(group, value)),
        xLabel: withUnits(name, units.label),
        ...valueLabels(group.parameter),
    };
}

/** The arguments that a point of a group needs: those of its table with the most. */
function groupArguments(group) {
    const tables = group.values.filter(isTable);
    const longest = tables.find((value) => value.arguments.length === 2) ?? tables[0];
    return longest
        ? longest.arguments.map((_, index) => ({ ...argumentOf(longest, index), of: longest, index }))
        : [];
}

/** The arguments of one value out of those of a point of its group, in the value's own units. */
function ownPoint(value, point, shown) {
    const offset = shown.length - value.arguments.length;
    return value.arguments.map((_, index) => {
        const own = argumentOf(value, index);
        const back = commonUnits(own.unitsIndex, shown[offset + index].unitsIndex);
        return back ? back(point[offset + index]) : NaN;
    });
}

/** The colour of a value's curves. */
function swatch(place) {
    const mark = element("span", { class: "swatch", "aria-hidden": "true" });
    mark.style.background = `var(--curve${place % distinctColours})`;
    return mark;
}

function comparedRow(value, group) {
    const cell = element("td", { class: "at-point" });
    const showAt = (point, shown) => {
        const own = value.arguments.map((_, index) => argumentOf(value, index));
        cell.replaceChildren(...valueElements(value, ownPoint(value, point, shown), own));
    };
    const row = element(
        "tr",
        {},
        element(
            "th",
            { scope: "row" },
            swatch(group.values.indexOf(value)),
            linkTo(valuePlace(value), ownerText(value.owner)),
        ),
        element("td", { class: "extent-cell" }, isTable(value) ? extentText(value) : say("constant")),
        cell,
        element(
            "td",
            { class: "pin" },
            element(
                "button",
                {
                    type: "button",
                    "aria-label": say("unpinThis", ownerText(value.owner)),
                    onclick: () => (setPinned(value, false), openComparison(true)),
                },
                say("unpin"),
            ),
        ),
    );
    if (!isTable(value)) {
        const units = shownUnits(group.parameter.units);
        cell.append(...componentElements(constantOf(value).map(units.convert), units.label));
    }
    return {
        row,
        showAt: isTable(value) ? showAt : () => {},
        clear: () => isTable(value) && cell.replaceChildren(),
    };
}

/** Fields for a point, whose values appear in the rows. */
function comparedPoint(group, rows) {
    const shown = groupArguments(group);
    const output = element("output", {});
    const update = () => {
        rows.forEach((row) => row.clear());
        showPoint(fields, output, (point) => (rows.forEach((row) => row.showAt(point, shown)), []));
    };
    const fields = shown.map((argument) =>
        pointField(argument, argumentRange(argument.of, argument.index), update),
    );
    return (
        fields.length > 0 &&
        element(
            "form",
            { class: "point", onsubmit: (event) => event.preventDefault() },
            element("span", { class: "point-title" }, say("atPoint")),
            fields.map(({ label }) => label),
            output,
        )
    );
}

function groupElement(group) {
    const rows = group.values.map((value) => comparedRow(value, group));
    const heads = ["material", "extent", "value"].map((key) => say(key));
    return element(
        "section",
        { class: "card" },
        element("h3", {}, parameterElements(group.parameter)),
        isTable(group.values[0]) && chartElement(() => comparisonChart(group)),
        comparedPoint(group, rows),
        element(
            "div",
            { class: "wide" },
            withRoles(
                tableElement(
                    nameOf(group.parameter),
                    [...heads, element("span", { class: "unseen" }, say("unpin"))],
                    rows.map(({ row }) => row),
                    { class: "compared" },
                ),
            ),
        ),
    );
}

function comparisonElements(values) {
    const clear = element(
        "button",
        { type: "button", onclick: () => (pins.clear(), showPinCount(), openComparison(true)) },
        say("clear"),
    );
    return [
        element(
            "div",
            { class: "card-head" },
            element("h2", { tabindex: -1 }, say("comparison")),
            values.length > 0 && clear,
        ),
        ...(values.length === 0
            ? [element("p", {}, say("comparisonEmpty"))]
            : groupsOf(values).map(groupElement)),
    ];
}

/** Shows what is pinned, in place of the last comparison or as a new place. */
function openComparison(isReplaced) {
    const address = addressOf({ compare: [...pins] });
    isReplaced ? replacePlace(address) : (location.hash = address);
}
