#include "check/Findings.h"

#include "format/paths.h"
#include "format/vocabulary.h"

#include <algorithm>

namespace tool::check {

namespace {

// What begins the parts of a key, in this order.
constexpr char descriptorSign = '1';
constexpr char otherSign = '2';
constexpr char dataSign = '3';
constexpr char directorySign = '4';
constexpr char behindSign = '5';

char signOf(std::string_view name)
{
    const std::string_view extension = format::splitPath(name).ext;
    if (extension == format::dataExtension) {
        return dataSign;
    }
    const bool descriptor = extension == format::substanceExtension || extension == format::phaseExtension
        || extension == format::phaseChangeExtension;
    return descriptor ? descriptorSign : otherSign;
}

void appendDirectory(std::string& key, std::string_view name)
{
    if (!name.empty()) {
        key.append(1, directorySign).append(name).append(1, '\0');
    }
}

/// A text that sorts as the place does.
std::string keyOf(const Place& place)
{
    std::string key;
    const auto appendDirectories = [&key](std::string_view path) {
        for (std::size_t end = path.find('/'); end != path.npos; end = path.find('/')) {
            appendDirectory(key, path.substr(0, end));
            path.remove_prefix(end + 1);
        }
        return path;
    };
    if (place.after) {
        appendDirectory(key, appendDirectories(*place.after));
        key += behindSign;
    }
    const std::string_view name = appendDirectories(place.file);
    return key.append(1, signOf(name)).append(name);
}

} // namespace

void Findings::add(Severity severity, std::string_view kind, const Place& place, std::string_view what,
    std::string_view advice)
{
    add({ place, severity, std::string(kind), std::string(what), std::string(advice) });
}

void Findings::add(Finding finding)
{
    const auto [known, isNew] = known_.insert(std::move(finding));
    if (isNew) {
        found_.push_back(*known);
    }
}

void Findings::add(const Findings& others)
{
    for (const Finding& finding : others.found_) {
        add(finding);
    }
}

std::vector<std::reference_wrapper<const Finding>> Findings::all() const
{
    std::vector<std::pair<std::pair<std::string, std::size_t>, std::size_t>> order;
    for (const Finding& finding : found_) {
        order.emplace_back(std::pair(keyOf(finding.place), finding.place.line), order.size());
    }
    std::ranges::sort(order);
    std::vector<std::reference_wrapper<const Finding>> sorted;
    for (const auto& [key, index] : order) {
        sorted.push_back(found_[index]);
    }
    return sorted;
}

std::size_t Findings::count(Severity severity) const
{
    return static_cast<std::size_t>(std::ranges::count(known_, severity, &Finding::severity));
}

bool Findings::hasAny(std::initializer_list<std::string_view> kinds) const
{
    return std::ranges::any_of(known_,
        [kinds](const Finding& finding) { return std::ranges::find(kinds, finding.kind) != kinds.end(); });
}

} // namespace tool::check
