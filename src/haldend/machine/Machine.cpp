#include "haldend/machine/Machine.h"

#include <algorithm>
#include <random>

#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

constexpr mode_t forItsOwnerAlone = 0600;
constexpr mode_t readableByEveryone = 0644; ///< of a new file
constexpr bool forceMode = true;            ///< of a file that is there already, too

bool hasFolder(const MachineFolder& folder, const char* file) {
    struct stat status {};
    return ::stat(parentOf(folder.resolved(file)).c_str(), &status) == 0;
}

Failure changedElsewhere(const std::string& evidence) {
    return {
        halden::ErrorCode::changedElsewhere,
        "Another program has changed the machine's settings in the meantime.",
        evidence + " Nothing was written.",
        "Look at the settings as they are now, make your change again if it is still wanted, and apply it."};
}

/// The files whose contents differ, as in "/etc/nsswitch.conf differs".
std::string changedFiles(const MachineFolder& folder, const MachineSnapshot::Fingerprints& before,
                         const MachineSnapshot::Fingerprints& now) {
    std::vector<std::string> changed;
    if (before.nsswitch != now.nsswitch) changed.push_back(folder.pathOf(machineFile::nsswitch));
    if (before.sssd != now.sssd) changed.push_back(folder.pathOf(machineFile::sssd));
    if (before.policies != now.policies) changed.push_back(folder.pathOf(machineFile::policies));
    return commaJoined(changed) + (changed.size() > 1 ? " differ" : " differs");
}

/// A custom list counts while it is used.
bool isOtherLogin(const MachinePolicy& policy, const MachinePolicy& known) {
    const auto &now = policy.authentication, &then = known.authentication;
    if (now.mode != then.mode || policy.disabled != known.disabled) return true;
    return now.mode == PolicyMode::custom && now.custom != then.custom;
}

/// What stays noted while sssd.conf isn't there.
MachineAdditions aboutNsswitchAlone(const MachineAdditions& added) {
    MachineAdditions kept;
    kept.nsswitch = added.nsswitch;
    kept.lines = added.lines;
    return kept;
}

Failure notServable(const std::string& reason, const std::string& recovery) {
    return {halden::ErrorCode::parameter, "SSSD would not serve these directories, so nothing was changed.",
            reason, recovery};
}

Failure generatedFile(const MachineFolder& folder, bool isWanted) {
    const auto path = folder.pathOf(machineFile::nsswitch);
    return {halden::ErrorCode::storage, path + " belongs to authselect and is left as it is.",
            "authselect generates the file from a profile and would write over any other change.",
            std::string("Run \"authselect select ") + (isWanted ? "sssd" : "minimal") +
                "\" as root (\"authselect list\" shows other profiles), then apply again."};
}

} // namespace

Machine::Machine(MachineFolder folder, const platform::PropertyListCodec& codec, util::ProcessLog& log)
    : folder_(std::move(folder)), codec_(codec), log_(log),
      validator_(folder_, log, [this] { stillWaiting(); }),
      sssd_(sssdControlFor(folder_, log, [this] { stillWaiting(); })),
      session_(std::to_string(std::random_device()())) {
    repair();
    snapshot_ = read();
    seen_.fill(snapshot_.fingerprints());
}

std::shared_ptr<const SssdFile> Machine::sssdFileWith(const std::string& text) const {
    return reader_.read(text, snapshot_.sssd().snippets(), folder_.pathOf(machineFile::sssd));
}

void Machine::repair() {
    if (!MachineTransaction::needsRecovery(folder_)) return;
    try {
        const FolderLock lock(folder_);
        MachineTransaction::recover(folder_, lock, log_);
    } catch (const Failure& failure) {
        log_.log("an interrupted change of " + folder_.root() +
                 " could not be finished: " + failure.error().reason);
    }
}

