#include "haldend/servers/AccountDefaults.h"

#include <algorithm>
#include <array>

#include "haldend/servers/LdapServerRequest.h"

namespace corvane::haldend {
namespace {

struct Default {
    const char* key;
    const char* value;
    const char* override; ///< the option that counts before it
};
constexpr std::array<Default, 2> defaults{
    {{"fallback_homedir", "/home/%u", "override_homedir"}, {"default_shell", "/bin/bash", "override_shell"}}};

std::string titleOf(const std::string& server) { return "domain/" + server; }

bool begins(const LdapServerPut& put) {
    return put.server.computesNumbers && !(put.before && put.before->computesNumbers);
}

/// Only what is known here is put in; the rest of SSSD's signs stays as it is.
std::string filledIn(std::string text, const std::string& user, const std::string& domain) {
    const std::array<std::pair<std::string_view, std::string_view>, 2> known{{{"%u", user}, {"%d", domain}}};
    for (const auto& [sign, value] : known)
        for (auto at = text.find(sign); at != std::string::npos; at = text.find(sign, at + value.size()))
            text.replace(at, sign.size(), value);
    return text;
}

} // namespace

void completeAccountOptions(SssdDomain& options, const SssdFile& sssd) {
    for (const auto& one : defaults)
        for (const auto* key : {one.key, one.override})
            if (const auto common = sssd.responderOption(key); !common.empty())
                options.options.try_emplace(key, common);
}

std::vector<AddedOption> missingAccountDefaults(const SssdFile& sssd, const std::string& server) {
    SssdDomain options;
    if (const auto* known = sssd.domainNamed(server)) options = *known;
    completeAccountOptions(options, sssd);
    std::vector<AddedOption> missing;
    for (const auto& one : defaults)
        if (!options.options.contains(one.key) && !options.options.contains(one.override))
            missing.push_back({server, one.key, one.value});
    return missing;
}

void followInAccountDefaults(SssdLines& lines, const SssdFile& before, const LdapServersRequest& request,
                             std::vector<AddedOption>& added) {
    std::vector<AddedOption> kept;
    for (auto option : added) {
        const auto name = request.nameAfter(option.section);
        if (!name) continue;
        option.section = *name;
        if (lines.value(titleOf(option.section), option.key) != option.value) continue; // it is another's now
        const auto put = std::ranges::find_if(
            request.put, [&](const auto& each) { return each.server.name == option.section; });
        if (put != request.put.end() && !put->server.computesNumbers)
            lines.remove(titleOf(option.section), option.key);
        else
            kept.push_back(std::move(option));
    }
    added = std::move(kept);
    for (const auto& put : request.put) {
        if (!begins(put)) continue;
        for (auto& option : missingAccountDefaults(before, put.before ? put.before->name : put.server.name)) {
            option.section = put.server.name;
            lines.set(titleOf(option.section), option.key, option.value);
            added.push_back(std::move(option));
        }
    }
}

std::string homeAndShell(const SssdDomain& options, const std::string& user, const std::string& home,
                         const std::string& shell) {
    const auto counting = [&](const Default& one, const std::string& own) {
        const auto forced = options.option(one.override);
        return !forced.empty() ? forced : !own.empty() ? own : options.option(one.key);
    };
    const auto folder = filledIn(counting(defaults[0], home), user, options.name);
    const auto program = counting(defaults[1], shell);
    return (folder.empty() ? "no home folder" : "home " + folder) + ", " +
           (program.empty() ? "no shell" : "shell " + program);
}

} // namespace corvane::haldend
