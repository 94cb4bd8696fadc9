// What the page says, in both languages.

const languages = ["en", "ru"];
const languageNames = ["English", "Русский"];
let language = 0;

const phrases = {
    materials: ["Materials", "Материалы"],
    search: ["Search materials", "Поиск материалов"],
    searchHint: ["Name, formula, CAS, symbol", "Название, формула, CAS, символ"],
    anyState: ["Any state", "Любое состояние"],
    anyProperty: ["Any property", "Любое свойство"],
    stateFilter: ["State", "Состояние"],
    propertyFilter: ["Has property", "Есть свойство"],
    found: ["{0} of {1}", "{0} из {1}"],
    nothingFound: ["Nothing found", "Ничего не найдено"],
    state1: ["solid", "твёрдое тело"],
    state2: ["liquid", "жидкость"],
    state3: ["gas", "газ"],
    stateOther: ["state {0}", "состояние {0}"],
    units: ["Units", "Единицы"],
    asStored: ["as stored", "как в базе"],
    language: ["Language", "Язык"],
    compare: ["Compare", "Сравнить"],
    compareCount: ["Compare ({0})", "Сравнить ({0})"],
    comparison: ["Comparison", "Сравнение"],
    comparisonEmpty: [
        "Nothing is pinned yet. Press “Compare” beside a value of a material.",
        "Пока ничего не выбрано. Нажмите «Сравнить» рядом со свойством материала.",
    ],
    unpin: ["Remove", "Убрать"],
    unpinThis: ["Remove {0}", "Убрать: {0}"],
    clear: ["Remove all", "Убрать все"],
    formula: ["Formula", "Формула"],
    cas: ["CAS number", "Номер CAS"],
    aliases: ["Other names", "Другие названия"],
    composition: ["Composition", "Состав"],
    component: ["Component", "Компонент"],
    fraction: ["Molar fraction", "Молярная доля"],
    mixture: ["Mixture of components that are not given", "Смесь, компоненты не указаны"],
    missing: ["{0} (missing)", "{0} (нет в базе)"],
    substance: ["The substance", "Вещество"],
    change: ["phase change, {0} to {1}", "фазовый переход: {0} → {1}"],
    property: ["Property", "Свойство"],
    symbol: ["Symbol", "Символ"],
    value: ["Value", "Значение"],
    accuracy: ["Accuracy", "Точность"],
    source: ["Source", "Источник"],
    range: ["{0}: {1} to {2}", "{0}: от {1} до {2}"],
    rows: ["{0} rows", "строк: {0}"],
    rowsOne: ["{0} row", "строк: {0}"],
    constants: ["Constants", "Константы"],
    constant: ["constant", "константа"],
    extent: ["Range", "Диапазон"],
    constantsOf: ["Constants: {0}", "Константы: {0}"],
    numbersOf: ["Numbers: {0}", "Числа: {0}"],
    allRows: ["Show all {0} rows", "Показать все строки ({0})"],
    leftOut: [
        "{0} rows are left out of this page to keep it small; “qmdb get” shows them.",
        "Строки ({0}) не включены в эту страницу, чтобы она была небольшой; их покажет «qmdb get».",
    ],
    unreadable: ["This value cannot be read: {0}", "Это значение не читается: {0}"],
    noRows: ["This table has no rows.", "В этой таблице нет строк."],
    nothingKnown: ["No values are given.", "Значений нет."],
    chart: [
        "Chart of {0} over {1}; the numbers stand in the table beside it",
        "График: {0}, аргумент: {1}; числа — в таблице рядом",
    ],
    logX: ["log {0}", "лог. {0}"],
    logarithmic: ["logarithmic axis of {0}", "логарифмическая ось: {0}"],
    resetZoom: ["Whole range", "Весь диапазон"],
    zoomHint: ["Drag to zoom", "Потяните, чтобы увеличить"],
    atPoint: ["Value at a point", "Значение в точке"],
    notNumber: ["“{0}” is not a number", "«{0}» — не число"],
    outside: [
        "Refused: {0} = {1} is outside the range {2} to {3}",
        "Отказано: {0} = {1} вне диапазона от {2} до {3}",
    ],
    notAscending: [
        "Refused: {0} does not rise from row to row",
        "Отказано: {0} не возрастает от строки к строке",
    ],
    empty: ["Refused: the table has no rows", "Отказано: в таблице нет строк"],
    unknownPlace: ["Nothing here is called “{0}”.", "Здесь нет ничего с названием «{0}»."],
    overview: ["{0} materials, {1} values", "Материалов: {0}, значений: {1}"],
    choose: ["Choose a material from the list.", "Выберите материал в списке."],
    keys: [
        "Keys: / to search, ↑ and ↓ in the list, Esc to clear.",
        "Клавиши: / — поиск, ↑ и ↓ — по списку, Esc — очистить.",
    ],
    back: ["All materials", "Все материалы"],
    made: ["Made by qmdb {0}", "Создано программой qmdb {0}"],
    temperature: ["temperature", "температура"],
    pressure: ["pressure", "давление"],
    argument: ["argument", "аргумент"],
    properties: ["Properties", "Свойства"],
    materialsWith: ["Materials with it", "Материалов с ним"],
    material: ["Material", "Материал"],
};

/** A phrase in the page's language; {0} and so on stand for the arguments. */
function say(key, ...values) {
    return phrases[key][language].replace(/\{(\d)\}/g, (whole, index) => values[index]);
}

/** A text of the database: one, or a pair for the two languages. */
function textIn(text, of = language) {
    return Array.isArray(text) ? text[of] : text;
}

function countOfRows(count) {
    return say(count === 1 ? "rowsOne" : "rows", count);
}
