#include "qm/CQMCriticalSection.h"

#include "qm/EQMException.h"

#include <cerrno>

namespace qm {

namespace {

[[noreturn]] void throwFor(int number)
{
    if (number == ENOSYS) {
        throw EQMException(ErrorCode::NotSupported);
    }
    throw EQMException(ErrorCode::LockFailed, number);
}

} // namespace

CQMCriticalSection::CQMCriticalSection()
    : semaphore_(std::make_unique<sem_t>())
{
    if (::sem_init(semaphore_.get(), 0, 1) == 0) {
        return;
    }
    if (errno == EPERM) {
        throw EQMException(ErrorCode::AccessDenied);
    }
    throwFor(errno);
}

CQMCriticalSection::~CQMCriticalSection()
{
    ::sem_destroy(semaphore_.get());
}

void CQMCriticalSection::Enter()
{
    int result = 0;
    do {
        result = ::sem_wait(semaphore_.get());
    } while (result != 0 && errno == EINTR);
    if (result == 0) {
        return;
    }
    if (errno == EDEADLK) {
        throw EQMException(ErrorCode::WouldDeadlock);
    }
    throwFor(errno);
}

void CQMCriticalSection::Leave()
{
    if (::sem_post(semaphore_.get()) != 0) {
        throwFor(errno);
    }
}

} // namespace qm
