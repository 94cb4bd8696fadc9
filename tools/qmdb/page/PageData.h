#pragma once

#include "annotations/Annotations.h"
#include "output/json.h"

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tool {

/// A text as the two openings of a database give it: English, Russian.
using Texts = std::array<std::string, 2>;

/// Something of a database with its texts.
template <class Thing>
struct Translated {
    Thing thing;
    Texts name;
    Texts more {}; ///< the comment of a substance, the units of a parameter
};

/// What a page leaves out because it has more rows than are wanted.
struct LeftOut {
    std::size_t limit = 0; ///< tables with more rows than that
    std::size_t tables = 0;
    std::size_t rows = 0;
};

/// The data of a page, collected substance by substance in the order in which they are shown.
class PageData {
public:
    void beginSubstance(const Translated<Substance>& substance, const SubstanceNotes& notes);
    void beginOwner(const Translated<Owner>& owner);
    void addValue(const Translated<Parameter>& parameter, const ParameterNotes& notes, const Table& table);
    void addUnreadable(
        const Translated<Parameter>& parameter, const std::string& symbol, std::string_view reason);

    /// Leaves out all tables with more rows.
    LeftOut limitRows(std::size_t limit);
    /// Leaves out the longest tables, as few as take that many bytes.
    LeftOut freeSize(std::size_t bytes);

    /// One JSON object, without any "<", which might end the script that holds it.
    std::string text(const std::string& name, const std::string& language) const;

private:
    /// Objects that are written once, and referred to by their place.
    class Pool {
    public:
        std::size_t add(const Json& json);
        const Json& all() const noexcept { return all_; }

    private:
        Json all_ = Json::array();
        std::map<std::string, std::size_t> places_;
    };

    struct Value {
        Json notes;
        std::size_t rows = 0;
        std::string numbers;
        bool leftOut = false;
    };
    struct Owned {
        Json owner;
        std::vector<Value> values;
    };
    struct Material {
        Json substance;
        std::vector<Owned> owners;
    };

    std::size_t unitsPlace(const Texts& units);
    std::size_t parameterPlace(const Translated<Parameter>& parameter, const std::string& symbol);
    Json argumentPlaces(const std::vector<ArgumentNotes>& arguments);
    static Json valueJson(const Value& value);
    static std::string materialText(const Material& material);
    template <class Visit>
    void forEachValue(Visit visit);

    std::vector<Material> materials_;
    Pool units_, parameters_, arguments_, texts_;
    std::map<Texts, std::size_t> unitsPlaces_;
    std::set<std::size_t> usedQuantities_;
};

} // namespace tool
