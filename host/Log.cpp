#include "host/Log.h"

#include "host/HostPaths.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace Tolm::Log {
namespace {

std::string g_ident = "Tolm";

const char* FacilityName(int facility)
{
    switch (facility) {
    case LOG_AUTH: return "auth";
    case LOG_AUTHPRIV: return "authpriv";
    case LOG_DAEMON: return "daemon";
    default: return "user";
    }
}

const char* LevelName(int level)
{
    static const char* const names[] = {"emerg", "alert", "crit", "err",
                                        "warning", "notice", "info", "debug"};
    return names[level & LOG_PRIMASK];
}

// syslog understands %m; vsnprintf does not, so expand it first.
std::string ExpandErrno(const char* fmt, int savedErrno)
{
    std::string out;
    for (const char* p = fmt; *p != '\0'; ++p) {
        if (p[0] == '%' && p[1] == '%') {
            out += "%%";
            ++p;
        } else if (p[0] == '%' && p[1] == 'm') {
            for (const char* e = std::strerror(savedErrno); *e != '\0'; ++e) {
                out += *e;
                if (*e == '%')
                    out += '%';
            }
            ++p;
        } else {
            out += *p;
        }
    }
    return out;
}

void AppendToRootLog(int priority, const std::string& message)
{
    std::string path = HostPath::Resolve("/var/log/syslog.log");
    int fd = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    char stamp[32];
    std::time_t now = std::time(nullptr);
    struct tm tmNow {};
    localtime_r(&now, &tmNow);
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", &tmNow);
    int facility = priority & LOG_FACMASK;
    std::string line = std::string(stamp) + " " + FacilityName(facility == 0 ? LOG_USER : facility) +
                       "." + LevelName(priority) + " " + g_ident + "[" + std::to_string(::getpid()) +
                       "]: " + message + "\n";
    // One write per line, so concurrent writers (console, tools) interleave whole lines.
    ssize_t ignored = ::write(fd, line.data(), line.size());
    (void)ignored;
    ::close(fd);
}

}  // namespace

void Open(const char* ident)
{
    g_ident = ident;
    ::openlog(g_ident.c_str(), 0, LOG_USER);
}

void Write(int priority, const char* fmt, ...)
{
    int savedErrno = errno;
    std::string format = ExpandErrno(fmt, savedErrno);
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, format.c_str(), copy);
    va_end(copy);
    std::string message;
    if (n > 0) {
        message.resize(static_cast<size_t>(n));
        std::vsnprintf(message.data(), message.size() + 1, format.c_str(), args);
    }
    va_end(args);

    ::syslog(priority, "%s", message.c_str());
    if (HostPath::IsSimulated())
        AppendToRootLog(priority, message);
    errno = savedErrno;
}

void Errno(const char* what)
{
    int e = errno;
    Write(LOG_ERR, "%s with errno(%d): %s", what, e, std::strerror(e));
}

}  // namespace Tolm::Log
