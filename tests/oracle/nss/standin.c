/* A stand-in for one of the C library's sources of names, compiled once for each source: STANDIN is its name as in
   nsswitch.conf, STANDIN_NUMBER tells its numbers from those of the others.

   It writes its name and a newline to the descriptor in ORACLE_LOG each time it is asked, and knows, as NAME:
     the user NAME-user (number and main group STANDIN_NUMBER), with a shadow entry
     the group NAME-group with that user, and its part of the group "shared": the same user
     of alice: the additional group STANDIN_NUMBER + 500
     the netgroup NAME-crew and the service NAME-service
   ORACLE_SSS and ORACLE_OTHERS set how sss and all others answer: "knows" (the default), "nothing" (not found),
   "unavail" or "tryagain".

   compat knows what is in /etc/passwd, /etc/group and /etc/shadow as well, as the real one does. */
#include <errno.h>
#include <grp.h>
#include <gshadow.h>
#include <netdb.h>
#include <nss.h>
#include <pwd.h>
#include <shadow.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define PASTE(a, b, c) a##b##c
#define PASTE_EXPANDED(a, b, c) PASTE(a, b, c)
#define ENTRY(question) PASTE_EXPANDED(_nss_, STANDIN, question)
#define TEXT(name) #name
#define TEXT_EXPANDED(name) TEXT(name)
#define NAME TEXT_EXPANDED(STANDIN)
#define SHARED_NUMBER 7000

typedef enum nss_status Status;

/* The C library's own layout of what setnetgrent and getnetgrent fill in. */
struct netgroup_result {
    enum { triple, nested } type;
    union {
        struct {
            const char *host, *user, *domain;
        } triple;
        const char* group;
    } value;
    char* data;
    size_t size;
    union {
        char* cursor;
        unsigned long position;
    } at;
    int first;
    void *known_groups, *needed_groups, *network_interface;
};

static int netgroup_is_at_start;

static const char* manner(void) {
    const char* said = getenv(strcmp(NAME, "sss") == 0 ? "ORACLE_SSS" : "ORACLE_OTHERS");
    return said ? said : "knows";
}

/* Notes the question. What comes back isn't success when the source is to answer something else than it knows. */
static Status begin(int* error) {
    const char* log = getenv("ORACLE_LOG");
    const char* how = manner();
    if (log && write(atoi(log), NAME "\n", sizeof NAME) < 0) abort();
    *error = ENOENT;
    if (strcmp(how, "unavail") == 0) return NSS_STATUS_UNAVAIL;
    if (strcmp(how, "tryagain") == 0) {
        *error = EAGAIN; /* ERANGE would ask for a larger buffer, again and again */
        return NSS_STATUS_TRYAGAIN;
    }
    return strcmp(how, "nothing") == 0 ? NSS_STATUS_NOTFOUND : NSS_STATUS_SUCCESS;
}

static int reads_files(void) { return strcmp(NAME, "compat") == 0; }

static Status fill_user(struct passwd* user, char* buffer, size_t size, int* error) {
    static const char text[] = NAME "-user\0x\0Known to " NAME "\0/home/" NAME "-user\0/bin/sh";
    if (size < sizeof text) {
        *error = ERANGE;
        return NSS_STATUS_TRYAGAIN;
    }
    memcpy(buffer, text, sizeof text);
    user->pw_name = buffer;
    user->pw_passwd = user->pw_name + strlen(user->pw_name) + 1;
    user->pw_gecos = user->pw_passwd + strlen(user->pw_passwd) + 1;
    user->pw_dir = user->pw_gecos + strlen(user->pw_gecos) + 1;
    user->pw_shell = user->pw_dir + strlen(user->pw_dir) + 1;
    user->pw_uid = user->pw_gid = STANDIN_NUMBER;
    return NSS_STATUS_SUCCESS;
}

static Status user_in_files(const char* name, int64_t number, struct passwd* user, char* buffer, size_t size,
                            int* error) {
    FILE* file = reads_files() ? fopen("/etc/passwd", "re") : NULL;
    struct passwd* found = NULL;
    Status status = NSS_STATUS_NOTFOUND;
    while (file && fgetpwent_r(file, user, buffer, size, &found) == 0)
        if (name ? strcmp(user->pw_name, name) == 0 : user->pw_uid == number) {
            status = NSS_STATUS_SUCCESS;
            break;
        }
    if (file) fclose(file);
    if (status != NSS_STATUS_SUCCESS) *error = ENOENT;
    return status;
}

