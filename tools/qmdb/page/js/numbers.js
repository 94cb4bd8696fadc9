// Numbers as people read and write them.

const superscripts = {
    "-": "⁻",
    0: "⁰",
    1: "¹",
    2: "²",
    3: "³",
    4: "⁴",
    5: "⁵",
    6: "⁶",
    7: "⁷",
    8: "⁸",
    9: "⁹",
};

const isPlain = (size) => !Number.isFinite(size) || size === 0 || (size >= 1e-4 && size < 1e10);

/** The shortest text that is this number, as other programs read it. */
function plainText(number) {
    return isPlain(Math.abs(number)) ? String(number) : number.toExponential().replace("+", "");
}

/** The same as people read it: digits in groups, powers of ten. */
function numberText(number) {
    if (isPlain(Math.abs(number))) {
        const [whole, fraction] = String(number).replace("-", "−").split(".");
        const grouped = /\d{5}/.test(whole) ? whole.replace(/\B(?=(\d{3})+$)/g, "\u202f") : whole;
        return fraction ? `${grouped}.${fraction}` : grouped;
    }
    const [mantissa, exponent] = number.toExponential().split("e");
    const raised = [...exponent.replace("+", "")].map((digit) => superscripts[digit]).join("");
    return `${mantissa === "1" ? "" : `${mantissa.replace("-", "−")}×`}10${raised}`;
}

/** A number of an axis, without what binary arithmetic adds. */
function tickText(number) {
    return number === null ? "" : numberText(Number(number.toPrecision(10)));
}

/** What somebody typed; a comma may stand for the point. NaN for what is no number. */
function typedNumber(text) {
    const plain = text.trim().replace(",", ".").replace("−", "-").replace(/[\s_]/g, "");
    return /^[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?$/i.test(plain) ? Number(plain) : NaN;
}
