/* A stand-in for one of the C library's sources of names, compiled once for each source: STANDIN is its name as in
   nsswitch.conf. The test program loads it, and the C library then takes what is loaded. Every name is known, or
   none: standin_answer decides at each question, which is noted through standin_note before. */
#include <errno.h>
#include <grp.h>
#include <nss.h>
#include <pwd.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#define PASTE(a, b, c) a##b##c
#define PASTE_EXPANDED(a, b, c) PASTE(a, b, c)
#define ENTRY(question) PASTE_EXPANDED(_nss_, STANDIN, question)
#define TEXT(name) #name
#define TEXT_EXPANDED(name) TEXT(name)

int standin_answer = NSS_STATUS_NOTFOUND;
void (*standin_note)(const char* name) = NULL;

static enum nss_status answer(int* error) {
    standin_note(TEXT_EXPANDED(STANDIN));
    /* ERANGE would ask for a larger buffer, again and again */
    *error = standin_answer == NSS_STATUS_TRYAGAIN ? EAGAIN : ENOENT;
    return (enum nss_status)standin_answer;
}

enum nss_status ENTRY(_getpwnam_r)(const char* name, struct passwd* user, char* buffer, size_t size, int* error) {
    const enum nss_status status = answer(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    if (size <= strlen(name)) {
        *error = ERANGE;
        return NSS_STATUS_TRYAGAIN;
    }
    char* end = strcpy(buffer, name) + strlen(name);
    *user = (struct passwd){buffer, end, 4000, 4000, end, end, end};
    return status;
}

enum nss_status ENTRY(_getgrnam_r)(const char* name, struct group* group, char* buffer, size_t size, int* error) {
    const enum nss_status status = answer(error);
    if (status != NSS_STATUS_SUCCESS) return status;
    const size_t padding = -(uintptr_t)buffer % sizeof(char*);
    if (size < padding + sizeof(char*) + strlen(name) + 1) {
        *error = ERANGE;
        return NSS_STATUS_TRYAGAIN;
    }
    char** members = (char**)(buffer + padding);
    members[0] = NULL;
    char* text = strcpy((char*)(members + 1), name);
    *group = (struct group){text, text + strlen(text), 4000, members};
    return status;
}

/* One group more, the same from every source; the caller has room for that. */
enum nss_status ENTRY(_initgroups_dyn)(const char* user, gid_t main_group, long* count, long* size, gid_t** groups,
                                       long limit, int* error) {
    (void)user, (void)main_group, (void)limit;
    const enum nss_status status = answer(error);
    if (status == NSS_STATUS_SUCCESS && *count < *size) (*groups)[(*count)++] = 4000;
    return status;
}
