#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <variant>

#include "forms/Form.h"
#include "halden/Session.h"
#include "platform/Authorization.h"
#include "platform/PropertyListCodec.h"
#include "sdk/PluginTable.h"
#include "toolkit/Formatter.h"
#include "util/Containers.h"

namespace corvane::plugins {

/// A node together with what writes property lists for it.
struct HostNode {
    std::shared_ptr<halden::Node> node;
    const platform::PropertyListCodec* codec;
};
/// The same for a session, whose nodes inherit it.
struct HostSession {
    std::shared_ptr<halden::Session> session;
    const platform::PropertyListCodec* codec;
};

/// What a plug-in's reference refers to.
using HostObjectContent =
    std::variant<util::Value, HostSession, HostNode, std::shared_ptr<platform::Authorization>,
                 std::shared_ptr<toolkit::Formatter>, std::shared_ptr<forms::Form>>;

} // namespace corvane::plugins

/// A counted reference that a plug-in holds. Made by the makers below, freed by the last `release`.
struct CorvaneObject {
    explicit CorvaneObject(corvane::plugins::HostObjectContent what) : content(std::move(what)) {}
    CorvaneObject(const CorvaneObject&) = delete;
    CorvaneObject& operator=(const CorvaneObject&) = delete;

    corvane::plugins::HostObjectContent content;
    std::uint64_t references = 1;
};

namespace corvane::plugins {

/// A reference for the plug-in to release; null for a null value, pointer or handle.
[[nodiscard]] CorvaneObject* newReference(const util::Value& value);
[[nodiscard]] CorvaneObject* newReference(HostSession session);
[[nodiscard]] CorvaneObject* newReference(HostNode node);
[[nodiscard]] CorvaneObject* newReference(std::shared_ptr<platform::Authorization> authorization);
[[nodiscard]] CorvaneObject* newReference(std::shared_ptr<toolkit::Formatter> formatter);
[[nodiscard]] CorvaneObject* newReference(std::shared_ptr<forms::Form> form);

/// What a reference refers to, when it is of that type; null otherwise, and for a null reference.
template <typename Content>
[[nodiscard]] const Content* contentOf(const CorvaneObject* object) {
    return object == nullptr ? nullptr : std::get_if<Content>(&object->content);
}
/// The value behind a reference; a null value when it is none.
[[nodiscard]] util::Value valueOf(const CorvaneObject* object);

/// Writes `error` for a plug-in to release, when it wants to know.
void report(const halden::Error& error, CorvaneObject** place);
/// About a reference that was passed where one of another kind is wanted: `what`, such as "node".
[[nodiscard]] halden::Error wrongObject(const std::string& what);

/// Whether `part` is `whole` or is somewhere in it. A container that held itself would have no end.
[[nodiscard]] bool holds(const util::Value& whole, const util::Value& part);

/// The tables that are the same for every plug-in; those of forms and tasks are beside what they work on.
[[nodiscard]] const CorvaneObjects& hostObjectsTable();
[[nodiscard]] const CorvaneDirectory& hostDirectoryTable();
[[nodiscard]] const CorvaneFormatters& hostFormattersTable();
[[nodiscard]] const CorvaneSettings& hostSettingsTable();

/// Runs what a plug-in has called. Nothing that the host throws reaches the plug-in: the answer is then
/// `otherwise`, and `error` says what happened.
template <typename Result, typename Body>
Result shielded(Result otherwise, CorvaneObject** error, Body body) noexcept {
    try {
        return body();
    } catch (const std::exception& failure) {
        try {
            report({CORVANE_ERROR_HOST, "The host could not do what the plug-in asked.", failure.what(), ""},
                   error);
        } catch (...) { // out of memory even for the message: the answer alone has to do
            return otherwise;
        }
    } catch (...) {
        return otherwise;
    }
    return otherwise;
}

} // namespace corvane::plugins
