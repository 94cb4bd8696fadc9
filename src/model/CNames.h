#pragma once

#include "model/CIdMap.h"

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

/// The display names of the entities of one map. They are collected when they are asked for, which only an
/// addition does.
class CNames {
public:
    template <class Entity>
    bool contains(const CIdMap<Entity>& entities, std::string_view name)
    {
        if (!names_) {
            auto names = std::make_unique<Names>();
            entities.forEach([&](long, const Entity& entity) { names->emplace(entity.getName()); });
            names_ = std::move(names);
        }
        return names_->contains(std::string(name));
    }

    /// Adds a name once `save` has saved its owner with code 0. After any failure the names are collected
    /// anew, so that a name stands here if and only if its owner stands in the map.
    template <class Save>
    int addWith(std::string_view name, Save&& save)
    {
        std::unique_ptr<Names> names = std::exchange(names_, nullptr);
        if (names) {
            names->emplace(name);
        }
        const int code = std::forward<Save>(save)();
        if (code == 0) {
            names_ = std::move(names);
        }
        return code;
    }

private:
    using Names = std::unordered_set<std::string>;

    std::unique_ptr<Names> names_;
};
