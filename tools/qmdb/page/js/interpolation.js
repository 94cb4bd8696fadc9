// Values between the rows of a table, as "qmdb get --at" gives them: linear, exact at the rows, never outside.

/** Why there is no value: `argument` is the index of the argument, `range` in the database's units. */
class Refusal extends Error {
    constructor(reason, argument, at, range) {
        super(reason);
        Object.assign(this, { reason, argument, at, range });
    }
}

function isAscending(numbers) {
    return numbers.every((number, index) => index === 0 || number > numbers[index - 1]);
}

/** The last place whose number is not above `at`; the numbers ascend. */
function placeOf(numbers, at) {
    let [low, high] = [0, numbers.length - 1];
    while (low < high) {
        const middle = Math.ceil((low + high) / 2);
        numbers[middle] <= at ? (low = middle) : (high = middle - 1);
    }
    return low;
}

function requireInside(numbers, at, argument) {
    if (numbers.length === 0) {
        throw new Refusal("empty", argument);
    }
    if (!isAscending(numbers)) {
        throw new Refusal("notAscending", argument);
    }
    const range = [numbers[0], numbers.at(-1)];
    if (!(at >= range[0] && at <= range[1])) {
        throw new Refusal("outside", argument, at, range);
    }
}

function between(low, high, share) {
    return low.map((number, index) => number + (high[index] - number) * share);
}

/** The components at `at` of nodes, each of which `componentsAt` knows; those at a node are exact. */
function interpolated(nodes, at, argument, componentsAt) {
    requireInside(nodes, at, argument);
    const place = placeOf(nodes, at);
    const low = componentsAt(place);
    if (nodes[place] === at) {
        return low;
    }
    return between(low, componentsAt(place + 1), (at - nodes[place]) / (nodes[place + 1] - nodes[place]));
}

function alongSubtable(subtable, at, argument) {
    return interpolated(subtable.x, at, argument, (row) => subtable.components.map((column) => column[row]));
}

/** The components of a table at a point in the database's units, the first argument first. */
function componentsAt(table, point) {
    if (point.length === 1) {
        return alongSubtable(table[0], point[0], 0);
    }
    const firsts = table.map((subtable) => subtable.first);
    return interpolated(firsts, point[0], 0, (place) => alongSubtable(table[place], point[1], 1));
}
