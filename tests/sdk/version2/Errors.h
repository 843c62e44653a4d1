#pragma once

/* The codes of failed calls: "code" of the dictionary in an entry's `error`, `CallError::code()` in C++. A
 * service may answer others; show those as they are described. */

enum CorvaneErrorCode {
    CORVANE_ERROR_HOST = -1, /* the host itself failed; the reason says how */
    CORVANE_ERROR_SESSION_LOCAL_ONLY = 1003,
    CORVANE_ERROR_REMOTE_VERSION = 1101,     /* the remote service speaks another version */
    CORVANE_ERROR_REMOTE_SERVICE_OFF = 1102, /* the remote machine doesn't offer its service */
    CORVANE_ERROR_NODE_UNKNOWN = 2000,
    CORVANE_ERROR_NODE_UNREACHABLE = 2100,
    CORVANE_ERROR_RECORD_UNKNOWN = 4001,
    CORVANE_ERROR_NOT_PERMITTED = 4100, /* a right is missing */
    CORVANE_ERROR_PARAMETER = 4200,     /* something in the request is wrong */
    CORVANE_ERROR_ATTRIBUTE_UNKNOWN = 4201,
    CORVANE_ERROR_CHANGED_ELSEWHERE = 4300, /* someone else has changed it in the meantime: read it again */
    CORVANE_ERROR_STORAGE = 4400,           /* it could not be written */
    CORVANE_ERROR_CREDENTIALS = 5000,       /* name or password are wrong */
    CORVANE_ERROR_SERVER_NOT_FOUND = 5201,
    CORVANE_ERROR_CONNECTION_REFUSED = 5203,
    CORVANE_ERROR_CALL_UNKNOWN = 10000 /* the node knows no request with this number */
};
