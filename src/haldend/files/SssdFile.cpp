#include "haldend/files/SssdFile.h"

#include <algorithm>
#include <cctype>

#include "haldend/files/IniConfiguration.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

constexpr std::string_view mainSection = "sssd";
constexpr std::string_view responderSection = "nss";
constexpr std::string_view domainPrefix = "domain/";
constexpr std::string_view applicationPrefix = "application/";
constexpr std::string_view providers[] = {"ldap", "ad", "ipa", "files", "proxy"};

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

Failure damaged(const std::string& path, const IniDamage& damage) {
    const auto where = damage.line == 0 ? std::string() : "Line " + std::to_string(damage.line) + ": ";
    return {halden::ErrorCode::storage, path + " is damaged and is left as it is.",
            where + damage.reason + " SSSD doesn't start with this file either.",
            "Repair the line, or put an earlier version of the file back; then try again."};
}

std::string valueIn(const IniSection& section, std::string_view key) {
    for (const auto& option : section.options)
        if (foldedCase(option.key) == key) return option.value;
    return {};
}

bool isUsualCharacter(unsigned char c) {
    return std::isalnum(c) || c == '.' || c == '-' || c == '_' || c == '*';
}

/// True for a title with a sign that separates names in SSSD's own data base: it reads nothing from there on.
bool endsReading(std::string_view title) {
    const bool isQuoted = std::ranges::count(title, '"') == 2 && title.ends_with('"') &&
                          title.find("/\"") != std::string_view::npos;
    return title.find_first_of(",=+;<>") != std::string_view::npos ||
           (!isQuoted && title.find('"') != std::string_view::npos);
}

/// The name in a title like "domain/staff" as it is written; "" when the title is about something else.
std::string nameIn(const std::string& title, std::string_view prefix) {
    if (!foldedTitle(title).starts_with(prefix)) return {};
    return std::string(trimmed(std::string_view(title).substr(title.find('/') + 1)));
}

} // namespace

