#pragma once

#include <array>
#include <string>

#include "directory/Authorizer.h"
#include "searchpolicy/SearchPolicy.h"

namespace corvane::searchpolicy {

/// The strip above each policy's list that says what the service refused to save, for as long as it isn't
/// saved. Main thread.
class UnsavedNotices {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// Saves everything, as Apply does.
        virtual void saveChanges() = 0;
        /// Shows the policy as the service has it; what was edited in it is gone.
        virtual void showSavedPolicy(SearchPolicy& policy) = 0;
    };
    struct Outlets {
        toolkit::Notice& notice;
        toolkit::Button& tryAgain;
        toolkit::Button& showSaved;
    };

    UnsavedNotices(SearchPolicy& authentication, Outlets authenticationOutlets, SearchPolicy& contacts,
                   Outlets contactsOutlets, const directory::Authorizer& authorizer,
                   platform::Environment& environment, toolkit::Toolkit& toolkit, Needs& needs);
    UnsavedNotices(const UnsavedNotices&) = delete;
    UnsavedNotices& operator=(const UnsavedNotices&) = delete;

    /// Shows, hides and words both strips as the policies are now.
    void update();
    /// Asks whether to quit, or to lock, although something was refused. True to go on, and without a
    /// question where nothing was.
    [[nodiscard]] bool mayLeave(bool quitting);

private:
    struct Strip {
        SearchPolicy& policy;
        Outlets outlets;
        const char* title; ///< of the policy's pane
    };
    void update(Strip& strip);
    void tryAgain(Strip& strip);
    [[nodiscard]] std::string whatIsUnsaved(const SearchPolicy& policy) const;
    [[nodiscard]] std::string whyAndWhatNow(const halden::Error& refusal) const;
    [[nodiscard]] std::string localized(std::string_view key) const;

    std::array<Strip, 2> strips_;
    const directory::Authorizer& authorizer_;
    platform::Environment& environment_;
    toolkit::Toolkit& toolkit_;
    Needs& needs_;
};

} // namespace corvane::searchpolicy