Status ENTRY(_getpwnam_r)(const char* name, struct passwd* user, char* buffer, size_t size, int* error) {
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (strcmp(name, NAME "-user") == 0) return fill_user(user, buffer, size, error);
    return user_in_files(name, 0, user, buffer, size, error);
}

Status ENTRY(_getpwuid_r)(uid_t number, struct passwd* user, char* buffer, size_t size, int* error) {
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (number == STANDIN_NUMBER) return fill_user(user, buffer, size, error);
    return user_in_files(NULL, number, user, buffer, size, error);
}

/* A group with this source's user as its only member; the list of members has to be aligned. */
static Status fill_group(const char* name, gid_t number, struct group* group, char* buffer, size_t size,
                         int* error) {
    const size_t padding = -(uintptr_t)buffer % sizeof(char*);
    char** members = (char**)(buffer + padding);
    char* text = (char*)(members + 2);
    if (size < padding + 2 * sizeof(char*) + strlen(name) + sizeof NAME + 16) {
        *error = ERANGE;
        return NSS_STATUS_TRYAGAIN;
    }
    group->gr_name = strcpy(text, name);
    group->gr_passwd = strcpy(text + strlen(name) + 1, "x");
    members[0] = strcpy(group->gr_passwd + 2, NAME "-user");
    members[1] = NULL;
    group->gr_mem = members;
    group->gr_gid = number;
    return NSS_STATUS_SUCCESS;
}

static Status group_in_files(const char* name, int64_t number, struct group* group, char* buffer, size_t size,
                             int* error) {
    FILE* file = reads_files() ? fopen("/etc/group", "re") : NULL;
    struct group* found = NULL;
    Status status = NSS_STATUS_NOTFOUND;
    while (file && fgetgrent_r(file, group, buffer, size, &found) == 0)
        if (name ? strcmp(group->gr_name, name) == 0 : group->gr_gid == number) {
            status = NSS_STATUS_SUCCESS;
            break;
        }
    if (file) fclose(file);
    if (status != NSS_STATUS_SUCCESS) *error = ENOENT;
    return status;
}

Status ENTRY(_getgrnam_r)(const char* name, struct group* group, char* buffer, size_t size, int* error) {
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (strcmp(name, "shared") == 0) return fill_group(name, SHARED_NUMBER, group, buffer, size, error);
    if (strcmp(name, NAME "-group") == 0)
        return fill_group(name, STANDIN_NUMBER, group, buffer, size, error);
    return group_in_files(name, 0, group, buffer, size, error);
}

Status ENTRY(_getgrgid_r)(gid_t number, struct group* group, char* buffer, size_t size, int* error) {
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (number == SHARED_NUMBER) return fill_group("shared", number, group, buffer, size, error);
    if (number == STANDIN_NUMBER) return fill_group(NAME "-group", number, group, buffer, size, error);
    return group_in_files(NULL, number, group, buffer, size, error);
}

static Status add_group(gid_t number, long* count, long* size, gid_t** groups, long limit, int* error) {
    if (*count == *size) {
        const long wanted = limit > 0 && *size * 2 > limit ? limit : *size * 2;
        gid_t* larger = wanted > *size ? realloc(*groups, wanted * sizeof(gid_t)) : NULL;
        if (!larger) {
            *error = ENOMEM;
            return NSS_STATUS_TRYAGAIN;
        }
        *groups = larger;
        *size = wanted;
    }
    (*groups)[(*count)++] = number;
    return NSS_STATUS_SUCCESS;
}

static Status groups_in_files(const char* user, gid_t main_group, long* count, long* size, gid_t** groups,
                              long limit, int* error) {
    FILE* file = reads_files() ? fopen("/etc/group", "re") : NULL;
    char buffer[4096];
    struct group group, *found = NULL;
    Status status = NSS_STATUS_NOTFOUND;
    while (file && fgetgrent_r(file, &group, buffer, sizeof buffer, &found) == 0)
        for (char** member = group.gr_mem; *member; ++member)
            if (strcmp(*member, user) == 0 && group.gr_gid != main_group)
                status = add_group(group.gr_gid, count, size, groups, limit, error);
    if (file) fclose(file);
    return status;
}