MachineSnapshot Machine::read() {
    auto snapshot = MachineSnapshot::read(folder_, codec_, reader_);
    // Another process may be renaming the files one by one; then they are read once more.
    for (int i = 0; i < 3 && snapshot.stampsAtReading() != MachineSnapshot::stamps(folder_); ++i)
        snapshot = MachineSnapshot::read(folder_, codec_, reader_);
    return snapshot;
}

const MachineSnapshot& Machine::snapshot() {
    if (MachineSnapshot::stamps(folder_) == snapshot_.stampsAtReading()) return snapshot_;
    repair();
    const auto before = snapshot_.fingerprints();
    adopt(read());
    if (snapshot_.fingerprints() != before) signal();
    return snapshot_;
}

void Machine::adopt(MachineSnapshot fresh) {
    if (!fresh.hasSameDirectoriesAs(snapshot_)) ++revision_;
    snapshot_ = std::move(fresh);
}

std::string Machine::directoriesRevision() {
    (void)snapshot();
    return session_ + "-" + std::to_string(revision_);
}

void Machine::change(View view, const std::function<void(MachinePolicy&)>& decide) {
    const auto require = [&] {
        requireUnchangedSinceRead(view);
        if (view == View::authentication) (void)snapshot_.policy(); // what it is written to can be read
    };
    changeLocked(require, [&](MachineDraft& draft) { decide(draft.policy); });
}

void Machine::changeDirectories(std::string_view revision, const std::function<void(MachineDraft&)>& decide) {
    const auto require = [&] {
        requireRevision(revision);
        (void)snapshot_.policy();
    };
    changeLocked(require, decide);
}

void Machine::changeLocked(const std::function<void()>& require,
                           const std::function<void(MachineDraft&)>& decide) {
    MachineSnapshot::Fingerprints before;
    {
        const FolderLock lock(folder_);
        if (MachineTransaction::needsRecovery(folder_)) MachineTransaction::recover(folder_, lock, log_);
        require();
        stillWaiting();
        before = snapshot_.fingerprints();
        MachineDraft draft{snapshot_.storedPolicy(), snapshot_.additions(), snapshot_.sssdText(),
                           snapshot_.knownNodes()};
        decide(draft);
        stillWaiting();
        write(lock, draft);
        stillWaiting();
        adopt(read());
        stillWaiting();
        // A client with a stale view stays stale.
        for (auto& seen : seen_)
            if (seen == before) seen = snapshot_.fingerprints();
    }
    const auto& now = snapshot_.fingerprints();
    if (before.nsswitch != now.nsswitch || before.sssd != now.sssd) tellSssd(before);
    if (before != now) signal();
}

void Machine::tellSssd(const MachineSnapshot::Fingerprints& before) {
    const auto inputs = snapshot_.inputs();
    const bool isChanged = before.sssd != snapshot_.fingerprints().sssd;
    if (!activeDirectories(snapshot_.policy(), inputs).empty())
        sssd_->filesChanged(SssdUse::needed);
    else if (isChanged && !inputs.sssd.trouble().empty())
        sssd_->filesChanged(SssdUse::impossible);
    else
        sssd_->filesChanged(isChanged ? SssdUse::changed : SssdUse::notNeeded);
}

void Machine::requireUnchangedSinceRead(View view) {
    auto fresh = read();
    const auto now = fresh.fingerprints();
    const bool isNews = now != snapshot_.fingerprints();
    adopt(std::move(fresh));
    if (now == seen(view)) return;
    if (isNews) signal();
    throw changedElsewhere(changedFiles(folder_, seen(view), now) + " from what was last read.");
}

void Machine::requireRevision(std::string_view revision) {
    auto fresh = read();
    const bool isNews = fresh.fingerprints() != snapshot_.fingerprints();
    adopt(std::move(fresh));
    if (isNews) signal();
    if (revision != session_ + "-" + std::to_string(revision_))
        throw changedElsewhere("The directories in " + folder_.pathOf(machineFile::sssd) +
                               " differ from what was last read.");
}

