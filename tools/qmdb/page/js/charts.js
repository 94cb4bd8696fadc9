// Charts: curves over a common axis, drawn by uPlot.
//
// A curve is { label, x, y, colour, dash, level }: numbers as shown, the name of a colour, whether it is a
// constant drawn as a level line.

const liveCharts = new Set();
const pendingCharts = new Map(); // elements whose chart is made when they come into view

const distinctColours = 8; // that the style sheet has
const mostMarkers = 80; // of a curve; more would hide it

function themeColour(name) {
    return getComputedStyle(document.body).getPropertyValue(`--${name}`).trim();
}

/** Colours that differ: curves of a comparison. */
function distinctColour(index) {
    return () => themeColour(`curve${index % distinctColours}`);
}

/** Colours in an order: curves over rising first arguments, from blue to red. */
function orderedColour(index, count) {
    const hue = count < 2 ? 215 : 230 - (230 * index) / (count - 1);
    return () => `hsl(${hue} ${themeColour("ramp-saturation")} ${themeColour("ramp-lightness")})`;
}

const dashes = [undefined, [9, 5], [2, 4], [9, 4, 2, 4]];

/** All numbers of some lists once, in ascending order. */
function mergedNumbers(lists) {
    return [...Float64Array.from(new Set(lists.flat())).sort()];
}

/** A curve at all x: between its own points as interpolation gives it, nothing outside. */
function filledColumn({ x, y }, all) {
    let at = 0;
    return all.map((wanted) => {
        while (at + 1 < x.length && x[at + 1] <= wanted) {
            ++at;
        }
        if (x.length === 0 || wanted < x[0] || (wanted > x[at] && at + 1 === x.length)) {
            return null;
        }
        return x[at] === wanted
            ? y[at]
            : y[at] + (y[at + 1] - y[at]) * ((wanted - x[at]) / (x[at + 1] - x[at]));
    });
}

function finitePoints(curve, isShownX) {
    const kept = curve.x.map((number, index) => index).filter((index) => isShownX(curve.x[index]));
    return { ...curve, x: kept.map((index) => curve.x[index]), y: kept.map((index) => curve.y[index]) };
}

/** The columns that uPlot draws, and for each curve which of their places are its own points. */
function alignedCurves(curves, logX, logY) {
    const isShownX = (x) => Number.isFinite(x) && (!logX || x > 0);
    const isShownY = (y) => y !== null && Number.isFinite(y) && (!logY || y > 0);
    const tables = curves.map((curve) => (curve.level ? curve : finitePoints(curve, isShownX)));
    const x = mergedNumbers(tables.filter((curve) => !curve.level).map((curve) => curve.x));
    const columns = tables.map((curve) => {
        const column = curve.level ? x.map(() => curve.y[0]) : filledColumn(curve, x);
        return column.map((y) => (isShownY(y) ? y : null));
    });
    return { data: [x, ...columns], own: tables.map((curve, index) => ownPlaces(curve, x, columns[index])) };
}

function ownPlaces(curve, x, column) {
    const own = new Set(curve.level ? [] : curve.x);
    return own.size > mostMarkers
        ? []
        : x.map((number, index) => index).filter((index) => own.has(x[index]) && column[index] !== null);
}

function seriesOf(curve, own) {
    return {
        label: curve.label,
        stroke: curve.colour,
        dash: curve.dash,
        width: curve.level ? 1.5 : 2,
        points: { show: own.length > 0, size: 6, filter: () => own, fill: curve.colour },
        value: (chart, number) => (number === null || number === undefined ? "–" : hoverText(number)),
    };
}

const hoverText = (number) => numberText(Number(number.toPrecision(6)));

function axisOf(label, side) {
    const ink = () => themeColour("faint-ink");
    const line = { stroke: () => themeColour("line"), width: 1 };
    const font = "12px system-ui, sans-serif";
    const wide = (chart, texts) => 24 + 7 * Math.max(3, ...(texts ?? []).map((text) => text.length));
    return {
        label,
        side,
        stroke: ink,
        grid: line,
        ticks: line,
        font,
        labelFont: "13px system-ui, sans-serif",
        labelSize: 22,
        size: side === 3 ? wide : 36,
        values: (chart, splits) => splits.map(tickText),
    };
}

function chartSize(box) {
    const width = Math.max(240, box.clientWidth);
    return { width, height: Math.round(Math.min(340, Math.max(230, width * 0.6))) };
}

function scaleOf(isLogarithmic) {
    return { time: false, distr: isLogarithmic ? 3 : 1 };
}

