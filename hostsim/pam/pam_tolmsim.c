/*
 * The simulated host's password step for the console's PAM service. It asks
 * for the new password twice, as the real host's password step does, and
 * writes it into the password file ("user:password:service" per line) that
 * pam_matrix checks for authentication.
 *
 *   password required pam_tolmsim.so passdb=/path/to/passdb
 */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <libgen.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <security/pam_ext.h>
#include <security/pam_modules.h>

#define PASSDB_ARG "passdb="

static const char* PassdbPath(int argc, const char** argv)
{
    for (int i = 0; i < argc; ++i)
        if (strncmp(argv[i], PASSDB_ARG, strlen(PASSDB_ARG)) == 0) return argv[i] + strlen(PASSDB_ARG);
    return NULL;
}

static void Scrub(char* text)
{
    if (text) {
        explicit_bzero(text, strlen(text));
        free(text);
    }
}

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

/* Copies `path` into a temporary file beside it with `user`'s password
 * replaced, then renames it over the original, so a reader sees either the
 * old file or the new one. PAM_USER_UNKNOWN when the user has no line. */
static int Rewrite(const char* path, const char* user, const char* password)
{
    FILE* in = fopen(path, "r");
    if (!in) return PAM_AUTHTOK_ERR;

    char* copy = strdup(path);
    char tmp[4096];
    snprintf(tmp, sizeof tmp, "%s/.passdb.XXXXXX", copy ? dirname(copy) : ".");
    free(copy);
    int fd = mkstemp(tmp);
    if (fd < 0) {
        fclose(in);
        return PAM_AUTHTOK_ERR;
    }
    struct stat st;
    if (fstat(fileno(in), &st) == 0) fchmod(fd, st.st_mode & 07777);

    const size_t userLength = strlen(user);
    int found = 0, failed = 0;
    char* line = NULL;
    size_t capacity = 0;
    ssize_t length;
    while (!failed && (length = getline(&line, &capacity, in)) >= 0) {
        if (!found && (size_t)length > userLength && strncmp(line, user, userLength) == 0 &&
            line[userLength] == ':') {
            /* Keep what follows the old password (the service). */
            const char* rest = strchr(line + userLength + 1, ':');
            found = 1;
            failed = WriteAll(fd, line, userLength + 1) || WriteAll(fd, password, strlen(password)) ||
                     (rest ? WriteAll(fd, rest, strlen(rest)) : WriteAll(fd, "\n", 1));
        } else {
            failed = WriteAll(fd, line, (size_t)length);
        }
    }
    if (line) {
        explicit_bzero(line, capacity);
        free(line);
    }
    fclose(in);
    if (fsync(fd) != 0) failed = 1;
    if (close(fd) != 0) failed = 1;
    if (failed || !found || rename(tmp, path) != 0) {
        unlink(tmp);
        return failed || found ? PAM_AUTHTOK_ERR : PAM_USER_UNKNOWN;
    }
    return PAM_SUCCESS;
}

PAM_EXTERN int pam_sm_chauthtok(pam_handle_t* pamh, int flags, int argc, const char** argv)
{
    if (flags & PAM_PRELIM_CHECK) return PAM_SUCCESS;
    if (!(flags & PAM_UPDATE_AUTHTOK)) return PAM_SERVICE_ERR;

    const char* passdb = PassdbPath(argc, argv);
    if (!passdb) {
        pam_syslog(pamh, LOG_ERR, "no passdb= argument");
        return PAM_SERVICE_ERR;
    }
    const char* user = NULL;
    int status = pam_get_user(pamh, &user, NULL);
    if (status != PAM_SUCCESS) return status;
    if (!user || !*user || strchr(user, ':') || strchr(user, '\n')) return PAM_USER_UNKNOWN;

    char* first = NULL;
    char* second = NULL;
    status = pam_prompt(pamh, PAM_PROMPT_ECHO_OFF, &first, "New password: ");
    if (status == PAM_SUCCESS) status = pam_prompt(pamh, PAM_PROMPT_ECHO_OFF, &second, "Retype new password: ");
    if (status != PAM_SUCCESS) {
        status = PAM_AUTHTOK_ERR;
    } else if (!first || !second || !*first || strcmp(first, second) != 0) {
        status = PAM_AUTHTOK_ERR;
    } else if (strchr(first, ':') || strchr(first, '\n')) {
        /* Would break the file's format. */
        status = PAM_AUTHTOK_ERR;
    } else {
        status = Rewrite(passdb, user, first);
    }
    Scrub(first);
    Scrub(second);
    return status;
}
