// The head of the page: its name, units, language, the way to the comparison.

let pinLink;

function showPinCount() {
    pinLink.textContent = pins.size > 0 ? say("compareCount", pins.size) : say("compare");
    pinLink.setAttribute("href", addressOf({ compare: [...pins] }));
}

function unitsMenu() {
    const field = (index) => {
        const quantity = model.quantities[index];
        const options = [
            ["", say("asStored")],
            ...quantity.choices.map((choice, place) => [place, textIn(choice)]),
        ];
        return element(
            "label",
            {},
            element("span", {}, textIn(quantity.name)),
            choiceElement(textIn(quantity.name), options, chosenUnits.get(index) ?? "", (choice) => {
                choice === "" ? chosenUnits.delete(index) : chosenUnits.set(index, Number(choice));
                showPlace();
            }),
        );
    };
    const fields = usedQuantities().map(field);
    return (
        fields.length > 0 &&
        element(
            "details",
            { class: "menu" },
            element("summary", {}, say("units")),
            element("div", { class: "menu-box" }, fields),
        )
    );
}

function languageButtons() {
    return element(
        "div",
        { class: "languages", role: "group", "aria-label": say("language") },
        languages.map((code, index) =>
            element(
                "button",
                {
                    type: "button",
                    class: "toggle",
                    lang: code,
                    "aria-pressed": String(index === language),
                    "aria-label": languageNames[index],
                    title: languageNames[index],
                    onclick: () => switchLanguage(index),
                },
                code.toUpperCase(),
            ),
        ),
    );
}

function showToolbar() {
    pinLink = element("a", { class: "button" });
    showPinCount();
    document
        .querySelector("header.top")
        .replaceChildren(
            ...[
                element("h1", {}, element("a", { href: "#" }, model.name || say("materials"))),
                element(
                    "div",
                    { class: "tools" },
                    ...[pinLink, unitsMenu(), languageButtons()].filter(Boolean),
                ),
            ],
        );
}

/** A menu closes when something else is used. */
document.addEventListener("click", (event) => {
    for (const menu of document.querySelectorAll("details.menu[open]")) {
        if (!menu.contains(event.target)) {
            menu.open = false;
        }
    }
});
