#include "oracle/RandomMachines.h"

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace corvane::oracle {
namespace {

using Names = std::vector<std::string>;

/// What comes next, decided by the seed alone.
class Dice {
public:
    explicit Dice(unsigned long seed) : engine_(seed) {}
    /// 0 to `count` - 1, the same on every machine.
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool percent(std::size_t chance) { return below(100) < chance; }
    const std::string& oneOf(const Names& choices) { return choices[below(choices.size())]; }
    template <typename T>
    void shuffle(std::vector<T>& list) {
        for (std::size_t i = list.size(); i > 1; --i)
            std::swap(list[i - 1], list[below(i)]);
    }

private:
    std::mt19937_64 engine_;
};

std::string inSomeCase(Dice& dice, std::string word) {
    const auto way = dice.below(3);
    for (std::size_t i = 0; i < word.size(); ++i)
        word[i] = static_cast<char>(way == 0 || (way == 1 && i == 0) ? std::toupper(word[i])
                                                                     : std::tolower(word[i]));
    return word;
}

std::string reaction(Dice& dice) {
    static const Names words{"SUCCESS=return",    "SUCCESS=continue", "SUCCESS=merge",    "NOTFOUND=return",
                             "NOTFOUND=continue", "UNAVAIL=return",   "UNAVAIL=continue", "TRYAGAIN=continue",
                             "!UNAVAIL=return",   "!SUCCESS=return"};
    auto text = dice.percent(60) ? "SUCCESS=merge" : dice.oneOf(words);
    if (dice.percent(15)) text += " " + dice.oneOf(words);
    if (dice.percent(20)) text = inSomeCase(dice, text);
    return dice.percent(10) ? "[ " + text + " ]" : "[" + text + "]";
}

Names sources(Dice& dice, bool withSss) {
    static const Names others{"systemd", "nis",        "winbind", "ldap",
                              "compat",  "extrausers", "ghost",   "altfiles"};
    Names names;
    if (!dice.percent(5)) names.emplace_back("files");
    for (auto count = dice.below(3); count > 0; --count)
        if (const auto& other = dice.oneOf(others); std::ranges::find(names, other) == names.end())
            names.push_back(other);
    if (withSss)
        names.insert(names.begin() + static_cast<std::ptrdiff_t>(dice.below(names.size() + 1)), "sss");
    if (withSss && dice.percent(4)) names.emplace_back("sss");
    return names;
}

std::string databaseLine(Dice& dice, const std::string& database, bool withSss) {
    std::string text = dice.percent(5) ? "  " + database : database;
    text += dice.percent(6) ? " :" : ":";
    const bool isGlued = dice.percent(5);
    text += isGlued ? "" : dice.percent(20) ? "\t" : "    ";
    bool isFirst = true;
    for (const auto& source : sources(dice, withSss)) {
        if (!isFirst && (!isGlued || text.back() != ']')) text += dice.percent(5) ? "\t " : " ";
        isFirst = false;
        text += source;
        if (dice.percent(database == "group" ? 30 : 12)) text += (isGlued ? "" : " ") + reaction(dice);
        if (dice.percent(1)) text += " " + reaction(dice);
    }
    if (dice.percent(4)) text += "   ";
    if (dice.percent(2)) text += " # more";
    return text;
}

std::string withOddEnds(Dice& dice, std::string text, bool mayLackTheLast) {
    if (dice.percent(5)) {
        std::string crlf;
        for (const char c : text)
            crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
        text = crlf;
    }
    if (mayLackTheLast && dice.percent(5) && !text.empty()) text.pop_back();
    return dice.percent(2) ? "\xef\xbb\xbf" + text : text;
}

std::string nsswitch(Dice& dice) {
    const bool uses = dice.percent(55);
    struct Database {
        const char* name;
        std::size_t there, sss;
    };
    const std::array<Database, 9> databases{{{"passwd", 97, 97},
                                             {"group", 97, 97},
                                             {"shadow", 80, 60},
                                             {"gshadow", 30, 5},
                                             {"initgroups", 12, 70},
                                             {"hosts", 90, 0},
                                             {"netgroup", 60, 60},
                                             {"services", 40, 50},
                                             {"sudoers", 20, 80}}};
    Names lines;
    for (const auto& database : databases)
        if (dice.percent(database.there))
            lines.push_back(databaseLine(dice, database.name, uses && dice.percent(database.sss)));
    if (dice.percent(4)) lines.push_back(databaseLine(dice, dice.percent(50) ? "passwd" : "group", uses));
    if (dice.percent(40)) lines.emplace_back("# names");
    if (dice.percent(30)) lines.emplace_back("");
    if (dice.percent(5))
        lines.emplace_back("# gr\xf6\xdf"
                           "er");
    if (dice.percent(50)) dice.shuffle(lines);
    std::string text;
    for (const auto& line : lines)
        text += line + "\n";
    return withOddEnds(dice, text, true);
}

struct Domain {
    std::string name;
    std::string options;
};

std::vector<Domain> domains(Dice& dice) {
    std::vector<Domain> all{{"staff", "id_provider = ldap\nldap_uri = ldap://ldap.example.com\n"},
                            {"guests", "id_provider = ldap\nldap_uri = ldap://guests.example.com:1389\n"},
                            {"far", "id_provider = ldap\nldap_uri = ldaps://a.far.example, "
                                    "ldaps://b.far.example\ncache_credentials = true\n"},
                            {"corp.example.com", "id_provider = ad\nad_server = dc1.corp.example.com\n"},
                            {"ipa.example.com", "id_provider = ipa\nipa_server = ipa1.ipa.example.com\n"},
                            {"own", "id_provider = files\n"},
                            {"lame", "ldap_uri = ldap://lame.example.com\n"}};
    dice.shuffle(all);
    all.resize(dice.below(4));
    return all;
}

std::string domainList(Dice& dice, const std::vector<Domain>& known) {
    Names names;
    for (const auto& domain : known)
        if (dice.percent(65)) names.push_back(dice.percent(6) ? inSomeCase(dice, domain.name) : domain.name);
    if (dice.percent(4)) names.emplace_back("ghost");
    if (dice.percent(3) && !names.empty()) names.push_back(names.front());
    dice.shuffle(names);
    std::string text = dice.percent(3) ? "," : "";
    for (const auto& name : names)
        text += (text.empty() || text == "," ? "" : dice.oneOf({", ", ",", " , ", ",  "})) +
                (dice.percent(5) ? "\"" + name + "\"" : name);
    return dice.percent(3) ? text + "," : text;
}

std::string title(Dice& dice, const std::string& name) {
    const auto written = dice.percent(5) ? inSomeCase(dice, name) : name;
    return dice.percent(4) ? "[ " + written + " ]\n" : "[" + written + "]\n";
}

std::string section(Dice& dice, const Domain& domain) {
    std::string text = title(dice, "domain/" + domain.name);
    if (dice.percent(20)) text += dice.oneOf({"# people\n", "; people\n", "\n"});
    text += domain.options;
    if (dice.percent(7)) text += dice.oneOf({"enabled = false\n", "enabled = False\n", "enabled = true\n"});
    if (dice.percent(60)) text += "\n";
    if (dice.percent(5))
        text += title(dice, "domain/" + domain.name + "/child") + "use_fully_qualified_names = true\n";
    return text;
}

std::string sssdConf(Dice& dice, const std::vector<Domain>& known) {
    std::string main = title(dice, "sssd");
    if (dice.percent(90)) main += "services = nss, pam\n";
    if (dice.percent(90))
        main += (dice.percent(5) ? "Domains = " : "domains = ") + domainList(dice, known) + "\n";
    if (dice.percent(10)) main += "enable_files_domain = true\n";
    if (dice.percent(60)) main += "\n";
    Names blocks{main};
    for (const auto& domain : known)
        blocks.push_back(section(dice, domain));
    if (dice.percent(25)) blocks.emplace_back("[nss]\nfilter_users = root\n");
    if (dice.percent(20)) dice.shuffle(blocks);
    std::string text = dice.percent(4) ? "debug_level = 2\n" : dice.percent(20) ? "# ours\n" : "";
    for (const auto& block : blocks)
        text += block;
    return withOddEnds(dice, text, true);
}

void addSnippet(Dice& dice, Machine& machine) {
    static const Names contents{"[sssd]\ndomains = staff\n", "[domain/staff]\nenabled = false\n",
                                "[domain/extra]\nid_provider = ldap\nldap_uri = ldap://extra.example.com\n",
                                "[nss]\nfilter_groups = root\n", "# nothing\n"};
    static const Names names{"10-one.conf", "99-last.conf", ".hidden.conf", "backup.conf.old"};
    machine.files["etc/sssd/conf.d/" + dice.oneOf(names)] = {
        dice.oneOf(contents), static_cast<mode_t>(dice.percent(10) ? 0644 : 0600)};
}

std::string escaped(const std::string& content) {
    static const char* const digits = "0123456789abcdef";
    std::string text;
    for (const char c : content) {
        if (c == '\\')
            text += "\\\\";
        else if (c == '\n' || (c >= ' ' && c < 127))
            text += c;
        else
            text += std::string("\\x") + digits[static_cast<unsigned char>(c) / 16] +
                    digits[static_cast<unsigned char>(c) % 16];
    }
    if (text.ends_with('\n')) return text;
    return text.empty() ? text : text + "\\c\n";
}

} // namespace

Machine randomMachine(unsigned long seed) {
    Dice dice(seed);
    Machine machine;
    machine.name = "random-" + std::to_string(seed);
    machine.files = usualAccounts();
    machine.files["etc/nsswitch.conf"] = {nsswitch(dice)};
    const auto known = domains(dice);
    if (!known.empty() || dice.percent(30))
        machine.files["etc/sssd/sssd.conf"] = {sssdConf(dice, known), 0600};
    if (dice.percent(12)) addSnippet(dice, machine);
    return machine;
}

std::string machineText(const Machine& machine) {
    std::string text = "@machine " + machine.name + "\n";
    for (const auto& [path, file] : machine.files)
        if (path == "etc/nsswitch.conf" || path.starts_with("etc/sssd/"))
            text += "@file " + path +
                    (file.mode == 0644 && path.starts_with("etc/sssd/") ? " escaped 0644\n" : " escaped\n") +
                    escaped(file.content);
    return text;
}

} // namespace corvane::oracle
