#include "faults/OwnMounts.h"

#include "support/TempDatabase.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

namespace {

OwnMounts run(const std::string& directory, const std::function<bool(const std::string&)>& body)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return OwnMounts::notPermitted;
    }
    ::setenv("TMPDIR", directory.c_str(), 1);
    if (!body(directory)) {
        return OwnMounts::notPermitted;
    }
    return testing::Test::HasFailure() ? OwnMounts::failed : OwnMounts::passed;
}

} // namespace

OwnMounts inOwnMounts(const std::function<bool(const std::string& directory)>& body)
{
    std::fflush(stdout);
    const TempDatabase place({});
    const pid_t child = ::fork();
    if (child == 0) {
        const OwnMounts outcome = run(place.root(), body);
        std::fflush(stdout);
        ::_exit(static_cast<int>(outcome));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? static_cast<OwnMounts>(WEXITSTATUS(status)) : OwnMounts::failed;
}

} // namespace test