/** Where the cursor's line stands: at the x whose values the legend shows, but freely while zooming. */
function besideValues(chart, left, top) {
    return left < 0 || chart.cursor.event?.buttons
        ? [left, top]
        : [chart.valToPos(chart.data[0][chart.posToIdx(left)], "x"), top];
}

/** The label of the upright axis: a short one where the other does not fit. */
function uprightLabel({ yLabel, yShort }, height) {
    const roomAround = 70;
    const characterWidth = 7.2;
    return yLabel.length * characterWidth > height - roomAround ? yShort : yLabel;
}

function chartSettings(description, own, box) {
    const { curves, xLabel, logX, logY } = description;
    const size = chartSize(box);
    return {
        ...size,
        scales: { x: scaleOf(logX), y: scaleOf(logY) },
        axes: [axisOf(xLabel, 2), axisOf(uprightLabel(description, size.height), 3)],
        series: [
            { label: xLabel, value: (chart, number) => (number === null ? "–" : hoverText(number)) },
            ...curves.map((curve, index) => seriesOf(curve, own[index])),
        ],
        legend: { markers: { dash: (chart, index) => (curves[index - 1]?.dash ? "dotted" : "solid") } },
        cursor: { y: false, move: besideValues, drag: { x: true, y: false, setScale: true } },
    };
}

/** Draws a chart into a box and keeps it as wide as the box. */
function drawChart(box, description) {
    const { data, own } = alignedCurves(description.curves, description.logX, description.logY);
    const chart = new uPlot(chartSettings(description, own, box), data, box);
    const canvas = chart.root.querySelector("canvas");
    canvas.setAttribute("role", "img");
    canvas.setAttribute("aria-label", say("chart", description.yLabel, description.xLabel));
    const observer = new ResizeObserver(() => {
        const size = chartSize(box);
        if (size.width !== chart.width) {
            chart.setSize(size);
        }
    });
    observer.observe(box);
    const live = {
        redraw: () => chart.redraw(false),
        end: () => (observer.disconnect(), chart.destroy()),
        resetZoom: () => chart.setData(chart.data),
    };
    liveCharts.add(live);
    return live;
}

/** Buttons above a chart: logarithmic axes where they can be, and back to the whole range. */
function chartButtons(description, redraw, resetZoom) {
    const toggle = (axis, label, numbers) =>
        numbers.some((number) => number > 0) &&
        toggleElement(say("logX", axis), say("logarithmic", label), false, (isOn) => redraw(axis, isOn));
    return element(
        "div",
        { class: "chart-buttons" },
        toggle(
            "x",
            description.xLabel,
            description.curves.flatMap((curve) => (curve.level ? [] : curve.x)),
        ),
        toggle(
            "y",
            description.yLabel,
            description.curves.flatMap((curve) => curve.y),
        ),
        element("button", { type: "button", onclick: resetZoom, title: say("zoomHint") }, say("resetZoom")),
    );
}

/** A chart with its buttons; it is drawn when it first comes into view. */
function chartElement(makeDescription) {
    const box = element("div", { class: "chart-box" });
    const whole = element("div", { class: "chart" }, box);
    const draw = () => {
        const description = { ...makeDescription(), logX: false, logY: false };
        let live = drawChart(box, description);
        const redraw = (axis, isOn) => {
            description[axis === "x" ? "logX" : "logY"] = isOn;
            endChart(live);
            live = drawChart(box, description);
        };
        whole.prepend(chartButtons(description, redraw, () => live.resetZoom()));
    };
    pendingCharts.set(whole, draw);
    viewObserver.observe(whole);
    return whole;
}

function drawPending(whole) {
    const draw = pendingCharts.get(whole);
    viewObserver.unobserve(whole);
    pendingCharts.delete(whole);
    draw?.();
}

const viewObserver = new IntersectionObserver(
    (entries) => {
        entries.filter((entry) => entry.isIntersecting).forEach((entry) => drawPending(entry.target));
    },
    { rootMargin: "400px" },
);

function endChart(live) {
    liveCharts.delete(live);
    live.end();
}

/** Before the page shows something else. */
function endCharts() {
    [...pendingCharts.keys()].forEach((whole) => viewObserver.unobserve(whole));
    pendingCharts.clear();
    [...liveCharts].forEach(endChart);
}

function redrawCharts() {
    liveCharts.forEach((live) => live.redraw());
}

matchMedia("(prefers-color-scheme: dark)").addEventListener("change", redrawCharts);
window.addEventListener("beforeprint", () => {
    document.body.classList.add("printing");
    [...pendingCharts.keys()].forEach(drawPending);
    redrawCharts();
});
window.addEventListener("afterprint", () => {
    document.body.classList.remove("printing");
    redrawCharts();
});
