#include "treeGenerator.h"

#include <array>
#include <fstream>
#include <span>
#include <stdexcept>

namespace bench {

namespace {

using std::to_string;
namespace fs = std::filesystem;

constexpr const char* utf8Mark = "\xEF\xBB\xBF";

constexpr std::array asciiNames
    = { "Water", "Methane", "Ethanol", "Carbon dioxide", "Ammonia", "Benzene", "Sodium chloride",
          "Propylene glycol", "Aluminium oxide", "n-Heptane", "Nitrogen", "Helium", "Stainless steel" };
constexpr std::array wideNames = { "Вода", "Метан", "Этиловый спирт", "Äthylenglykol", "Öl für Getriebe",
    "Kohlenstoff (β-Graphit)", "Acier façonné à froid", "Натрий хлористый", "水", "二氧化碳", "Ελαιόλαδο" };
constexpr std::array phaseNames = { "Solid", "Liquid", "Vapour" };
constexpr std::array widePhaseNames = { "Твёрдая", "Жидкость", "Газ" };
constexpr std::array units
    = { "K", "Pa", "J/(kg·K)", "W/(m·K)", "kg/m³", "m²/s", "Pa·s", "°C", "m/s", "1/K" };

/// A descriptor as this library (mark, LF) or a person's editor (no mark, CR LF) leaves it.
class Descriptor {
public:
    explicit Descriptor(bool marked)
        : lineEnd_(marked ? "\n" : "\r\n")
        , text_(marked ? utf8Mark : "")
    {
    }
    Descriptor& add(const std::string& key, const std::string& value)
    {
        text_ += key + "=" + value + lineEnd_;
        return *this;
    }
    Descriptor& add(const std::string& key, long value) { return add(key, to_string(value)); }
    const std::string& text() const { return text_; }

private:
    const char* lineEnd_;
    std::string text_;
};

class Generator {
public:
    Generator(fs::path root, const TreeShape& shape)
        : root_(std::move(root))
        , shape_(shape)
        , random_(shape.seed)
    {
    }

    void run();
    fs::path run(const ValueShape& value);

private:
    fs::path makeDirectory(const fs::path& path);
    void writeFile(const fs::path& path, const std::string& text);
    bool oneIn(unsigned n) { return random_() % n == 0; }
    std::string pick(std::span<const char* const> texts) { return texts[random_() % texts.size()]; }
    long localise(const std::string& text);

    void addDescription(long id);
    void addSubstance(long id);
    void addPhase(const fs::path& substance, long id);
    void addPhaseChange(const fs::path& substance, long id);
    void addHeads(const fs::path& directory, long count);
    fs::path addHead(const fs::path& directory, long number, long id, const ValueShape& value);
    ValueShape nextValue();
    std::string composition(long id);

