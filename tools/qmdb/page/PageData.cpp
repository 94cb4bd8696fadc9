#include "page/PageData.h"

#include "page/numbers.h"
#include "page/unitChoices.h"

#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <string>

namespace tool {

namespace {

/// One text, or a pair when the languages differ.
Json textsJson(const Texts& texts)
{
    return texts[0] == texts[1] ? Json(texts[0]) : Json(texts);
}

void putUnlessEmpty(Json& json, const char* key, const std::string& text)
{
    if (!text.empty()) {
        json[key] = text;
    }
}

/// Factors and offsets: from the database's units to each choice, and back.
Json conversionsJson(const ChosenUnits& chosen)
{
    Json all = Json::array();
    for (const Conversion& conversion : chosen.conversions) {
        const Conversion back = conversion.inverse();
        all.push_back({ conversion.factor, conversion.offset, back.factor, back.offset });
    }
    return all;
}

Json componentsJson(const std::vector<COMPONENT>& composition)
{
    Json components = Json::array();
    for (const COMPONENT& component : composition) {
        components.push_back({ component.matterId, component.molarFraction });
    }
    return components;
}

/// By their places, those that are wanted.
Json quantitiesJson(const std::set<std::size_t>& places)
{
    Json all = Json::object();
    for (const std::size_t place : places) {
        const Quantity& quantity = quantities()[place];
        Json choices = Json::array();
        for (const OfferedUnit& choice : quantity.choices) {
            choices.push_back(choice.label);
        }
        all[std::to_string(place)] = { { "name", quantity.name }, { "choices", choices } };
    }
    return all;
}

void append(std::string& text, std::string_view key, const Json& json)
{
    text += fmt::format(",\"{}\":{}", key, dump(json));
}

std::string withoutTags(const std::string& json)
{
    std::string safe;
    safe.reserve(json.size());
    for (const char character : json) {
        character == '<' ? safe += "\\u003c" : safe += character;
    }
    return safe;
}

} // namespace

std::size_t PageData::Pool::add(const Json& json)
{
    const auto [place, isNew] = places_.try_emplace(dump(json), all_.size());
    if (isNew) {
        all_.push_back(json);
    }
    return place->second;
}

std::size_t PageData::unitsPlace(const Texts& units)
{
    const auto [place, isNew] = unitsPlaces_.try_emplace(units);
    if (isNew) {
        Json json { { "text", textsJson(units) } };
        if (const auto chosen = chosenUnits(units[0])) {
            json["quantity"] = chosen->quantity;
            usedQuantities_.insert(chosen->quantity);
            json["to"] = conversionsJson(*chosen);
        }
        place->second = units_.add(json);
    }
    return place->second;
}

std::size_t PageData::parameterPlace(const Translated<Parameter>& parameter, const std::string& symbol)
{
    Json json { { "id", parameter.thing.id }, { "name", textsJson(parameter.name) } };
    putUnlessEmpty(json, "symbol", symbol);
    json["units"] = unitsPlace(parameter.more);
    return parameters_.add(json);
}

Json PageData::argumentPlaces(const std::vector<ArgumentNotes>& arguments)
{
    Json places = Json::array();
    for (const ArgumentNotes& argument : arguments) {
        places.push_back(arguments_.add({ { "name", argument.name }, { "symbol", argument.symbol },
            { "units", unitsPlace({ argument.units, argument.units }) } }));
    }
    return places;
}

void PageData::beginSubstance(const Translated<Substance>& substance, const SubstanceNotes& notes)
{
    Json json { { "id", substance.thing.id }, { "name", textsJson(substance.name) } };
    if (substance.more != Texts()) {
        json["comment"] = textsJson(substance.more);
    }
    putUnlessEmpty(json, "formula", notes.formula);
    putUnlessEmpty(json, "cas", notes.cas);
    if (!notes.aliases.empty()) {
        json["aliases"] = notes.aliases;
    }
    if (substance.thing.mixture > 0) {
        json["components"] = componentsJson(substance.thing.composition);
    }
    materials_.push_back({ std::move(json), {} });
}

void PageData::beginOwner(const Translated<Owner>& owner)
{
    Json json { { "kind", static_cast<int>(owner.thing.kind) } };
    if (owner.thing.kind != Owner::Kind::Substance) {
        json["id"] = owner.thing.id;
        json["name"] = textsJson(owner.name);
    }
    if (owner.thing.kind == Owner::Kind::Phase) {
        json["state"] = static_cast<int>(owner.thing.state);
    }
    if (owner.thing.kind == Owner::Kind::Change) {
        json["between"] = { owner.thing.phase1, owner.thing.phase2 };
    }
    materials_.back().owners.push_back({ std::move(json), {} });
}

void PageData::addValue(
    const Translated<Parameter>& parameter, const ParameterNotes& notes, const Table& table)
{
    Json json { { "parameter", parameterPlace(parameter, notes.symbol) } };
    if (table.arguments > 0) {
        json["arguments"] = argumentPlaces(notes.arguments);
    }
    if (table.components > 1) {
        json["vector"] = 1;
    }
    if (!notes.source.empty()) {
        json["source"] = texts_.add(notes.source);
    }
    if (!notes.accuracy.empty()) {
        json["accuracy"] = texts_.add(notes.accuracy);
    }
    json["type"] = typeLetter(parameter.thing.type);
    const std::size_t rows = table.arguments == 0 ? 0 : table.points.size();
    materials_.back().owners.back().values.push_back({ std::move(json), rows, encodedNumbers(table) });
}

void PageData::addUnreadable(
    const Translated<Parameter>& parameter, const std::string& symbol, std::string_view reason)
{
    Json json { { "parameter", parameterPlace(parameter, symbol) }, { "unreadable", reason } };
    materials_.back().owners.back().values.push_back({ std::move(json), 0, {} });
}

template <class Visit>
void PageData::forEachValue(Visit visit)
{
    for (Material& material : materials_) {
        for (Owned& owned : material.owners) {
            std::ranges::for_each(owned.values, visit);
        }
    }
}

LeftOut PageData::limitRows(std::size_t limit)
{
    LeftOut leftOut { limit };
    forEachValue([&](Value& value) {
        if (value.rows > limit) {
            value.leftOut = true;
            ++leftOut.tables;
            leftOut.rows += value.rows;
        }
    });
    return leftOut;
}

LeftOut PageData::freeSize(std::size_t bytes)
{
    std::map<std::size_t, std::size_t, std::greater<>> lengths; // of all values with a number of rows
    forEachValue([&](const Value& value) { lengths[value.rows] += value.numbers.size(); });
    std::size_t freed = 0;
    for (const auto& [rows, length] : lengths) {
        freed += length;
        if (freed >= bytes && rows > 0) {
            return limitRows(rows - 1);
        }
    }
    return limitRows(0);
}

Json PageData::valueJson(const Value& value)
{
    Json json = value.notes;
    if (value.leftOut) {
        json["leftOut"] = value.rows;
    } else if (!value.numbers.empty()) {
        json["numbers"] = value.numbers;
    }
    return json;
}

std::string PageData::materialText(const Material& material)
{
    Json json = material.substance;
    json["owners"] = Json::array();
    for (const Owned& owned : material.owners) {
        Json& owner = json["owners"].emplace_back(owned.owner);
        owner["values"] = Json::array();
        std::ranges::transform(owned.values, std::back_inserter(owner["values"]), valueJson);
    }
    return dump(json);
}

std::string PageData::text(const std::string& name, const std::string& language) const
{
    std::string text = fmt::format(
        "{{\"name\":{},\"language\":\"{}\",\"version\":\"{}\"", dump(name), language, QMDB_VERSION);
    append(text, "quantities", quantitiesJson(usedQuantities_));
    append(text, "units", units_.all());
    append(text, "parameters", parameters_.all());
    append(text, "arguments", arguments_.all());
    append(text, "texts", texts_.all());
    text += ",\"substances\":[";
    for (const Material& material : materials_) {
        text += (&material == &materials_.front() ? "\n" : ",\n") + materialText(material);
    }
    return withoutTags(text + "]}");
}

} // namespace tool