Status ENTRY(_initgroups_dyn)(const char* user, gid_t main_group, long* count, long* size, gid_t** groups,
                              long limit, int* error) {
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (strcmp(user, "alice") == 0) {
        (void)groups_in_files(user, main_group, count, size, groups, limit, error);
        return add_group(STANDIN_NUMBER + 500, count, size, groups, limit, error);
    }
    if (strcmp(user, NAME "-user") == 0) {
        (void)add_group(STANDIN_NUMBER, count, size, groups, limit, error);
        return add_group(SHARED_NUMBER, count, size, groups, limit, error);
    }
    *error = ENOENT;
    return groups_in_files(user, main_group, count, size, groups, limit, error);
}

Status ENTRY(_getspnam_r)(const char* name, struct spwd* entry, char* buffer, size_t size, int* error) {
    static const char text[] = NAME "-user\0*" NAME;
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (strcmp(name, NAME "-user") == 0 && size >= sizeof text) {
        memset(entry, 0, sizeof *entry);
        entry->sp_namp = memcpy(buffer, text, sizeof text);
        entry->sp_pwdp = buffer + strlen(buffer) + 1;
        return NSS_STATUS_SUCCESS;
    }
    FILE* file = reads_files() ? fopen("/etc/shadow", "re") : NULL;
    struct spwd* found = NULL;
    Status in_file = NSS_STATUS_NOTFOUND;
    while (file && in_file != NSS_STATUS_SUCCESS && fgetspent_r(file, entry, buffer, size, &found) == 0)
        if (strcmp(entry->sp_namp, name) == 0) in_file = NSS_STATUS_SUCCESS;
    if (file) fclose(file);
    if (in_file != NSS_STATUS_SUCCESS) *error = ENOENT;
    return in_file;
}

Status ENTRY(_getsgnam_r)(const char* name, struct sgrp* entry, char* buffer, size_t size, int* error) {
    (void)name, (void)entry, (void)buffer, (void)size;
    const Status status = begin(error);
    return status == NSS_STATUS_SUCCESS ? NSS_STATUS_NOTFOUND : status;
}

Status ENTRY(_setnetgrent)(const char* group, struct netgroup_result* result) {
    int error = 0;
    const Status status = begin(&error);
    (void)result;
    if (status != NSS_STATUS_SUCCESS) return status;
    netgroup_is_at_start = strcmp(group, NAME "-crew") == 0;
    return netgroup_is_at_start ? NSS_STATUS_SUCCESS : NSS_STATUS_NOTFOUND;
}

Status ENTRY(_getnetgrent_r)(struct netgroup_result* result, char* buffer, size_t size, int* error) {
    (void)buffer, (void)size;
    *error = ENOENT;
    if (!netgroup_is_at_start) return NSS_STATUS_RETURN;
    netgroup_is_at_start = 0;
    result->type = triple;
    result->value.triple.host = "";
    result->value.triple.user = NAME "-user";
    result->value.triple.domain = "";
    return NSS_STATUS_SUCCESS;
}

Status ENTRY(_endnetgrent)(struct netgroup_result* result) {
    (void)result;
    netgroup_is_at_start = 0;
    return NSS_STATUS_SUCCESS;
}

Status ENTRY(_getservbyname_r)(const char* name, const char* protocol, struct servent* service, char* buffer,
                               size_t size, int* error) {
    static char* no_aliases[] = {NULL};
    const Status status = begin(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (strcmp(name, NAME "-service") != 0 || size < sizeof NAME + 16) return NSS_STATUS_NOTFOUND;
    service->s_name = strcpy(buffer, name);
    service->s_proto = strcpy(buffer + strlen(name) + 1, protocol ? protocol : "tcp");
    service->s_aliases = no_aliases;
    service->s_port = STANDIN_NUMBER;
    return NSS_STATUS_SUCCESS;
}
