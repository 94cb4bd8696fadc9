// The list of materials with its search.

const filters = { text: "", state: 0, parameter: 0 };
const listed = new Map(); // a substance → its item
let listParts;

function itemOf(substance) {
    if (!listed.has(substance)) {
        listed.set(
            substance,
            element(
                "li",
                {},
                linkTo(
                    { substance },
                    nameOf(substance),
                    substance.formula &&
                        element("span", { class: "faint" }, " ", formulaElement(substance.formula)),
                ),
            ),
        );
    }
    return listed.get(substance);
}

function showMatches() {
    const matches = matchingSubstances(filters.text, filters);
    listParts.list.replaceChildren(...matches.map(itemOf));
    listParts.count.textContent =
        matches.length === 0 ? say("nothingFound") : say("found", matches.length, model.substances.length);
}

function statesOfAll() {
    const states = model.substances.flatMap(({ owners }) =>
        owners.filter(({ kind }) => kind === ownerKinds.phase).map(({ state }) => state),
    );
    return [...new Set(states)].sort((a, b) => a - b);
}

function filterFields() {
    const parameters = [
        ...new Map(model.parameters.map((parameter) => [parameter.id, nameOf(parameter)])),
    ].sort((a, b) => a[1].localeCompare(b[1], languages[language]));
    const filter = (label, key, options) =>
        choiceElement(label, options, filters[key], (choice) => {
            filters[key] = Number(choice);
            showMatches();
        });
    return element(
        "div",
        { class: "filters" },
        filter(say("stateFilter"), "state", [
            [0, say("anyState")],
            ...statesOfAll().map((state) => [state, stateText(state)]),
        ]),
        filter(say("propertyFilter"), "parameter", [[0, say("anyProperty")], ...parameters]),
    );
}

function showList() {
    listed.clear();
    const search = element("input", {
        type: "search",
        id: "search",
        "aria-label": say("search"),
        placeholder: say("searchHint"),
        autocomplete: "off",
        spellcheck: "false",
        title: say("keys"),
        oninput: () => {
            filters.text = search.value;
            showMatches();
        },
    });
    search.value = filters.text;
    listParts = { search, list: element("ul", {}), count: element("p", { class: "count", role: "status" }) };
    const nav = document.querySelector("nav.left");
    nav.setAttribute("aria-label", say("materials"));
    nav.replaceChildren(
        element("div", { class: "search" }, search, filterFields(), listParts.count),
        listParts.list,
    );
    showMatches();
}

/** Lists the materials that have a parameter. */
function filterBy(parameter) {
    filters.parameter = parameter.id;
    showList();
    listParts.search.focus();
}

function markCurrent(substance) {
    listParts.list.querySelectorAll("[aria-current]").forEach((link) => link.removeAttribute("aria-current"));
    const link = substance && listed.get(substance)?.firstChild;
    link?.setAttribute("aria-current", "page");
    link?.scrollIntoView({ block: "nearest" });
}

/** The links of the list; the first is after the search field. */
function moveInList(step) {
    const links = [...listParts.list.querySelectorAll("a")];
    const at = links.indexOf(document.activeElement);
    if (at < 0 && document.activeElement !== listParts.search) {
        return false;
    }
    if (at + step < 0) {
        listParts.search.focus();
    } else if (links[at + step]) {
        links[at + step].focus();
        replacePlace(links[at + step].getAttribute("href"));
    }
    return true;
}

const isTyping = () => ["INPUT", "SELECT", "TEXTAREA"].includes(document.activeElement?.tagName);

function clearSearch() {
    filters.text = listParts.search.value = "";
    showMatches();
}

document.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey) {
        return;
    }
    const steps = { ArrowDown: 1, ArrowUp: -1 };
    if (event.key === "/" && !isTyping()) {
        document.body.dataset.view =
            document.body.dataset.view === "material" ? "start" : document.body.dataset.view;
        listParts.search.focus();
        listParts.search.select();
    } else if (event.key === "Escape" && document.activeElement === listParts.search) {
        clearSearch();
    } else if (!steps[event.key] || !moveInList(steps[event.key])) {
        return;
    }
    event.preventDefault();
});
