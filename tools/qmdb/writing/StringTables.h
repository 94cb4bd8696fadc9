#pragma once

#include "check/tree.h"
#include "writing/Changes.h"
#include "writing/DescriptorText.h"
#include "writing/language.h"

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tool::writing {

/// The texts of both string tables, and which string IDs are in use.
class StringTables {
public:
    StringTables(std::string root, const check::Tree& tree);

    std::optional<std::string> text(Language language, std::string_view id) const;
    void set(Language language, const std::string& id, std::string_view text);

    /// How many texts of descriptors refer to an ID.
    int uses(std::string_view id) const;
    /// Above all that are in use.
    std::string newId();
    /// The ID of a text in both languages: one of those given out here, or a new one.
    std::string idOf(std::string_view text, std::string_view russianText);

    /// Lets both tables be there, even with nothing in them.
    void require() noexcept { required_ = true; }

    /// Drops the texts that only this descriptor, which goes, refers to.
    void release(const check::Descriptor& descriptor);

    /// The tables with new texts, to be written before the descriptors that refer to them.
    void addNewTexts(Changes& changes) const;
    /// The tables without dropped texts, to be written when nothing refers to these any more.
    void addDroppedTexts(Changes& changes) const;

private:
    struct Table {
        bool exists = false;
        std::map<std::string, std::string, std::less<>> texts;
        std::map<std::string, std::string, std::less<>> newTexts;
        std::set<std::string> dropped;
    };

    DescriptorText changedTable(Language language) const;
    void countUses(const check::Descriptor& descriptor);
    void noteId(const std::string& id);
    static std::string_view nameOf(Language language) noexcept;
    Table& table(Language language) { return tables_[static_cast<std::size_t>(language)]; }
    const Table& table(Language language) const { return tables_[static_cast<std::size_t>(language)]; }

    std::string root_;
    std::array<Table, 2> tables_;
    std::map<std::string, int, std::less<>> uses_;
    long highestId_ = 0;
    bool required_ = false;
    std::map<std::pair<std::string, std::string>, std::string> newPairs_;
};

/// The text that a descriptor shows in a language.
std::string displayText(
    const StringTables& tables, const check::Descriptor& descriptor, TextKey key, Language language);

/// Lets a descriptor show another text in one language; in the other language it keeps its own. A text that
/// others share stays theirs.
void setDisplayText(
    StringTables& tables, DescriptorText& descriptor, TextKey key, Language language, std::string_view text);

/// The texts of a new descriptor: the Russian one may be missing.
void setNewTexts(StringTables& tables, DescriptorText& descriptor, TextKey key, std::string_view text,
    std::string_view russianText);

} // namespace tool::writing
