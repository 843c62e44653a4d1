#pragma once

#include <map>

#include "fakes/Journal.h"
#include "platform/AuthorizationView.h"

namespace corvane::fakes {

/// Grants rights as the test says.
class FakeAuthorization final : public platform::Authorization {
public:
    FakeAuthorization(Journal& journal, platform::AuthorizationRef ref) : journal_(journal), ref_(ref) {}
    [[nodiscard]] bool obtainRights(const platform::AuthorizationRights& rights,
                                    std::uint32_t flags) override {
        lastRights = rights;
        journal_.add("authorization.obtainRights " + std::to_string(flags));
        if ((flags & platform::AuthorizationFlag::interactionAllowed) != 0 && grantsWhenAsked) held = true;
        refusalReason_ = held ? "" : "the test says no";
        return held;
    }
    [[nodiscard]] std::string refusalReason() const override { return refusalReason_; }
    void destroyRights() override {
        held = false;
        ++timesDestroyed;
    }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() const override { return ref_; }

    bool held = false;
    bool grantsWhenAsked = true;
    unsigned timesDestroyed = 0;
    platform::AuthorizationRights lastRights;

private:
    Journal& journal_;
    platform::AuthorizationRef ref_;
    std::string refusalReason_;
};

/// The external form of an authorization is its reference in every byte, plus the number of times that its
/// rights were destroyed.
class FakeAuthorizationService final : public platform::AuthorizationService {
public:
    explicit FakeAuthorizationService(Journal& journal) : journal_(journal) {}
    [[nodiscard]] std::shared_ptr<platform::Authorization> createAuthorization() override { return make(); }
    [[nodiscard]] std::shared_ptr<FakeAuthorization> make() {
        auto made = std::make_shared<FakeAuthorization>(journal_, nextRef_++);
        known_[made->authorizationRef()] = made;
        return made;
    }
    [[nodiscard]] std::int32_t makeExternalForm(platform::AuthorizationRef ref,
                                                util::AuthorizationExternalForm& form) override {
        journal_.add("makeExternalForm");
        if (status != 0) return status;
        const auto found = known_.find(ref);
        const auto authorization = found == known_.end() ? nullptr : found->second.lock();
        if (!authorization) return unknownReference;
        form.bytes.fill(static_cast<std::uint8_t>(ref + authorization->timesDestroyed));
        return 0;
    }
    static constexpr std::int32_t unknownReference = -60002;
    std::int32_t status = 0;

private:
    Journal& journal_;
    std::map<platform::AuthorizationRef, std::weak_ptr<FakeAuthorization>> known_;
    platform::AuthorizationRef nextRef_ = 7;
};

/// The lock control. Clicking it does what the real one does.
class FakeAuthorizationView final : public platform::AuthorizationView {
public:
    FakeAuthorizationView(Journal& journal, std::shared_ptr<FakeAuthorization> authorization)
        : authorization_(std::move(authorization)), journal_(journal) {}

    void setDelegate(platform::AuthorizationViewDelegate* delegate) override { delegate_ = delegate; }
    void setAuthorizationRights(const platform::AuthorizationRights& rights) override { rights_ = rights; }
    [[nodiscard]] std::shared_ptr<platform::Authorization> authorization() const override {
        return authorization_;
    }
    [[nodiscard]] platform::AuthorizationViewState authorizationState() const override { return state; }
    void updateStatus() override { journal_.add("authorizationView.updateStatus"); }
    void setHidden(bool hidden) override {
        hidden_ = hidden;
        journal_.add(hidden ? "authorizationView.hide" : "authorizationView.show");
    }
    [[nodiscard]] bool isHidden() const override { return hidden_; }

    /// The user clicks the lock. False when nothing came of it.
    bool click() { return state == platform::AuthorizationViewState::unlocked ? lock() : unlock(); }
    [[nodiscard]] const platform::AuthorizationRights& rights() const { return rights_; }
    [[nodiscard]] platform::AuthorizationViewDelegate& delegate() { return *delegate_; }
    [[nodiscard]] FakeAuthorization& fakeAuthorization() { return *authorization_; }

    platform::AuthorizationViewState state = platform::AuthorizationViewState::locked;

private:
    bool unlock() {
        constexpr auto flags = platform::AuthorizationFlag::interactionAllowed |
                               platform::AuthorizationFlag::extendRights |
                               platform::AuthorizationFlag::preAuthorize;
        if (!authorization_->obtainRights(rights_, flags)) return false;
        state = platform::AuthorizationViewState::unlocked;
        delegate_->authorizationViewDidAuthorize(*this);
        return true;
    }
    bool lock() {
        if (!delegate_->authorizationViewShouldDeauthorize(*this)) return false;
        authorization_->destroyRights();
        state = platform::AuthorizationViewState::locked;
        delegate_->authorizationViewDidDeauthorize(*this);
        return true;
    }

    std::shared_ptr<FakeAuthorization> authorization_;
    Journal& journal_;
    platform::AuthorizationViewDelegate* delegate_ = nullptr;
    platform::AuthorizationRights rights_;
    bool hidden_ = false;
};

} // namespace corvane::fakes
