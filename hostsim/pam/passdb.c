#define _GNU_SOURCE
#include "passdb.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <libgen.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

static int WriteAll(int fd, const char* data, size_t length)
{
    while (length > 0) {
        ssize_t n = write(fd, data, length);
        if (n < 0) {
            if (errno == EINTR) continue;
            return -1;
        }
        data += n;
        length -= (size_t)n;
    }
    return 0;
}

/* Only the lock's holder writes a copy, so any copy found under the lock
 * belongs to a writer that died. */
static void RemoveStaleCopies(const char* dir, const char* prefix)
{
    DIR* d = opendir(dir);
    if (!d) return;
    size_t prefixLength = strlen(prefix);
    for (struct dirent* e; (e = readdir(d)) != NULL;) {
        if (strncmp(e->d_name, prefix, prefixLength) == 0) unlinkat(dirfd(d), e->d_name, 0);
    }
    closedir(d);
}

/* Copies `in` to `fd` with the change applied; returns as PassdbChange. */
static int CopyChanged(FILE* in, int fd, const char* user, const char* password, const char* service,
                       enum PassdbHow how)
{
    const size_t userLength = strlen(user);
    int found = 0, failed = 0;
    char* line = NULL;
    size_t capacity = 0;
    ssize_t length;
    while (!failed && (length = getline(&line, &capacity, in)) >= 0) {
        int mine = !found && (size_t)length > userLength && strncmp(line, user, userLength) == 0 &&
                   line[userLength] == ':';
        found = found || mine;
        if (mine && how == PASSDB_SET) {
            /* Keep what follows the old password (the service). */
            const char* rest = strchr(line + userLength + 1, ':');
            failed = WriteAll(fd, line, userLength + 1) || WriteAll(fd, password, strlen(password)) ||
                     (rest ? WriteAll(fd, rest, strlen(rest)) : WriteAll(fd, "\n", 1));
        } else {
            failed = WriteAll(fd, line, (size_t)length);
            if (!failed && length > 0 && line[length - 1] != '\n') failed = WriteAll(fd, "\n", 1);
        }
    }
    if (line) {
        explicit_bzero(line, capacity);
        free(line);
    }
    if (!failed && !found && how == PASSDB_ADD)
        failed = WriteAll(fd, user, userLength) || WriteAll(fd, ":", 1) ||
                 WriteAll(fd, password, strlen(password)) || WriteAll(fd, ":", 1) ||
                 WriteAll(fd, service, strlen(service)) || WriteAll(fd, "\n", 1);
    if (failed) return -1;
    return !found && how == PASSDB_SET ? 1 : 0;
}

static int ChangeLocked(const char* path, const char* user, const char* password, const char* service,
                        enum PassdbHow how)
{
    char* dirCopy = strdup(path);
    char* baseCopy = strdup(path);
    if (!dirCopy || !baseCopy) {
        free(dirCopy);
        free(baseCopy);
        return -1;
    }
    char prefix[1024];
    char tmp[4096];
    snprintf(prefix, sizeof prefix, "%s.tmp.", basename(baseCopy));
    snprintf(tmp, sizeof tmp, "%s/%sXXXXXX", dirname(dirCopy), prefix);
    RemoveStaleCopies(dirCopy, prefix);
    free(dirCopy);
    free(baseCopy);

    FILE* in = fopen(path, "re");
    if (!in) return -1;
    int fd = mkostemp(tmp, O_CLOEXEC);
    if (fd < 0) {
        fclose(in);
        return -1;
    }
    struct stat st;
    if (fstat(fileno(in), &st) == 0) fchmod(fd, st.st_mode & 07777);
    int result = CopyChanged(in, fd, user, password, service, how);
    fclose(in);
    if (fsync(fd) != 0) result = -1;
    if (close(fd) != 0) result = -1;
    if (result != 0 || rename(tmp, path) != 0) {
        unlink(tmp);
        return result != 0 ? result : -1;
    }
    return 0;
}

int PassdbChange(const char* path, const char* user, const char* password, const char* service,
                 enum PassdbHow how)
{
    char lockPath[4096];
    if (snprintf(lockPath, sizeof lockPath, "%s.lock", path) >= (int)sizeof lockPath) return -1;
    int lock = open(lockPath, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock < 0) return -1;
    while (flock(lock, LOCK_EX) != 0) {
        if (errno != EINTR) {
            close(lock);
            return -1;
        }
    }
    int result = ChangeLocked(path, user, password, service ? service : "", how);
    close(lock);
    return result;
}
