// Values between the rows of a table, as "qmdb get --at" gives them: linear, exact at the rows, never outside.

/**
 * Why there is no value: `argument` is the index of the argument, `range` in the database's units, `first` the
 * first argument of the subtable that does not reach the second.
 */
class Refusal extends Error {
    constructor(reason, argument, at, range, first) {
        super(reason);
        Object.assign(this, { reason, argument, at, range, first });
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

function requireAscending(numbers, argument) {
    if (numbers.length === 0 || !isAscending(numbers)) {
        throw new Refusal(numbers.length === 0 ? "empty" : "notAscending", argument);
    }
}

function requireInside(numbers, at, argument, first) {
    const range = [numbers[0], numbers.at(-1)];
    if (!(at >= range[0] && at <= range[1])) {
        throw new Refusal("outside", argument, at, range, first);
    }
}

/** Rounded as the command rounds: to the digits that both neighbours have. */
function between(low, high, share) {
    return low.map((number, index) =>
        roundedTo(number + (high[index] - number) * share, Math.max(Math.abs(number), Math.abs(high[index]))),
    );
}

/** The components at `at` of ascending nodes, each of which `componentsAt` knows; those at a node are exact. */
function interpolated(nodes, at, componentsAt) {
    const place = placeOf(nodes, at);
    const low = componentsAt(place);
    if (nodes[place] === at) {
        return low;
    }
    return between(low, componentsAt(place + 1), (at - nodes[place]) / (nodes[place + 1] - nodes[place]));
}

function alongSubtable(subtable, at, argument) {
    requireInside(subtable.x, at, argument, subtable.first);
    return interpolated(subtable.x, at, (row) => subtable.components.map((column) => column[row]));
}

/** The components of a table at a point in the database's units, the first argument first. */
function componentsAt(table, point) {
    table.forEach((subtable) => requireAscending(subtable.x, point.length - 1));
    if (point.length === 1) {
        return alongSubtable(table[0], point[0], 0);
    }
    const firsts = table.map((subtable) => subtable.first);
    requireAscending(firsts, 0);
    requireInside(firsts, point[0], 0);
    return interpolated(firsts, point[0], (place) => alongSubtable(table[place], point[1], 1));
}
