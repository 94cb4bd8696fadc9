// Which materials match a text and the filters, the best first.

/** Letters without case, accents and the like: "H₂O" is "h2o". */
function folded(text) {
    return text.normalize("NFKD").replace(/\p{M}/gu, "").toLowerCase();
}

function textsOf(substance) {
    const both = (text) => (Array.isArray(text) ? text : [text]);
    const { name, formula, cas, aliases = [] } = substance;
    return { names: both(name).map(folded), others: [formula ?? "", cas ?? "", ...aliases].map(folded) };
}

/** What is searched of a material, made once. */
function searchedTexts(substance) {
    substance.searched ??= textsOf(substance);
    return substance.searched;
}

/** How well a material matches a folded text: 0 is best; nothing when it does not match. */
function rankOf(substance, text, parameters) {
    const { names, others } = searchedTexts(substance);
    const ranks = [
        () => names.includes(text) || others.includes(text),
        () => names.some((name) => name.startsWith(text)),
        () => names.some((name) => name.includes(text)),
        () => others.some((other) => other.includes(text)),
        () =>
            parameters.size > 0 &&
            substance.owners.some((owner) => owner.values.some((value) => parameters.has(value.parameter))),
    ];
    const rank = ranks.findIndex((matches) => matches());
    return rank < 0 ? undefined : rank;
}

/** The parameters that a text is the symbol or a whole name of. */
function parametersCalled(text, foldedText) {
    const isCalled = ({ name, symbol }) =>
        symbol === text || folded(textIn(name, 0)) === foldedText || folded(textIn(name, 1)) === foldedText;
    return new Set(model.parameters.filter(isCalled));
}

/** Whether a material has a phase of a state, and a parameter there or where there is no state. */
function passesFilters(substance, { state, parameter }) {
    const has = (owner) => !parameter || owner.values.some((value) => value.parameter.id === parameter);
    const fits = (owner) => owner.kind !== ownerKinds.phase || !state || owner.state === state;
    const isThere = !state || substance.owners.some((owner) => owner.state === state);
    return isThere && substance.owners.some((owner) => fits(owner) && has(owner));
}

function matchingSubstances(text, filters) {
    const query = folded(text.trim());
    const candidates = model.substances.filter((substance) => passesFilters(substance, filters));
    if (!query) {
        return candidates;
    }
    const parameters = parametersCalled(text.trim(), query);
    return candidates
        .map((substance) => ({ substance, rank: rankOf(substance, query, parameters) }))
        .filter(({ rank }) => rank !== undefined)
        .sort((a, b) => a.rank - b.rank)
        .map(({ substance }) => substance);
}
