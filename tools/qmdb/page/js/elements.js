// Elements of the page. Texts become text nodes only: no name of a database is ever read as HTML.

/** An element with properties, attributes and listeners; children are elements, texts, or nothing. */
function element(tag, settings = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, setting] of Object.entries(settings)) {
        if (typeof setting === "function") {
            made.addEventListener(name.slice(2), setting);
        } else if (setting !== undefined && setting !== false) {
            made.setAttribute(name, setting === true ? "" : setting);
        }
    }
    made.append(
        ...children.flat().filter((child) => child !== undefined && child !== null && child !== false),
    );
    return made;
}

function linkTo(place, ...children) {
    return element("a", { href: addressOf(place) }, ...children);
}

/** A chemical formula with its numbers below the line. */
function formulaElement(formula) {
    const parts = formula.split(/(?<=[A-Za-z)\]])(\d+)/);
    return element(
        "span",
        { class: "formula" },
        parts.map((part, index) => (index % 2 ? element("sub", {}, part) : part)),
    );
}

/** A number that can be copied into other programs. */
function numberElement(number) {
    return element("data", { value: String(number) }, plainText(number));
}

/** A choice with its label; the label may be for screen readers only. */
function choiceElement(label, options, selected, onchange) {
    const select = element(
        "select",
        { "aria-label": label, onchange: () => onchange(select.value) },
        options.map(([value, text]) =>
            element("option", { value, selected: String(value) === String(selected) }, text),
        ),
    );
    return select;
}

/** A switch button that tells whether it is on. */
function toggleElement(text, label, isOn, onToggle) {
    const button = element(
        "button",
        {
            type: "button",
            class: "toggle",
            "aria-pressed": String(isOn),
            "aria-label": label,
            title: label,
            onclick: () => {
                const next = button.getAttribute("aria-pressed") !== "true";
                button.setAttribute("aria-pressed", String(next));
                onToggle(next);
            },
        },
        text,
    );
    return button;
}

function tableElement(caption, heads, rows, settings = {}) {
    return element(
        "table",
        settings,
        element("caption", { class: "unseen" }, caption),
        element(
            "thead",
            {},
            element(
                "tr",
                {},
                heads.map((head) => element("th", { scope: "col" }, head)),
            ),
        ),
        element("tbody", {}, rows),
    );
}

/** A table that remains one for screen readers when the style sheet lays its rows out otherwise. */
function withRoles(table) {
    const roles = {
        "thead, tbody": "rowgroup",
        tr: "row",
        "thead th": "columnheader",
        "tbody th": "rowheader",
        td: "cell",
    };
    table.setAttribute("role", "table");
    for (const [selector, role] of Object.entries(roles)) {
        table.querySelectorAll(selector).forEach((part) => part.setAttribute("role", role));
    }
    return table;
}
