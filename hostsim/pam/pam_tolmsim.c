/*
 * The simulated host's password step for the console's PAM service. It asks
 * for the new password twice, as the real host's password step does, and
 * writes it into the password file ("user:password:service" per line) that
 * pam_matrix checks for authentication, as every writer of that file does
 * (passdb.h).
 *
 *   password required pam_tolmsim.so passdb=/path/to/passdb
 */
#define _GNU_SOURCE
#include <stdlib.h>
#include <string.h>
#include <syslog.h>

#include "passdb.h"

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
        int changed = PassdbChange(passdb, user, first, NULL, PASSDB_SET);
        status = changed == 0 ? PAM_SUCCESS : changed == 1 ? PAM_USER_UNKNOWN : PAM_AUTHTOK_ERR;
    }
    Scrub(first);
    Scrub(second);
    return status;
}
