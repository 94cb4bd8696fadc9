#pragma once

#include <memory>
#include <semaphore.h>

namespace qm {

/// A lock on an unnamed semaphore, private to the process and not recursive.
class CQMCriticalSection {
public:
    CQMCriticalSection(); ///< throws EQMException
    CQMCriticalSection(const CQMCriticalSection&) = delete;
    CQMCriticalSection& operator=(const CQMCriticalSection&) = delete;
    virtual ~CQMCriticalSection();

    virtual void Enter(); ///< throws EQMException
    virtual void Leave(); ///< throws EQMException

private:
    std::unique_ptr<sem_t> semaphore_;
};

} // namespace qm
