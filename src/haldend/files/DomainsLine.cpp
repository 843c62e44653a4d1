#include "haldend/files/DomainsLine.h"

#include <algorithm>

#include "haldend/files/SssdFile.h"

namespace corvane::haldend {
namespace {

constexpr std::string_view mainSection = "sssd";
constexpr std::string_view domainsKey = "domains";
constexpr std::string_view servicesKey = "services";
constexpr std::string_view ourServices = "nss, pam";

void addLine(SssdLines& lines, const std::vector<std::string>& names, MachineAdditions& added) {
    if (!lines.hasSection(mainSection)) {
        if (added.file)
            lines.prependSection(mainSection);
        else
            lines.appendSection(mainSection); // a foreign file may begin with a comment about all of it
        added.section = true;
    }
    if (!lines.has(mainSection, servicesKey)) {
        lines.set(mainSection, servicesKey, ourServices);
        added.services = true;
    }
    lines.set(mainSection, domainsKey, commaJoined(names));
    added.domains = true;
}

void takeAway(SssdLines& lines, MachineAdditions& added) {
    if (added.emptyDomains && !added.domains)
        lines.replaceLine(mainSection, domainsKey, *added.emptyDomains);
    else
        lines.remove(mainSection, domainsKey);
    if (added.services && lines.value(mainSection, servicesKey) == ourServices)
        lines.remove(mainSection, servicesKey);
    if (added.section && !lines.hasOptions(mainSection)) lines.removeSection(mainSection);
    added.section = added.services = added.domains = false;
    added.emptyDomains.reset();
}

} // namespace

std::string textWithDomainsLine(const std::string& text, const std::vector<std::string>& names,
                                MachineAdditions& added) {
    SssdLines lines(text);
    if (names.empty())
        takeAway(lines, added);
    else if (!lines.has(mainSection, domainsKey))
        addLine(lines, names, added);
    else if (!std::ranges::equal(domainsIn(lines.value(mainSection, domainsKey)), names, {}, foldedCase,
                                 foldedCase))
        lines.set(mainSection, domainsKey, commaJoined(names));
    return lines.text();
}

std::optional<std::string> domainsLine(const std::string& text) {
    const SssdLines lines(text);
    if (!lines.has(mainSection, domainsKey)) return std::nullopt;
    return lines.line(mainSection, domainsKey);
}

} // namespace corvane::haldend
