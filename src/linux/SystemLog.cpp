#include "linux/SystemLog.h"

#include <sys/stat.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace corvane::linux_ {
namespace {

/// $JOURNAL_STREAM names the journal's end of standard error as DEVICE:INODE. When standard error has been
/// sent elsewhere since, the two differ, and the line belongs there.
bool standardErrorIsTheJournal() {
    const char* stream = std::getenv("JOURNAL_STREAM");
    struct stat status = {};
    if (stream == nullptr || fstat(STDERR_FILENO, &status) != 0) return false;
    return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino) == stream;
}

} // namespace

SystemLog::SystemLog() : toJournal_(standardErrorIsTheJournal()) {}

void SystemLog::log(std::string_view line) {
    const auto length = static_cast<int>(line.size());
    if (toJournal_ && sd_journal_print(LOG_NOTICE, "%.*s", length, line.data()) >= 0) return;
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    char stamp[32] = "";
    if (localtime_r(&now, &local) != nullptr)
        (void)std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
    std::fprintf(stderr, "%s corvane[%d] %.*s\n", stamp, static_cast<int>(getpid()), length, line.data());
}

} // namespace corvane::linux_