    fs::path root_;
    TreeShape shape_;
    Random random_;
    std::string stringTable_ = utf8Mark;
    long lastStringId_ = 0;
    int headsMade_ = 0;
};

void Generator::run()
{
    for (long id = 1; id <= shape_.descriptions; ++id) {
        addDescription(id);
    }
    for (long id = 0; id < shape_.substances; ++id) {
        addSubstance(id);
    }
    writeFile(root_ / "default.lst", stringTable_);
}

fs::path Generator::run(const ValueShape& value)
{
    run();
    return addHead(root_ / "Substance1" / "Phase1", 1, 1, value);
}

fs::path Generator::makeDirectory(const fs::path& path)
{
    fs::create_directory(path);
    return path;
}

void Generator::writeFile(const fs::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

/// Puts a text into the string table; returns its ID.
long Generator::localise(const std::string& text)
{
    stringTable_ += to_string(++lastStringId_) + "=" + text + "\n";
    return lastStringId_;
}

void Generator::addDescription(long id)
{
    const bool wide = id % 4 == 0;
    Descriptor descriptor(wide || id % 10 != 0);
    const std::string unit = wide ? pick(units) : "K";
    descriptor.add("AvForPhases", "SLV").add("Binary", 0).add("DataTypes", "CtpTX").add("ID", id);
    descriptor.add("Name", (wide ? "Свойство №" : "Property ") + to_string(id));
    descriptor.add("NameID", localise("Localised property " + to_string(id))).add("Scalar", 1);
    descriptor.add("Units", unit).add("UnitsID", localise(unit)).add("Vector", 1);
    writeFile(root_ / ("param" + to_string(id) + ".prd"), descriptor.text());
}

void Generator::addSubstance(long id)
{
    const std::string directoryName = "Substance" + to_string(id + 1);
    const fs::path directory = makeDirectory(root_ / directoryName);
    const bool wide = oneIn(4);
    const std::string name = (wide ? pick(wideNames) : pick(asciiNames)) + " " + to_string(id + 1);
    const std::string mixed = composition(id);
    Descriptor descriptor(wide || !oneIn(10));
    descriptor.add("Comment", (wide ? "Данные справочника, " : "Reference data, set ") + to_string(id));
    descriptor.add("CommentID", ++lastStringId_).add("Composition", mixed).add("ID", id);
    descriptor.add("Mixture", mixed.empty() ? 0 : 1).add("Name", name);
    descriptor.add("NameID", id % 2 == 0 ? localise(name) : ++lastStringId_);
    writeFile(directory / (directoryName + ".mtd"), descriptor.text());
    for (long phase = 0; phase < shape_.phases; ++phase) {
        addPhase(directory, phase);
    }
    for (long change = 0; change < shape_.phaseChanges; ++change) {
        addPhaseChange(directory, change);
    }
    addHeads(directory, shape_.otherHeads);
}

/// One substance in ten is a mixture of two that stand before it.
std::string Generator::composition(long id)
{
    if (id < 3 || !oneIn(10)) {
        return {};
    }
    const auto before = static_cast<std::uint64_t>(id);
    const std::string first = to_string(random_() % before); // one at a time: operands have no order
    return first + ":0.25;" + to_string(random_() % before) + ":0.75";
}

void Generator::addPhase(const fs::path& substance, long id)
{
    const std::string directoryName = "Phase" + to_string(id + 1);
    const fs::path directory = makeDirectory(substance / directoryName);
    const auto state = static_cast<std::size_t>(id) % phaseNames.size();
    const bool wide = oneIn(4);
    Descriptor descriptor(wide || !oneIn(10));
    descriptor.add("Aggreg", static_cast<long>(state) + 1).add("ID", id);
    descriptor.add("Name", wide ? widePhaseNames[state] : phaseNames[state]);
    descriptor.add(
        "NameID", oneIn(4) ? localise(std::string(phaseNames[state]) + " phase") : ++lastStringId_);
    writeFile(directory / (directoryName + ".phd"), descriptor.text());
    addHeads(directory, shape_.phaseHeads);
}

void Generator::addPhaseChange(const fs::path& substance, long id)
{
    const std::string directoryName = "PC" + to_string(id + 1);
    const fs::path directory = makeDirectory(substance / directoryName);
    Descriptor descriptor(!oneIn(10));
    descriptor.add("ID", id).add("Name", id == 0 ? "Melting" : "Boiling").add("NameID", ++lastStringId_);
    descriptor.add("Phase1", id).add("Phase2", id + 1);
    writeFile(directory / (directoryName + ".pcd"), descriptor.text());
    addHeads(directory, shape_.otherHeads - 1);
}

/// Different parameters for one owner, each kind of value in turn.
void Generator::addHeads(const fs::path& directory, long count)
{
    const auto first = static_cast<long>(random_() % static_cast<std::uint64_t>(shape_.descriptions));
    for (long i = 0; i < count; ++i) {
        addHead(directory, i + 1, 1 + (first + i) % shape_.descriptions, nextValue());
    }
}

ValueShape Generator::nextValue()
{
    const auto kind = static_cast<ValueKind>(headsMade_++ % 6);
    return isTwoDimensional(kind)
        ? ValueShape { kind, 2 + static_cast<long>(random_() % 5), 4 + static_cast<long>(random_() % 10) }
        : ValueShape { kind, 1, 5 + static_cast<long>(random_() % 36) };
}

fs::path Generator::addHead(const fs::path& directory, long number, long id, const ValueShape& value)
{
    constexpr std::array<long, 6> types = { 1, 1, 2, 3, 4, 5 };
    const std::string stem = "Property" + to_string(number);
    Descriptor descriptor(!oneIn(10));
    descriptor.add("Data", stem + ".dat").add("ID", id);
    descriptor.add("Type", types[static_cast<std::size_t>(value.kind)])
        .add("Vector", isVector(value.kind) ? 1 : 0);
    writeFile(directory / (stem + ".prh"), descriptor.text());
    const fs::path data = directory / (stem + ".dat");
    writeFile(data, valueText(value, random_));
    return data;
}

} // namespace

void generateTree(const fs::path& root, const TreeShape& shape)
{
    Generator(root, shape).run();
}

fs::path generateValueTree(const fs::path& root, const ValueShape& shape)
{
    constexpr TreeShape tree {
        .substances = 1, .phases = 1, .phaseChanges = 0, .phaseHeads = 0, .otherHeads = 0, .descriptions = 1
    };
    return Generator(root, tree).run(shape);
}

} // namespace bench
