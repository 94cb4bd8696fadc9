#pragma once

#include <clocale>
#include <stdexcept>
#include <string>

namespace test {

/// Sets the process's locale for the life of the object.
class ScopedLocale {
public:
    /// True when the machine, or the build, has the locale.
    static bool exists(const char* name)
    {
        const std::string before = std::setlocale(LC_ALL, nullptr);
        const bool isThere = std::setlocale(LC_ALL, name) != nullptr;
        std::setlocale(LC_ALL, before.c_str());
        return isThere;
    }

    explicit ScopedLocale(const char* name)
        : before(std::setlocale(LC_ALL, nullptr))
    {
        if (!std::setlocale(LC_ALL, name)) {
            throw std::runtime_error(std::string("no locale ") + name);
        }
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, before.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    std::string before;
};

} // namespace test
