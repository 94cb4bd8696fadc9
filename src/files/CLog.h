#pragma once

#include "format/numbers.h"
#include "format/paths.h"
#include "qm/CQMFileSystem.h"

#include <concepts>
#include <exception>
#include <string>
#include <string_view>

/// The log of one open database: one line a message, in UTF-8. Nothing that goes wrong with it is
/// ever reported.
class CLog {
public:
    static constexpr std::string_view s_logFileName = "qmdb.log";

    /// A part of a message that is a path; it is made fit for the log only when the line is written.
    struct Path {
        std::string_view text;
    };

    CLog(std::string_view logDir, bool logInfo)
        : logDir_(logDir)
        , logInfo_(logInfo)
    {
    }

    /// Writes the parts, one after the other, as an error line. Numbers are written with "%lu".
    template <class... Parts>
    void error(const Parts&... parts) const noexcept
    {
        write(false, parts...);
    }

    /// The same as an informational line, which is written only when the host wants them.
    template <class... Parts>
    void info(const Parts&... parts) const noexcept
    {
        if (logInfo_) {
            write(true, parts...);
        }
    }

    /// A message that cannot be encoded is dropped.
    void writeLogMessage(std::string message, bool info) const;

    void deleteLogFile() const;

private:
    std::string getLogFileName() const;
    qm::NativePath logFile() const;

    /// A line for which there is no memory is lost; what it reports goes on.
    template <class... Parts>
    void write(bool info, const Parts&... parts) const noexcept
    try {
        std::string message;
        (append(message, parts), ...);
        writeLogMessage(std::move(message), info);
    } catch (const std::exception&) {
        return;
    }
    static void append(std::string& message, std::string_view part) { message += part; }
    static void append(std::string& message, Path path) { message += format::shown(path.text); }
    static void append(std::string& message, std::integral auto number)
    {
        message += format::long2wstr(static_cast<unsigned long>(number));
    }

    std::string logDir_;
    bool logInfo_;
};
