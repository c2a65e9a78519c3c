/*
 * The simulated host's password file ("user:password:service" per line),
 * changed the same way by every writer (the PAM password step, a smart card
 * insert): under an flock on "<passdb>.lock", through a copy renamed over
 * the original, after removing the copies of writers that died mid-write.
 */
#ifndef TOLM_PASSDB_H
#define TOLM_PASSDB_H

#ifdef __cplusplus
extern "C" {
#endif

enum PassdbHow { PASSDB_SET, PASSDB_ADD };

/* PASSDB_SET replaces `user`'s password and keeps the rest of the line;
 * PASSDB_ADD appends "user:password:service" unless `user` has a line.
 * Returns 0 when done, 1 when PASSDB_SET finds no line for `user`, -1 when
 * the file cannot be read or written. */
int PassdbChange(const char* path, const char* user, const char* password, const char* service,
                 enum PassdbHow how);

#ifdef __cplusplus
}
#endif

#endif
