#include "output/listJson.h"

#include "output/json.h"

namespace tool {

namespace {

Json toJson(const ListedParameter& listed)
{
    Json json = parameterJson(listed.parameter, listed.notes);
    if (listed.comments) {
        json["comments"] = *listed.comments;
    }
    if (!listed.error.empty()) {
        json["error"] = listed.error;
        return json;
    }
    if (!listed.isRead) {
        return json;
    }
    json["points"] = listed.points;
    json["ranges"] = Json::object();
    const auto names = argumentNames(listed.parameter.type);
    for (std::size_t i = 0; i < listed.ranges.size(); ++i) {
        json["ranges"][std::string(names[i])] = { listed.ranges[i].least, listed.ranges[i].most };
    }
    return json;
}

Json parametersJson(const ListedOwner& listed)
{
    Json json = Json::array();
    for (const ListedParameter& parameter : listed.parameters) {
        json.push_back(toJson(parameter));
    }
    return json;
}

Json toJson(const ListedOwner& listed)
{
    const Owner& owner = listed.owner;
    Json json { { "id", owner.id }, { "name", owner.name } };
    if (owner.kind == Owner::Kind::Phase) {
        json["state"] = stateText(owner.state);
    } else {
        json["from"] = owner.phase1;
        json["to"] = owner.phase2;
    }
    json["parameters"] = parametersJson(listed);
    return json;
}

Json toJson(const ListedSubstance& listed)
{
    const Substance& substance = listed.substance;
    const SubstanceNotes& notes = listed.notes;
    Json json { { "id", substance.id }, { "name", substance.name }, { "formula", textJson(notes.formula) },
        { "aliases", notes.aliases }, { "cas", textJson(notes.cas) }, { "comment", substance.comment },
        { "mixture", substance.mixture }, { "composition", Json::array() }, { "parameters", Json::array() },
        { "phases", Json::array() }, { "changes", Json::array() } };
    for (const COMPONENT& component : substance.composition) {
        json["composition"].push_back(
            { { "substance", component.matterId }, { "fraction", component.molarFraction } });
    }
    for (const ListedOwner& owner : listed.owners) {
        switch (owner.owner.kind) {
        case Owner::Kind::Substance:
            json["parameters"] = parametersJson(owner);
            break;
        case Owner::Kind::Phase:
            json["phases"].push_back(toJson(owner));
            break;
        case Owner::Kind::Change:
            json["changes"].push_back(toJson(owner));
            break;
        }
    }
    return json;
}

} // namespace

std::string listJson(const std::vector<ListedSubstance>& listed)
{
    Json json = Json::array();
    for (const ListedSubstance& substance : listed) {
        json.push_back(toJson(substance));
    }
    return dump(json, 2);
}

} // namespace tool