std::vector<std::string> Machine::wantedDomains(const MachineDraft& draft) const {
    const auto edited = sssdFileWith(draft.sssd);
    const auto nodes = domainNodes(*edited);
    return domainsFor(draft.policy, {snapshot_.inputs().nsswitch, *edited, nodes, draft.added.formerList});
}

/// The text with the names that the policy wants on the `domains` line. Without any directory on the policy
/// the line stays as it is.
std::string Machine::sssdTextFor(MachineDraft& draft, const std::vector<std::string>& names) const {
    const auto edited = sssdFileWith(draft.sssd);
    const bool isServedAlready = names == edited->servedDomains() && edited->trouble().empty();
    if (names.empty() || isServedAlready) return draft.sssd;
    if (edited->servedDomains().empty() && !draft.added.domains && !draft.added.emptyDomains)
        draft.added.emptyDomains = domainsLine(draft.sssd); // nothing on it can be served
    auto full = fullList(names, fullList(edited->listedDomains(), draft.added.formerList));
    std::erase_if(full, [&](const auto& name) { return !edited->domainNamed(name); });
    draft.added.formerList = full == names ? std::vector<std::string>() : full;
    return textWithDomainsLine(draft.sssd, names, draft.added);
}

/// A last look before anything is written: what SSSD itself reads there is what was meant.
void Machine::requireServed(const std::vector<std::string>& wanted, const PolicyInputs& inputs) const {
    if (wanted.empty()) return;
    const auto snippet = inputs.sssd.snippetDeciding("sssd", "domains");
    if (wanted != inputs.sssd.listedDomains() && !snippet.empty())
        throw notServable(snippet + " sets the option \"domains\", which overrides the one in " +
                              folder_.pathOf(machineFile::sssd) + ".",
                          "Take the line \"domains\" out of " + snippet + ", then apply again.");
    if (!inputs.sssd.trouble().empty())
        throw notServable("With the changed configuration SSSD would not start: " + inputs.sssd.trouble(),
                          "Correct " + folder_.pathOf(machineFile::sssd) + ", then apply again.");
    for (const auto& name : inputs.sssd.servedDomains())
        if (std::ranges::find(wanted, name) == wanted.end())
            throw notServable("The section [domain/" + name +
                                  "] says \"enabled = true\", so SSSD serves it whatever else is listed.",
                              "Take that line out of the section, then apply again.");
    if (wanted != inputs.sssd.servedDomains())
        throw notServable("SSSD would serve " + commaJoined(inputs.sssd.servedDomains()) + " instead of " +
                              commaJoined(wanted) + ".",
                          "Correct " + folder_.pathOf(machineFile::sssd) + ", then apply again.");
}

/// Where the last directory is removed and nothing but `sss` has been edited since the first one came,
/// nsswitch.conf gets the bytes that it had then: some distributions ask SSSD before there is a directory.
std::string Machine::nsswitchTextFor(MachineDraft& draft, const PolicyInputs& inputs) const {
    const bool wanted = !activeDirectories(draft.policy, inputs).empty();
    const bool wasWanted = !activeDirectories(snapshot_.policy(), snapshot_.inputs()).empty();
    const auto& text = inputs.nsswitch.text();
    if (!wanted && !wasWanted && servedNodes(inputs).empty()) return text;
    if (wanted && !wasWanted && inputs.nsswitch.usesSssd()) draft.added.nsswitch = text;
    const auto memory = draft.added.lines;
    auto changed = inputs.nsswitch.textUsingSssd(wanted, draft.added.lines);
    if (wanted || !draft.added.nsswitch || draft.policy.authentication.mode == PolicyMode::localOnly)
        return changed;
    const NsswitchFile former(*std::exchange(draft.added.nsswitch, std::nullopt),
                              folder_.pathOf(machineFile::nsswitch));
    auto now = memory, then = memory;
    const bool isSame = former.textUsingSssd(false, then) == inputs.nsswitch.textUsingSssd(false, now);
    const bool isIdle = servedNodes({former, inputs.sssd, inputs.nodes, inputs.formerList}).empty();
    return isSame && isIdle ? former.text() : changed;
}

