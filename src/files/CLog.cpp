#include "files/CLog.h"

#include "format/innerText.h"
#include "qm/CQMOutputFile.h"
#include "qm/EQMException.h"

void CLog::writeLogMessage(std::string message, bool info) const
{
    if (const std::optional<std::string> bytes = format::text::toUtf8(std::move(message))) {
        qm::appendToFile(logFile(), (info ? "" : "ERROR: ") + *bytes + '\n');
    }
}

void CLog::deleteLogFile() const
{
    const qm::NativePath file = logFile();
    if (!qm::CQMFileSystem::FileExists(file)) {
        return;
    }
    try {
        qm::CQMFileSystem::RemoveFile(file);
    } catch (const qm::EQMException&) {
        // A log that stays is no reason to refuse a database, on a read-only medium for one.
        return;
    }
}

std::string CLog::getLogFileName() const
{
    return logDir_.empty() ? std::string(s_logFileName) : format::joinPath(logDir_, s_logFileName);
}

qm::NativePath CLog::logFile() const
{
    return { AT_FDCWD, format::text::toLocale(getLogFileName()) };
}
