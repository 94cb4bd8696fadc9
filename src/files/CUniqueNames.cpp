#include "files/CUniqueNames.h"

#include "format/innerText.h"
#include "qm/CQMDirectoryScanner.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t mostPlaces = 8;

/// For a directory that cannot be listed.
std::string probe(const CDirectory& directory, format::Series series)
{
    for (std::size_t number = 1;; ++number) {
        std::string name = format::numberedName(series, number);
        if (qm::CQMFileSystem::IsFree(directory.pathOf(name))) {
            return name;
        }
    }
}

/// Calls `use` with the series of a name and its number in it, when it has one.
template <class Use>
void forSeriesOf(std::string_view name, Use&& use)
{
    for (std::size_t i = 0; i < format::seriesCount; ++i) {
        if (const auto number = format::numberOf(name, static_cast<format::Series>(i))) {
            use(i, *number);
        }
    }
}

} // namespace

std::string CUniqueNames::next(const CDirectory& directory, format::Series series)
{
    leaveToParentProcess();
    struct stat status { };
    if (directory.descriptor() < 0 || ::fstat(directory.descriptor(), &status) != 0) {
        return probe(directory, series);
    }
    Place onlyListed { status.st_dev, status.st_ino };
    Place* place = findPlace(status.st_dev, status.st_ino);
    if (!place) {
        remember(status.st_dev, status.st_ino);
    }
    if (!place || !isWatched(*place, directory)) {
        place = &onlyListed;
    } else {
        readChanges();
        if (hasUncheckedLink(*place, directory)) {
            place->isListed = false;
        }
    }
    if (!place->isListed && !list(*place, directory)) {
        return probe(directory, series);
    }
    return format::numberedName(series, place->numbers[static_cast<std::size_t>(series)].first());
}

CUniqueNames::Place* CUniqueNames::findPlace(dev_t device, ino_t inode)
{
    const auto found = std::ranges::find_if(
        places_, [&](const Place& place) { return place.inode == inode && place.device == device; });
    if (found == places_.end()) {
        return nullptr;
    }
    places_.splice(places_.begin(), places_, found);
    return &places_.front();
}

void CUniqueNames::remember(dev_t device, ino_t inode)
{
    if (places_.size() == mostPlaces) {
        stopWatching(places_.back());
        places_.pop_back();
    }
    places_.push_front({ device, inode });
}

/// Starts to watch a directory unless it is watched; false when that cannot be done.
bool CUniqueNames::isWatched(Place& place, const CDirectory& directory)
{
    if (place.watch >= 0 || !place.isWatchable) {
        return place.watch >= 0;
    }
    if (!watch_) {
        watch_.emplace();
    }
    place.watch = watch_->add(directory.descriptor());
    place.isWatchable = place.watch >= 0;
    place.isListed = false;
    return place.isWatchable;
}

void CUniqueNames::stopWatching(Place& place) noexcept
{
    if (place.watch >= 0) {
        watch_->remove(place.watch);
        place.watch = -1;
    }
}

void CUniqueNames::readChanges()
{
    if (!watch_->read([this](const qm::CQMDirectoryWatch::Change& change) { apply(change); })) {
        forgetListings();
    }
}

/// For when changes may have been missed.
void CUniqueNames::forgetListings() noexcept
{
    for (Place& place : places_) {
        place.isListed = false;
    }
}

void CUniqueNames::apply(const qm::CQMDirectoryWatch::Change& change)
{
    using Kind = qm::CQMDirectoryWatch::Kind;
    if (change.kind == Kind::Overflow) {
        forgetListings();
        return;
    }
    const auto place = std::ranges::find(places_, change.watch, &Place::watch);
    if (place == places_.end()) {
        return; // it is not watched any more
    }
    if (change.kind == Kind::Lost) {
        place->watch = -1;
        place->isListed = false;
        return;
    }
    const std::string name = format::text::fromLocale(change.name);
    forSeriesOf(name, [&](std::size_t series, std::size_t number) {
        if (change.kind == Kind::Gone) {
            place->numbers[series].release(number);
            place->unchecked.erase(name);
            return;
        }
        place->numbers[series].reserve(number);
        if (!change.isDirectory) {
            place->unchecked.insert(name);
        }
    });
}

/// Reads all numbers of a directory; false when it cannot be listed. One that holds a link with a number is
/// not watched: whether it blocks the number depends on what it leads to, of which nothing is reported.
bool CUniqueNames::list(Place& place, const CDirectory& directory)
{
    place.numbers = {};
    qm::CQMDirectoryScanner scanner(directory.descriptor());
    bool hasLink = false;
    while (scanner.GetNext()) {
        forSeriesOf(format::text::fromLocale(scanner.name()), [&](std::size_t series, std::size_t number) {
            hasLink = hasLink || scanner.mayBeLink();
            if (!scanner.isMissing()) {
                place.numbers[series].reserve(number);
            }
        });
    }
    place.isListed = scanner.error() == 0 && !hasLink;
    if (!place.isListed) {
        stopWatching(place);
        place.isWatchable = false;
    }
    return scanner.error() == 0;
}

bool CUniqueNames::hasUncheckedLink(Place& place, const CDirectory& directory)
{
    const bool hasLink = std::ranges::any_of(place.unchecked,
        [&](const std::string& name) { return qm::CQMFileSystem::IsLink(directory.pathOf(name)); });
    place.unchecked.clear();
    return hasLink;
}

/// After a fork the changes that one process reads are missing in the other: the new one begins anew.
void CUniqueNames::leaveToParentProcess()
{
    const pid_t self = ::getpid();
    if (process_ != self) {
        places_.clear();
        watch_.reset();
        process_ = self;
    }
}
