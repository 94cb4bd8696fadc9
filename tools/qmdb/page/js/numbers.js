// Numbers as people read and write them.

const superscripts = { "-": "⁻", 0: "⁰", 1: "¹", 2: "²", 3: "³", 4: "⁴", 5: "⁵", 6: "⁶", 7: "⁷", 8: "⁸", 9: "⁹" };

/** The shortest text that is this number; very large and small ones with a power of ten. */
function numberText(number) {
    const size = Math.abs(number);
    if (!Number.isFinite(number) || number === 0 || (size >= 1e-4 && size < 1e7)) {
        return String(number).replace("-", "−");
    }
    const [mantissa, exponent] = number.toExponential().split("e");
    const raised = [...exponent.replace("+", "")].map((digit) => superscripts[digit]).join("");
    return `${mantissa.replace("-", "−")}×10${raised}`;
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
