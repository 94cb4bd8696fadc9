// Places of the page in the address: #Copper/Solid/Thermal%20conductivity, #?compare=PLACE&PLACE.

const comparePrefix = "?compare=";

function encoded(name) {
    return encodeURIComponent(name).replace(/%20/g, " ").replace(/%2C/g, ",");
}

function decoded(text) {
    try {
        return decodeURIComponent(text);
    } catch {
        return text;
    }
}

const isNumber = (text) => /^-?\d+$/.test(text);

/** A name that leads to one thing of a list only: its own where no other has it, else the given one. */
function uniqueName(thing, all, otherwise) {
    const name = nameOf(thing);
    const alone = all.filter((other) => nameOf(other) === name).length === 1;
    return alone && name && !isNumber(name) ? name : otherwise;
}

function ownerKey(owner) {
    return `${owner.kind === ownerKinds.phase ? "phase" : "change"}:${owner.id}`;
}

const namedOwners = (substance) => substance.owners.filter((owner) => owner.kind !== ownerKinds.substance);

function substanceCounts() {
    if (substanceCounts.language !== language) {
        substanceCounts.language = language;
        substanceCounts.all = new Map();
        for (const substance of model.substances) {
            const name = nameOf(substance);
            substanceCounts.all.set(name, (substanceCounts.all.get(name) ?? 0) + 1);
        }
    }
    return substanceCounts.all;
}

function substanceName(substance) {
    const name = nameOf(substance);
    return name && !isNumber(name) && substanceCounts().get(name) === 1 ? name : String(substance.id);
}

/** The names on the way to a substance, an owner or a value. */
function wayTo({ substance, owner, value }) {
    const way = [substanceName(substance)];
    if (owner && owner.kind !== ownerKinds.substance) {
        way.push(uniqueName(owner, namedOwners(substance), ownerKey(owner)));
    } else if (value) {
        way.push("");
    }
    return value
        ? [
              ...way,
              uniqueName(
                  value.parameter,
                  owner.values.map((other) => other.parameter),
                  String(value.parameter.id),
              ),
          ]
        : way;
}

function placeText(place) {
    return wayTo(place).map(encoded).join("/");
}

function valuePlace(value) {
    return { substance: value.owner.substance, owner: value.owner, value };
}

function addressOf(place) {
    if (place.compare) {
        return "#" + comparePrefix + place.compare.map((value) => placeText(valuePlace(value))).join("&");
    }
    return "#" + (place.substance ? placeText(place) : "");
}

/** The first of a list with this name in either language, exactly or else without regard to case. */
function called(all, name, namesOf = (thing) => [textIn(thing.name, 0), textIn(thing.name, 1)]) {
    const folded = name.toLowerCase();
    const current = all.filter((thing) => nameOf(thing) === name);
    return (
        current[0] ??
        all.find((thing) => namesOf(thing).includes(name)) ??
        all.find((thing) => namesOf(thing).some((other) => other?.toLowerCase() === folded))
    );
}

function substanceCalled(name) {
    const namesOf = ({ name: names, formula, cas, aliases = [] }) => [
        textIn(names, 0),
        textIn(names, 1),
        formula,
        cas,
        ...aliases,
    ];
    const byName = called(model.substances, name);
    return (
        byName ?? (isNumber(name) ? model.byId.get(Number(name)) : called(model.substances, name, namesOf))
    );
}

function ownerCalled(substance, name) {
    const owners = namedOwners(substance);
    return (
        owners.find((owner) => ownerKey(owner) === name) ??
        called(owners, name) ??
        owners.find((owner) => isNumber(name) && owner.id === Number(name))
    );
}

function valueCalled(owner, name) {
    const parameters = owner.values.map((value) => value.parameter);
    const found =
        called(parameters, name) ??
        parameters.find((parameter) => parameter.symbol === name || String(parameter.id) === name);
    return owner.values.find((value) => value.parameter === found);
}

/** Where names lead; nothing where one of them leads nowhere. A name behind a substance may be its own value's. */
function placeAlong([first, second, third]) {
    const substance = substanceCalled(first);
    if (!substance || second === undefined) {
        return substance && { substance };
    }
    const self = substance.owners.find((owner) => owner.kind === ownerKinds.substance);
    const owner = second === "" ? self : ownerCalled(substance, second);
    if (third === undefined) {
        const value = owner ? undefined : valueCalled(self, second);
        return owner ? { substance, owner } : value && { substance, owner: self, value };
    }
    const value = owner && valueCalled(owner, third);
    return value && { substance, owner, value };
}

function placeOfText(text) {
    return placeAlong(text.split("/").map(decoded));
}

/** The value of a place, when it can be compared. */
function comparedValue(place) {
    const value = place?.value;
    return value && isHeld(value) && (!isTable(value) || rowCount(value) > 0) ? value : undefined;
}

/** What the address asks for; `unknown` holds the texts that lead nowhere. */
function placeOfAddress(hash) {
    const text = hash.replace(/^#/, "");
    if (text.startsWith(comparePrefix)) {
        const texts = text.slice(comparePrefix.length).split("&").filter(Boolean);
        const values = texts.map((part) => comparedValue(placeOfText(part)));
        return {
            compare: values.filter(Boolean),
            unknown: texts.filter((part, index) => !values[index]).map(decoded),
        };
    }
    return text ? (placeOfText(text) ?? { unknown: [decoded(text)] }) : {};
}
