#include "files/CLog.h"

#include "files/CFilePath.h"
#include "qm/CQMFileSystem.h"
#include "qm/CQMOutputFile.h"
#include "qm/CQMTranscoder.h"
#include "qm/EQMException.h"

void CLog::writeLogMessage(std::string_view message, bool info) const
{
    std::string line = info ? "" : "ERROR: ";
    try {
        line += qm::CQMTranscoder::TextToUTF8(message);
    } catch (const qm::EQMException&) {
        return;
    }
    line += '\n';
    qm::appendToFile(getLogFileName(), line);
}

void CLog::deleteLogFile() const
{
    const std::string name = getLogFileName();
    if (!qm::CQMFileSystem::FileExists(name)) {
        return;
    }
    try {
        qm::CQMFileSystem::RemoveFile(name);
    } catch (const qm::EQMException&) {
        // A log that stays is no reason to refuse a database, on a read-only medium for one.
        return;
    }
}

std::string CLog::getLogFileName() const
{
    return logDir_.empty() ? std::string(s_logFileName) : joinPath(logDir_, s_logFileName);
}
