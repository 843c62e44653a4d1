#include "oracle/Scenes.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>

#include "oracle/Reports.h"
#include "oracle/Window.h"
#include "oracle/WorkedMachine.h"

namespace corvane::oracle {
namespace {

using Names = std::vector<std::string>;

constexpr int automatic = 111, local = 222, custom = 333;
constexpr auto newServer = "orchard-oracle";

/// Thrown by a step that the service refused: the scene ends there.
struct Refused {
    std::string text;
};
/// Thrown where a scene has no sense on the machine.
struct NotApplicable {};

std::string textOf(const halden::Error& error, const std::string& folder) {
    std::string text = error.description + " " + error.reason + " " + error.recovery;
    std::ranges::replace(text, '\n', ' ');
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder))
        text.erase(at, folder.size());
    return text;
}

bool isBefore(const std::string& line) { return !line.empty() && (line[0] == ' ' || line[0] == '\t'); }

/// The lines of sssd.conf that a change of policy has to keep: all but the list of domains. Lines that begin
/// with a blank may go on with that list.
Names keptLines(const Files& files) {
    static const std::regex list("^\\s*domains\\s*=", std::regex::icase);
    Names lines;
    for (const auto& line : parts(contentOf(files, "etc/sssd/sssd.conf"), '\n'))
        if (!isBefore(line) && !std::regex_search(line, list)) lines.push_back(line);
    return lines;
}

bool isSubsequence(const Names& few, const Names& many) {
    auto at = many.begin();
    for (const auto& line : few) {
        at = std::find(at, many.end(), line);
        if (at == many.end()) return false;
        ++at;
    }
    return true;
}

/// One scene on one machine: its steps, each followed by a look at everything that has to hold.
class Stage {
public:
    /// What a change is about: the login policy, or the servers.
    enum class Kind { policy, servers };

    Stage(const Machine& machine, const Judge& judge, const std::string& folder)
        : description_(machine), judge_(judge), folder_(folder) {
        writeFiles(machine.files, folder);
        machine_.emplace(folder);
        begin_ = now_ = look();
        halden::Error ignored; // the first look at the policy itself reports it
        beginsEmpty_ = directories(ignored).empty();
    }

