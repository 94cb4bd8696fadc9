#include "check/check.h"

#include "check/listing.h"
#include "check/parallel.h"
#include "check/rules.h"

#include <algorithm>

namespace tool::check {

namespace {

void checkData(Context& context, const SubstanceTree& substance)
{
    checkData(context, substance.self);
    for (const auto* entities : { &substance.phases, &substance.changes }) {
        for (const Entity& entity : *entities) {
            checkData(context, entity);
        }
    }
}

} // namespace

std::size_t checkDatabase(
    const std::string& directory, Findings& findings, const std::function<void(std::size_t)>& step)
{
    Context context { directory, findings };
    const Tree tree = readTree(context);
    checkReferences(context, tree);
    checkTexts(context, tree);
    checkAnnotations(context, tree);
    const std::size_t count = tree.substances.size();
    doInThreads(
        context, count, [&](Context& own, std::size_t i) { checkData(own, tree.substances[i]); },
        [&] { step(count); });
    return context.files;
}

bool holdsDatabase(const std::string& directory)
{
    Findings ignored;
    Context context { directory, ignored };
    const Listing root = list(context, "");
    return !root.isOpen || !root.filesWith(format::descriptionExtension).empty()
        || std::ranges::any_of(root.files, isStringTable)
        || std::ranges::any_of(root.directories, [&](const std::string& name) {
               return !list(context, name).filesWith(format::substanceExtension).empty();
           });
}

} // namespace tool::check
