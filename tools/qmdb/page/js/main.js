// Shows the place that the address asks for.

function startElements() {
    const values = model.substances.reduce(
        (sum, { owners }) => owners.reduce((all, owner) => all + owner.values.length, sum),
        0,
    );
    return [
        element("h2", { tabindex: -1 }, model.name || say("materials")),
        element("p", {}, say("overview", model.substances.length, values)),
        element("p", {}, say("choose")),
        element("p", { class: "faint" }, say("keys")),
        element("section", {}, element("h3", {}, say("properties")), propertiesElement()),
        element("p", { class: "faint" }, say("made", model.version)),
    ];
}

/** How many materials have each parameter. */
function parameterCounts() {
    const counts = new Map();
    for (const { owners } of model.substances) {
        const all = new Set(owners.flatMap((owner) => owner.values.map((value) => value.parameter)));
        all.forEach((parameter) => counts.set(parameter, (counts.get(parameter) ?? 0) + 1));
    }
    return counts;
}

/** All parameters with the number of their materials, which a click lists. */
function propertiesElement() {
    const rows = [...parameterCounts()].map(([parameter, count]) =>
        element(
            "tr",
            {},
            element("th", { scope: "row" }, parameterElements(parameter)),
            element("td", {}, shownUnits(parameter.units).label),
            element(
                "td",
                { class: "number" },
                element(
                    "button",
                    {
                        type: "button",
                        onclick: () => filterBy(parameter),
                        "aria-label": `${nameOf(parameter)}: ${say("materialsWith")} ${count}`,
                    },
                    String(count),
                ),
            ),
        ),
    );
    return element(
        "div",
        { class: "wide" },
        tableElement(
            say("properties"),
            ["property", "units", "materialsWith"].map((key) => say(key)),
            rows,
            { class: "properties" },
        ),
    );
}

function unknownElements(texts) {
    return texts.map((text) => element("p", { class: "notice" }, say("unknownPlace", text)));
}

/** The comparison that an address asks for; it takes the place of what was pinned. */
function comparedElements({ compare, unknown }) {
    pins.clear();
    compare.forEach((value) => pins.add(value));
    return [...comparisonElements(compare), ...unknownElements(unknown)];
}

/** The elements of a place, which view it is, and its title. */
function viewOf(place) {
    if (place.compare) {
        return { view: "compare", title: say("comparison"), elements: comparedElements(place) };
    }
    if (place.substance) {
        return {
            view: "material",
            title: nameOf(place.substance),
            elements: materialElements(place.substance),
        };
    }
    const heading = () => element("h2", { tabindex: -1 }, say("materials"));
    return {
        view: "start",
        elements: place.unknown ? [heading(), ...unknownElements(place.unknown)] : startElements(),
    };
}

function backLink() {
    return element("a", { class: "back", href: "#" }, `‹ ${say("back")}`);
}

let shown = {}; // the place on the page

function showPlace() {
    endCharts();
    const place = placeOfAddress(location.hash);
    const { view, title, elements } = viewOf(place);
    const main = document.querySelector("main");
    const stays = place.substance && place.substance === shown.substance;
    document.title = [title, model.name].filter(Boolean).join(" – ");
    document.body.dataset.view = view;
    main.replaceChildren(backLink(), ...elements);
    markCurrent(place.substance);
    showPinCount();
    bringIntoView(place, stays);
    shown = place;
}

function bringIntoView(place, stays) {
    const target = place.owner && targetOf(place);
    const main = document.querySelector("main");
    main.querySelector(".target")?.classList.remove("target");
    if (target) {
        target.classList.add("target");
        target.scrollIntoView({ block: "start" });
    } else if (!stays) {
        main.scrollTo(0, 0);
        window.scrollTo(0, 0);
    }
}

/** Goes to a place without a step of its own in the history. */
function replacePlace(address) {
    history.replaceState(null, "", address);
    showPlace();
}

function switchLanguage(index) {
    language = index;
    document.documentElement.lang = languages[language];
    showToolbar();
    showList();
    showPlace();
}

window.addEventListener("hashchange", showPlace);
switchLanguage(Math.max(0, languages.indexOf(model.language)));
