// The database that the page holds.

const model = JSON.parse(document.getElementById("data").textContent);

const ownerKinds = { substance: 0, phase: 1, change: 2 };

function connect() {
    model.byId = new Map();
    for (const substance of model.substances) {
        model.byId.set(substance.id, substance);
        for (const owner of substance.owners) {
            owner.substance = substance;
            for (const value of owner.values) {
                value.owner = owner;
                value.parameter = model.parameters[value.parameter];
            }
        }
    }
}
connect();

function nameOf(thing) {
    return textIn(thing.name);
}

/** "Copper", "Copper, Solid". */
function ownerText(owner) {
    const substance = nameOf(owner.substance);
    return owner.kind === ownerKinds.substance ? substance : `${substance}, ${nameOf(owner)}`;
}

function stateText(state) {
    return phrases[`state${state}`] ? say(`state${state}`) : say("stateOther", state);
}

function phaseOf(substance, id) {
    return substance.owners.find((owner) => owner.kind === ownerKinds.phase && owner.id === id);
}

function decodedNumbers(text) {
    if (!text) {
        return [];
    }
    if (!text.startsWith("=")) {
        const special = { nan: NaN, inf: Infinity, "-inf": -Infinity };
        return text.split(" ").map((number) => special[number] ?? Number(number));
    }
    const bytes = Uint8Array.from(atob(text.slice(1)), (character) => character.charCodeAt(0));
    const view = new DataView(bytes.buffer);
    return Array.from({ length: bytes.length / 8 }, (_, index) => view.getFloat64(8 * index, true));
}

/** Rows that lie one behind the other as columns: x and the components. */
function subtableOf(numbers, begin, rows, components, first) {
    const column = (index) =>
        Array.from({ length: rows }, (_, row) => numbers[begin + row * (1 + components) + index]);
    return {
        first,
        x: column(0),
        components: Array.from({ length: components }, (_, index) => column(1 + index)),
    };
}

function subtablesOf(numbers, components) {
    const subtables = [];
    for (let at = 0; at < numbers.length; ) {
        const rows = numbers[at + 1];
        subtables.push(subtableOf(numbers, at + 2, rows, components, numbers[at]));
        at += 2 + rows * (1 + components);
    }
    return subtables;
}

function isHeld(value) {
    return value.leftOut === undefined && value.unreadable === undefined;
}

function isTable(value) {
    return value.arguments !== undefined;
}

function componentsOf(value) {
    return value.vector ? 3 : 1;
}

/** The components of a constant. */
function constantOf(value) {
    return decodedNumbers(value.numbers);
}

/** The subtables of a table, one for a table of one argument; decoded when first asked for. */
function tableOf(value) {
    if (!value.table) {
        const numbers = decodedNumbers(value.numbers);
        const components = componentsOf(value);
        value.table =
            value.arguments.length === 2
                ? subtablesOf(numbers, components)
                : [subtableOf(numbers, 0, numbers.length / (1 + components), components)];
        delete value.numbers;
    }
    return value.table;
}

function rowCount(value) {
    return tableOf(value).reduce((sum, subtable) => sum + subtable.x.length, 0);
}

/** An argument with its name and how its numbers are shown. The last one is the axis of charts. */
function argumentOf(value, index) {
    const argument = model.arguments[value.arguments.at(index)];
    const name = phrases[argument.name]
        ? say(argument.name)
        : argument.name || argument.symbol || say("argument");
    const symbol = argument.symbol || name;
    return {
        name,
        symbol,
        units: shownUnits(argument.units),
        unitsIndex: argument.units,
        key: argument.name,
    };
}

/** The least and the greatest number of a list; nothing of an empty one. */
function rangeOf(numbers) {
    let [low, high] = [Infinity, -Infinity];
    for (const number of numbers) {
        low = number < low ? number : low;
        high = number > high ? number : high;
    }
    return low <= high ? [low, high] : null;
}

/** The range of an argument over the whole table, in the database's units. */
function argumentRange(value, index) {
    const table = tableOf(value);
    const isFirst = value.arguments.length === 2 && index === 0;
    return rangeOf(table.flatMap((subtable) => (isFirst ? [subtable.first] : (rangeOf(subtable.x) ?? []))));
}
