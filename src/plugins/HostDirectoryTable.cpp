#include "directory/CustomCalls.h"
#include "directory/HaldenNodeConfig.h"
#include "plugins/HostObject.h"
#include "plugins/HostQueries.h"
#include "plugins/ReceivedText.h"

namespace corvane::plugins {
namespace {

/// Runs `body` on the session or node behind a reference. What it reports through its error reaches the
/// plug-in.
template <typename Content, typename Body>
CorvaneObject* ask(CorvaneObject* object, const char* what, CorvaneObject** place, Body body) noexcept {
    return shielded<CorvaneObject*>(nullptr, place, [&]() -> CorvaneObject* {
        const auto* content = contentOf<Content>(object);
        if (content == nullptr) {
            report(wrongObject(what), place);
            return nullptr;
        }
        halden::Error error;
        auto* answer = body(*content, error);
        if (error) report(error, place);
        return answer;
    });
}

template <typename Body>
CorvaneObject* askNode(CorvaneObject* node, CorvaneObject** place, Body body) noexcept {
    return ask<HostNode>(node, "node", place, body);
}

util::BytesView bytesFrom(const void* bytes, uint64_t length) {
    return bytes == nullptr ? util::BytesView() : util::BytesView(static_cast<const uint8_t*>(bytes), length);
}

CorvaneObject* replied(std::optional<util::Bytes> reply) {
    return reply ? newReference(util::Data(std::move(*reply))) : nullptr;
}

/// Looks for the records and writes each as its attributes.
CorvaneObject* recordsOf(halden::Node& node, const halden::QueryParameters& parameters,
                         halden::Error& error) {
    const auto query = node.query(parameters, &error);
    const auto records = query ? query->results(false, &error) : std::nullopt;
    if (!records) return nullptr;
    return newReference(arrayOf(*records));
}

void fillQuestions(CorvaneDirectory& table) {
    table.nodeNames = [](CorvaneObject* session, CorvaneObject** place) {
        return ask<HostSession>(session, "session", place, [](const HostSession& s, halden::Error& error) {
            return newReference(s.session->nodeNames(&error));
        });
    };
    table.nodeWithName = [](CorvaneObject* session, const char* name, CorvaneObject** place) {
        return ask<HostSession>(session, "session", place, [&](const HostSession& s, halden::Error& error) {
            return newReference(
                HostNode{s.session->nodeWithName(receivedText::repaired(name), &error), s.codec});
        });
    };
    table.nodeName = [](CorvaneObject* node) {
        return askNode(node, nullptr, [](const HostNode& n, halden::Error&) {
            return newReference(util::String(n.node->name()));
        });
    };
    table.nodeDetails = [](CorvaneObject* node, const char* key, CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            const auto keys = key == nullptr
                                  ? std::nullopt
                                  : std::optional(std::vector<std::string>{receivedText::repaired(key)});
            return newReference(n.node->nodeDetails(keys, &error));
        });
    };
    table.subnodeNames = [](CorvaneObject* node, CorvaneObject** place) {
        return askNode(node, place, [](const HostNode& n, halden::Error& error) {
            return newReference(n.node->subnodeNames(&error));
        });
    };
    table.records = [](CorvaneObject* node, const char* recordType, const char* name,
                       CorvaneObject* attributes, uint32_t maximum, CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            return recordsOf(*n.node, parametersFor(recordType, name, attributes, maximum), error);
        });
    };
    table.standardRecordTypes = [](CorvaneObject* node) {
        return askNode(node, nullptr, [](const HostNode& n, halden::Error&) {
            return newReference(directory::HaldenNodeConfig(n.node).standardRecordTypes());
        });
    };
    table.standardAttributeTypes = [](CorvaneObject* node) {
        return askNode(node, nullptr, [](const HostNode& n, halden::Error&) {
            return newReference(directory::HaldenNodeConfig(n.node).standardAttributeTypes());
        });
    };
}

void fillCalls(CorvaneDirectory& table) {
    table.customCall = [](CorvaneObject* node, int32_t code, const void* request, uint64_t length,
                          CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            return replied(n.node->customCall(code, bytesFrom(request, length), &error));
        });
    };
    table.customCallWithAuthorization = [](CorvaneObject* node, int32_t code, const void* request,
                                           uint64_t length, const uint8_t authorization[32],
                                           CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            const auto bytes = bytesFrom(request, length);
            auto payload = std::optional(util::Bytes(bytes.begin(), bytes.end()));
            const util::WipeGuard guard(*payload);
            return replied(
                directory::customCall(*n.node, code, payload, authorizationFrom(authorization), &error));
        });
    };
    table.customCallSendPropertyList = [](CorvaneObject* node, int32_t code,
                                          const CorvaneObject* propertyList, const uint8_t authorization[32],
                                          CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            return replied(directory::customCallSendPropertyList(
                *n.node, code, valueOf(propertyList), *n.codec, authorizationFrom(authorization), &error));
        });
    };
    table.customCallSendItems = [](CorvaneObject* node, int32_t code, CorvaneObject* items,
                                   CorvaneObject** place) {
        return askNode(node, place, [&](const HostNode& n, halden::Error& error) {
            return replied(
                directory::customCallSendItems(*n.node, code, valueOf(items).as<util::Array>(), &error));
        });
    };
}

} // namespace

const CorvaneDirectory& hostDirectoryTable() {
    static const CorvaneDirectory table = [] {
        CorvaneDirectory made{};
        made.size = sizeof made;
        fillQuestions(made);
        fillCalls(made);
        return made;
    }();
    return table;
}

} // namespace corvane::plugins