std::string foldedCase(std::string_view text) {
    std::string folded(text);
    for (auto& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

std::string foldedTitle(std::string_view title) {
    const auto text = foldedCase(trimmed(title));
    const auto slash = text.find('/');
    if (slash == std::string::npos) return text;
    return std::string(trimmed(std::string_view(text).substr(0, slash))) + "/" +
           std::string(trimmed(std::string_view(text).substr(slash + 1)));
}

std::vector<std::string> commaSeparated(std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto comma = text.find(',');
        if (const auto part = trimmed(text.substr(0, comma)); !part.empty()) parts.emplace_back(part);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return parts;
}

std::string commaJoined(const std::vector<std::string>& parts) {
    std::string text;
    for (const auto& part : parts)
        text += (text.empty() ? "" : ", ") + part;
    return text;
}

std::vector<std::string> domainsIn(std::string_view line) {
    auto names = commaSeparated(line);
    for (auto& name : names)
        if (name.size() > 2 && name.starts_with('"') && name.ends_with('"'))
            name = name.substr(1, name.size() - 2);
    return names;
}

SssdDomain::~SssdDomain() {
    if (const auto password = options.find("ldap_default_authtok"); password != options.end())
        util::wipe(password->second);
}

std::string SssdDomain::option(std::string_view key, std::string_view fallback) const {
    const auto found = options.find(key);
    return found == options.end() ? std::string(fallback) : found->second;
}

std::optional<bool> SssdDomain::enabled() const {
    const auto text = foldedCase(option("enabled"));
    if (text == "true") return true;
    if (text == "false") return false;
    return std::nullopt;
}

std::string SssdDomain::obstacle() const {
    if (name.empty() || !std::ranges::all_of(name, isUsualCharacter))
        return "its name has a character that SSSD doesn't take there";
    if (!outside.empty()) return outside;
    if (enabled() == false && !isListedInQuotes) return "it says \"enabled = false\"";
    if (option("ldap_search_base").starts_with('"')) return "its ldap_search_base is in quotation marks";
    const auto provider = option("id_provider");
    if (isApplication && provider.empty()) return {};
    if (provider.empty()) return "it has no id_provider";
    const bool isKnown = std::ranges::find(providers, provider) != std::end(providers);
    return isKnown ? "" : "SSSD knows no id_provider of that name";
}

SssdFile::SssdFile(std::string text, std::vector<SssdSnippet> snippets, std::string path)
    : text_(std::move(text)), snippets_(std::move(snippets)), path_(std::move(path)) {
    if (text_.empty() && snippets_.empty()) {
        trouble_ = "There is no configuration.";
        return;
    }
    try {
        readSections();
    } catch (const IniDamage& damage) {
        util::wipe(text_);
        throw damaged(path_, damage);
    }
    decideServed();
}

void SssdFile::readSections() {
    IniConfiguration configuration(text_);
    for (const auto& snippet : snippets_) {
        try {
            const IniConfiguration added(snippet.text);
            configuration.merge(added);
            noteDeciding(snippet.path, added.sections());
        } catch (const IniDamage&) {
            continue; // SSSD passes over it as well
        }
    }
    for (const auto& section : configuration.sections()) {
        if (readingEnd_.empty() && endsReading(section.title)) readingEnd_ = section.title;
        readSection(section);
    }
    findOrphans();
    readList(line_);
}

void SssdFile::noteDeciding(const std::string& path, const std::vector<IniSection>& sections) {
    for (const auto& section : sections) {
        auto& deciding = deciding_[foldedTitle(section.title)];
        deciding.last = path;
        for (const auto& option : section.options)
            deciding.byKey[foldedCase(option.key)] = path;
    }
}

void SssdFile::readSection(const IniSection& section) {
    const auto title = foldedTitle(section.title);
    if (title == mainSection && readingEnd_.empty()) {
        line_ = valueIn(section, "domains");
        servesFiles_ = foldedCase(valueIn(section, "enable_files_domain")) == "true";
    }
    if (title == responderSection)
        for (const auto& option : section.options)
            responder_.insert_or_assign(foldedCase(option.key), option.value);
    if (title == domainPrefix) trouble_ = "A section [domain/] has no name.";
    const bool isApplication = title.starts_with(applicationPrefix);
    const auto name = nameIn(section.title, isApplication ? applicationPrefix : domainPrefix);
    if (name.empty() || name.find('/') != std::string::npos) return;
    const auto [place, isNew] = places_.try_emplace(foldedCase(name), domains_.size());
    if (isNew) {
        const bool isRead = readingEnd_.empty() || readingEnd_ == section.title;
        const auto outside = isRead ? "" : "SSSD stops reading at [" + readingEnd_ + "]";
        domains_.push_back({name, {}, isApplication, false, outside});
    }
    for (const auto& option : section.options)
        domains_[place->second].options.insert_or_assign(foldedCase(option.key), option.value);
}

void SssdFile::findOrphans() {
    for (auto& domain : domains_)
        if (const auto parent = domain.option("inherit_from");
            domain.isApplication && !parent.empty() && !domainNamed(parent))
            domain.outside = "it inherits from [domain/" + parent + "], which isn't there";
}

void SssdFile::readList(const std::string& line) {
    for (const auto& name : domainsIn(line)) {
        const auto* domain = domainNamed(name);
        listed_.push_back(domain ? domain->name : name);
    }
    const auto folded = foldedCase(line);
    if (folded.find('"') == std::string::npos) return;
    for (auto& domain : domains_)
        domain.isListedInQuotes = folded.find('"' + foldedCase(domain.name) + '"') != std::string::npos;
}

void SssdFile::decideServed() {
    std::map<std::string, int> times; // on the line, by folded name
    for (const auto& name : listed_)
        ++times[foldedCase(name)];
    for (const auto& name : listed_) {
        const bool isRepeated = times[foldedCase(name)] > 1;
        if (isRepeated && trouble_.empty())
            trouble_ = "The line \"domains\" names \"" + name + "\" more than once.";
        const auto* domain = domainNamed(name);
        if (domain && domain->obstacle().empty() && !isRepeated) served_.push_back(domain->name);
    }
    for (const auto& domain : domains_) {
        const bool isListed = times.contains(foldedCase(domain.name));
        if (domain.enabled() == true && !isListed && domain.obstacle().empty())
            served_.push_back(domain.name);
        if (!domain.option("enabled").empty() && !domain.enabled())
            trouble_ = "\"enabled\" in [domain/" + domain.name + "] is neither true nor false.";
    }
    if (served_.empty() && !servesFiles_ && trouble_.empty())
        trouble_ = "No domain that SSSD can serve is listed.";
}

const SssdDomain* SssdFile::domainNamed(std::string_view name) const {
    const auto found = places_.find(foldedCase(name));
    return found == places_.end() ? nullptr : &domains_[found->second];
}

std::string SssdFile::responderOption(std::string_view key) const {
    const auto found = responder_.find(key);
    return found == responder_.end() ? std::string() : found->second;
}

std::string SssdFile::snippetDeciding(std::string_view section, std::string_view key) const {
    const auto found = deciding_.find(foldedTitle(section));
    if (found == deciding_.end()) return {};
    if (key.empty()) return found->second.last;
    const auto option = found->second.byKey.find(foldedCase(key));
    return option == found->second.byKey.end() ? std::string() : option->second;
}

} // namespace corvane::haldend
