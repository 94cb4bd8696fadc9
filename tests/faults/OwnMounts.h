#pragma once

#include <functional>
#include <string>

namespace test {

enum class OwnMounts { passed, failed, notPermitted };

/// Runs `body` in a child process whose mounts nobody else sees, and which vanish with it however it ends.
/// `body` gets a directory to mount something on, where databases of tests are made then, and returns false
/// when that is not permitted.
OwnMounts inOwnMounts(const std::function<bool(const std::string& directory)>& body);

} // namespace test
