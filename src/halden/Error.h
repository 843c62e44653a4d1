#pragma once

#include <stdexcept>
#include <string>

namespace corvane::halden {

/// What went wrong in a directory operation. Code 0 means that nothing did.
struct Error {
    int code = 0;
    std::string description; ///< what failed, one sentence for people
    std::string reason;      ///< cause and evidence, may be empty
    std::string recovery;    ///< what to try next, may be empty

    explicit operator bool() const { return code != 0; }
    /// Reason and recovery as one paragraph each.
    [[nodiscard]] std::string details() const {
        if (reason.empty()) return recovery;
        return recovery.empty() ? reason : reason + "\n\n" + recovery;
    }
};

/// Codes that callers tell apart. Others are the service's own and only shown.
namespace ErrorCode {
inline constexpr int sessionLocalOnly = 1003;
inline constexpr int remoteVersion = 1101;
inline constexpr int remoteServiceOff = 1102;
inline constexpr int nodeUnknown = 2000;
inline constexpr int nodeUnreachable = 2100;
inline constexpr int recordUnknown = 4001;
inline constexpr int notPermitted = 4100;
inline constexpr int parameter = 4200;
inline constexpr int attributeUnknown = 4201;
inline constexpr int changedElsewhere = 4300;
inline constexpr int storage = 4400;
inline constexpr int credentials = 5000;
inline constexpr int serverNotFound = 5201;
inline constexpr int connectionRefused = 5203;
inline constexpr int callUnknown = 10000;
} // namespace ErrorCode

/// Raised where an operation has no error out-value to report through, or by a framework in trouble.
class Exception : public std::runtime_error {
public:
    explicit Exception(const std::string& reason) : std::runtime_error(reason) {}
    explicit Exception(const Error& error) : std::runtime_error(textOf(error)) {}
    [[nodiscard]] std::string reason() const { return what(); }

private:
    static std::string textOf(const Error& error) {
        const auto details = error.details();
        return details.empty() ? error.description : error.description + "\n\n" + details;
    }
};

} // namespace corvane::halden
