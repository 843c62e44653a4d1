#pragma once

#include <exception>
#include <string>
#include <utility>

#include "halden/Error.h"

namespace corvane::haldend {

/// A failed operation on its way to the caller's error out-value. Never leaves this library: the nodes and
/// sessions turn it into a `halden::Error`.
class Failure : public std::exception {
public:
    explicit Failure(halden::Error error) : error_(std::move(error)) {}
    Failure(int code, std::string description, std::string reason, std::string recovery)
        : error_{code, std::move(description), std::move(reason), std::move(recovery)} {}
    [[nodiscard]] const halden::Error& error() const { return error_; }
    [[nodiscard]] const char* what() const noexcept override { return error_.description.c_str(); }

private:
    halden::Error error_;
};

/// A system call on a file failed. `what` says what was being done, as in "write"; `number` is errno.
[[nodiscard]] Failure storageFailure(const std::string& what, const std::string& path, int number);

/// Runs `action` and returns its result. On a failure writes it to `error`, when given, and returns
/// `fallback`.
template <typename Result, typename Action>
[[nodiscard]] Result guarded(halden::Error* error, Result fallback, const Action& action) {
    const auto report = [&](const halden::Error& failure) {
        if (error) *error = failure;
        return std::move(fallback);
    };
    try {
        return action();
    } catch (const Failure& failure) {
        return report(failure.error());
    } catch (const halden::Exception&) {
        throw;
    } catch (const std::exception& exception) {
        return report({halden::ErrorCode::storage, "The directory service ran into an unexpected problem.",
                       exception.what(), "Try again; if it stays, restart the program."});
    }
}

} // namespace corvane::haldend