/// Where sssd.conf isn't there yet, this service makes it.
void Machine::noteNewSssdFile(MachineAdditions& added) const {
    if (snapshot_.hasSssdFile()) return;
    auto fresh = aboutNsswitchAlone(added);
    fresh.folder = !hasFolder(folder_, machineFile::sssd);
    fresh.file = true;
    fresh.options = added.options;
    added = std::move(fresh);
}

Machine::FileTexts Machine::textsFor(MachineDraft& draft) const {
    const auto before = snapshot_.inputs();
    const auto wanted = wantedDomains(draft);
    FileTexts texts{sssdTextFor(draft, wanted), ""};
    const auto sssd = sssdFileWith(texts.sssd);
    const auto nodes = domainNodes(*sssd);
    const PolicyInputs after{before.nsswitch, *sssd, nodes, draft.added.formerList};
    requireServed(wanted, after);
    stillWaiting();
    texts.nsswitch = nsswitchTextFor(draft, after);
    if (texts.nsswitch != before.nsswitch.text() && before.nsswitch.isGenerated())
        throw generatedFile(folder_, !activeDirectories(draft.policy, after).empty());
    return texts;
}

void Machine::stageSssd(MachineTransaction& transaction, const MachineDraft& draft, const std::string& text,
                        StoredPolicy& stored) {
    const auto& before = snapshot_.inputs().sssd;
    stored.added = draft.added;
    if (draft.added.file && SssdLines(text).isBlank()) {
        if (snapshot_.hasSssdFile()) transaction.remove(machineFile::sssd, draft.added.folder);
        stored.sssd = sssdFingerprint(std::nullopt, before.snippets());
        stored.added = aboutNsswitchAlone(draft.added);
    } else if (text != before.text()) {
        validator_.check(text, before.text());
        stored.sssd = sssdFingerprint(text, before.snippets());
        transaction.replace(machineFile::sssd, text, forItsOwnerAlone, forceMode);
    }
}

void Machine::stageNsswitch(MachineTransaction& transaction, const std::string& text, StoredPolicy& stored) {
    if (text == snapshot_.inputs().nsswitch.text()) return;
    stored.nsswitch = Fingerprint::of(text);
    transaction.replace(machineFile::nsswitch, text, readableByEveryone);
}

// For its owner alone: from the fingerprint of sssd.conf a password in it could be guessed.
bool Machine::stageStore(MachineTransaction& transaction, const StoredPolicy& stored) {
    const auto text = storedText(stored, codec_);
    const bool isNew = Fingerprint::of(text) != snapshot_.fingerprints().policies;
    if (isNew) transaction.replace(machineFile::policies, text, forItsOwnerAlone, forceMode);
    return isNew;
}

void Machine::stageFiles(MachineTransaction& transaction, MachineDraft& draft, StoredPolicy& stored) {
    noteNewSssdFile(draft.added);
    const auto texts = textsFor(draft);
    stageSssd(transaction, draft, texts.sssd, stored);
    stageNsswitch(transaction, texts.nsswitch, stored);
}

/// The files are only looked at where something is changed that they express: whatever they say otherwise is
/// the administrator's. A change of a file changes the store as well, which has its fingerprint.
void Machine::write(const FolderLock& lock, MachineDraft& draft) {
    const bool changesLogin = isOtherLogin(draft.policy, snapshot_.storedPolicy());
    const bool changesDirectories = draft.sssd != snapshot_.sssdText();
    MachineTransaction transaction(folder_, lock);
    auto stored = snapshot_.asStored(draft.policy);
    stored.added = draft.added;
    if (changesLogin || changesDirectories) stageFiles(transaction, draft, stored);
    if (stageStore(transaction, stored)) transaction.commit();
}

void Machine::signal() const {
    if (listener_) listener_();
}

} // namespace corvane::haldend