    [[nodiscard]] bool isForWindow() const { return description_.isForWindow; }
    [[nodiscard]] const std::string& folder() const { return folder_; }
    /// A folder for what isn't the machine's.
    [[nodiscard]] std::string scratch() const {
        auto path = folder_ + ".scratch";
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    [[nodiscard]] WorkedMachine& machine() { return *machine_; }
    [[nodiscard]] const Complaints& complaints() const { return complaints_; }
    [[nodiscard]] const Files& files() const { return now_.files; }
    [[nodiscard]] const State& begin() const { return begin_; }
    [[nodiscard]] const State& now() const { return now_; }

    Names path() {
        halden::Error error;
        auto names = directories(error);
        if (error) throw Refused{textOf(error, folder_)};
        return names;
    }

    /// What the window shows of a machine that nobody has touched is what the files say.
    void lookAround() {
        const auto shown = path();
        if (begin_.sssd.starts || !asksSss(begin_.names)) add("as found", servedAsShown(shown, begin_));
        (void)machine_->mode();
        (void)machine_->servers();
        takeIn("looking");
        requireBytes("looking", begin_.files);
    }

    /// A change of the login policy, of a connector or of the servers.
    void change(const std::string& what, const std::function<halden::Error()>& call,
                Kind kind = Kind::policy) {
        step(what, call);
        const auto shown = path();
        // Where nothing had to be written, the files are as good or bad as they were.
        if (now_.files == begin_.files && !begin_.sssd.starts) return;
        if (!isAsFound(kind, shown)) add(what, sssWhereItBelongs(shown, begin_, now_));
        if (description_.isBroken) return;
        add(what, sssdStarts(shown, begin_, now_));
        if (now_.sssd.starts) add(what, servedAsShown(shown, now_));
    }

    /// Whether nothing asks sss otherwise than on the machine as it was found, and nothing had to change
    /// that: where SSSD was asked for nothing it still may be after a change that isn't one of the policy.
    [[nodiscard]] bool isAsFound(Kind kind, const Names& shown) const {
        if (now_.files == begin_.files) return true;
        const auto line = [](const State& state) { return contentOf(state.files, "etc/nsswitch.conf"); };
        return kind == Kind::servers && shown.empty() && beginsEmpty_ && line(begin_) == line(now_);
    }

    /// Something that may not touch the machine's files, whatever comes of it.
    void changeElsewhere(const std::string& what, const std::function<halden::Error()>& call) {
        const auto before = now_.files;
        step(what, call);
        requireBytes(what, before);
    }

    void requireBytes(const std::string& what, const Files& wanted) {
        if (const auto text = difference(wanted, now_.files); !text.empty())
            add(what, {"the files aren't what they were before:\n" + text});
    }

    void requirePath(const std::string& what, const Names& wanted) {
        if (const auto shown = path(); shown != wanted) {
            std::string text = "the window shows";
            for (const auto& name : shown)
                text += " " + name;
            text += ", and was to show";
            for (const auto& name : wanted)
                text += " " + name;
            add(what, {text});
        }
    }

    /// Lines of sssd.conf other than the list of domains are still there, in their order.
    void requireLines(const std::string& what) {
        if (!isSubsequence(keptLines(begin_.files), keptLines(now_.files)))
            add(what, {"lines of sssd.conf other than the list of domains have changed:\n" +
                       difference(begin_.files, now_.files)});
    }

    void add(const std::string& what, const Complaints& found) {
        for (const auto& complaint : found)
            if (known_.insert(complaint).second) complaints_.push_back(what + ": " + complaint);
    }

private:
    /// What the window shows. SSSD's own view of the machine's files is no directory, whether it is shown or
    /// not.
    Names directories(halden::Error& error) const {
        auto names = machine_->path(error);
        std::erase_if(names, [](const auto& name) { return name.ends_with("/implicit_files"); });
        return names;
    }

    [[nodiscard]] State look() const {
        const auto files = machine_->files();
        return {files, judge_.names(files), judge_.sssd(files)};
    }

    void step(const std::string& what, const std::function<halden::Error()>& call) {
        const auto before = now_.files;
        const auto error = call();
        takeIn(what);
        if (!error) return;
        requireBytes(what + " (refused)", before);
        if (error.description.empty() || error.description == "No error.")
            add(what, {"it is refused without a reason"});
        throw Refused{textOf(error, folder_)};
    }

    void takeIn(const std::string& what) {
        now_ = look();
        add(what, namesAsBefore(begin_, now_));
        add(what, nothingElseChanged(begin_, now_));
    }

    const Machine& description_;
    const Judge& judge_;
    std::string folder_;
    std::optional<WorkedMachine> machine_;
    State begin_, now_;
    bool beginsEmpty_ = false; ///< no directory was on the policy
    Complaints complaints_;
    std::set<std::string> known_; ///< those, without their steps: what is wrong is named once
};

void playLook(Stage& stage) { stage.lookAround(); }

void playContacts(Stage& stage) {
    auto& machine = stage.machine();
    auto nodes = machine.automaticPath();
    nodes.insert(nodes.begin(), "/Local/Accounts");
    stage.changeElsewhere("contacts: list", [&] { return machine.setContactsList(nodes); });
    stage.changeElsewhere("contacts: custom", [&] { return machine.setContactsMode(custom); });
}

void playAutomatic(Stage& stage) {
    auto& machine = stage.machine();
    const auto wanted = machine.automaticPath();
    stage.change("Automatic", [&] { return machine.setMode(automatic); });
    stage.requirePath("Automatic", wanted);
    stage.requireLines("Automatic");
    const auto files = stage.files();
    stage.change("Automatic once more", [&] { return machine.setMode(automatic); });
    stage.requireBytes("Automatic once more", files);
}

void playLocal(Stage& stage) {
    auto& machine = stage.machine();
    const int before = machine.mode();
    const auto wanted = stage.path();
    stage.change("Local", [&] { return machine.setMode(local); });
    stage.requirePath("Local", {});
    stage.requireLines("Local");
    stage.change("back from Local", [&] { return machine.setMode(before); });
    stage.requirePath("back from Local", wanted);
    stage.requireBytes("back from Local", stage.begin().files);
}

void playAgain(Stage& stage) {
    auto& machine = stage.machine();
    stage.change("Automatic", [&] { return machine.setMode(automatic); });
    const auto files = stage.files();
    stage.change("Local", [&] { return machine.setMode(local); });
    const auto withoutDirectories = stage.files();
    stage.change("Automatic again", [&] { return machine.setMode(automatic); });
    stage.requireBytes("Automatic again", files);
    stage.change("Local again", [&] { return machine.setMode(local); });
    stage.requireBytes("Local again", withoutDirectories);
}

void playCustom(Stage& stage, const Names& wanted) {
    auto& machine = stage.machine();
    stage.change("custom list", [&] { return machine.setCustom(wanted); });
    stage.change("Custom", [&] { return machine.setMode(custom); });
    stage.requirePath("Custom", wanted);
    stage.requireLines("Custom");
}

void playMore(Stage& stage) {
    auto wanted = stage.path();
    for (const auto& node : stage.machine().automaticPath())
        if (std::ranges::find(wanted, node) == wanted.end()) {
            wanted.push_back(node);
            return playCustom(stage, wanted);
        }
    throw NotApplicable{};
}

void playLess(Stage& stage) {
    auto wanted = stage.path();
    if (wanted.empty()) throw NotApplicable{};
    wanted.erase(wanted.begin());
    playCustom(stage, wanted);
}

void playOrder(Stage& stage) {
    auto wanted = stage.path();
    if (wanted.size() < 2) throw NotApplicable{};
    std::ranges::reverse(wanted);
    playCustom(stage, wanted);
}

/// A server comes, is put on the policy, and goes again.
void playServer(Stage& stage) {
    auto& machine = stage.machine();
    const bool isFirst = machine.automaticPath().empty();
    const int before = machine.mode();
    const auto path = stage.path();
    stage.change(
        "server added", [&] { return machine.addServer(newServer, "orchard.example"); },
        Stage::Kind::servers);
    if (machine.nodeOfServer(newServer).empty()) stage.add("server added", {"the service doesn't list it"});
    stage.change("Automatic with the server", [&] { return machine.setMode(automatic); });
    if (!stage.now().sssd.serves(newServer))
        stage.add("Automatic with the server", {"SSSD doesn't serve it"});
    stage.change("the mode before", [&] { return machine.setMode(before); });
    stage.change(
        "server deleted", [&] { return machine.removeServer(newServer); }, Stage::Kind::servers);
    stage.requirePath("server deleted", path);
    if (isFirst) stage.requireBytes("first server deleted", stage.begin().files);
}

/// The last server that the machine had from the start is deleted.
void playDelete(Stage& stage) {
    auto& machine = stage.machine();
    const auto servers = machine.servers();
    if (servers.empty()) throw NotApplicable{};
    auto wanted = stage.path();
    std::erase(wanted, machine.nodeOfServer(servers.back()));
    stage.change(
        "server deleted", [&] { return machine.removeServer(servers.back()); }, Stage::Kind::servers);
    stage.requirePath("server deleted", wanted);
}

void playConnector(Stage& stage) {
    auto& machine = stage.machine();
    const auto path = stage.path();
    auto wanted = path;
    std::erase_if(wanted, [](const auto& node) { return node.starts_with("/LDAP/"); });
    stage.change("LDAP off", [&] { return machine.flipLdap(); });
    stage.requirePath("LDAP off", wanted);
    stage.requireLines("LDAP off");
    stage.change("LDAP on", [&] { return machine.flipLdap(); });
    stage.requirePath("LDAP on", path);
}

/// The same by hand: what is chosen, deleted and applied in the real window, which has to show what is
/// served.
void playWindow(Stage& stage) {
    if (!stage.isForWindow()) throw NotApplicable{};
    Window window(stage.folder(), stage.scratch());
    const auto apply = [&](const std::string& what, const Names& steps) {
        stage.change("window: " + what, [&] { return window.take(steps); });
        stage.requirePath("window: " + what, window.shown());
        stage.requireLines("window: " + what);
    };
    apply("Automatic", {"Automatic", "apply"});
    apply("Local", {"Local", "apply"});
    apply("Automatic again", {"Automatic", "apply"});
    const auto files = stage.files();
    stage.changeElsewhere("window: nothing is done", [&] { return window.take({}); });
    apply("Custom with one less", {"Custom", "less", "apply"});
    apply("Automatic at last", {"Automatic", "apply"});
    stage.requireBytes("window: Automatic at last", files);
}

const std::map<std::string, void (*)(Stage&)>& plays() {
    static const std::map<std::string, void (*)(Stage&)> all{
        {"look", playLook},     {"contacts", playContacts},   {"automatic", playAutomatic},
        {"local", playLocal},   {"again", playAgain},         {"more", playMore},
        {"less", playLess},     {"order", playOrder},         {"server", playServer},
        {"delete", playDelete}, {"connector", playConnector}, {"window", playWindow}};
    return all;
}

/// None when the scene ended by itself.
std::optional<std::string> refusalIn(const std::string& scene, Stage& stage) {
    try {
        plays().at(scene)(stage);
    } catch (const Refused& refused) {
        return refused.text;
    }
    return std::nullopt;
}

void checkRefusal(const std::optional<std::string>& refused, const Refusal* expected, bool acceptRefusals,
                  Stage& stage) {
    if (!refused) {
        if (expected && expected->isRequired)
            stage.add("the whole scene",
                      {"it was to be refused, because of \"" + expected->reason + "\", and wasn't"});
        return;
    }
    if (acceptRefusals) return;
    if (!expected) return stage.add("refused", {*refused});
    if (!std::regex_search(*refused, std::regex(expected->reason, std::regex::icase)))
        stage.add("refused for another reason than \"" + expected->reason + "\"", {*refused});
}

} // namespace

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all{
        {"look", "the window is opened and nothing is done"},
        {"contacts", "a list of contacts of one's own; the login policy isn't touched"},
        {"automatic", "Automatic, twice"},
        {"local", "Local, then the mode of before"},
        {"again", "Automatic, Local, Automatic, Local"},
        {"more", "Custom with one directory more"},
        {"less", "Custom with one directory less"},
        {"order", "Custom with the directories the other way round"},
        {"server", "a server is added, put on the policy, taken off and deleted"},
        {"delete", "a server that was there is deleted"},
        {"connector", "LDAP is switched off and on"},
        {"window",
         "Automatic, Local, Automatic, Custom with one less and Automatic by hand (some machines)"}};
    return all;
}

Outcome play(const std::string& scene, const Machine& machine, const Judge& judge, const std::string& folder,
             bool acceptRefusals) {
    Outcome outcome;
    try {
        Stage stage(machine, judge, folder);
        const auto refused = refusalIn(scene, stage);
        checkRefusal(refused, machine.refusalOf(scene), acceptRefusals, stage);
        for (const auto& complaint : stage.complaints())
            outcome.text += "  " + complaint + "\n";
        if (!outcome.text.empty())
            outcome.kind = Outcome::Kind::failed;
        else if (refused)
            outcome.text = *refused;
    } catch (const NotApplicable&) {
        outcome.kind = Outcome::Kind::notApplicable;
    }
    if (outcome.kind == Outcome::Kind::failed) return outcome;
    std::filesystem::remove_all(folder);
    std::filesystem::remove_all(folder + ".scratch");
    return outcome;
}

} // namespace corvane::oracle
