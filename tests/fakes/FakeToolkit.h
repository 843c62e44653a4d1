#pragma once

#include "fakes/FakeWindow.h"
#include "toolkit/Toolkit.h"

namespace corvane::fakes {

/// What was said to the user in one alert.
struct ShownAlert {
    std::string message;
    std::string information;
    std::vector<std::string> buttons;
    bool asSheet = false;
    std::string spoken; ///< "" where the information is what is read out
};

class FakeStateCoder final : public toolkit::StateCoder {
public:
    void encodeString(std::string_view key, std::string_view value) override {
        values[std::string(key)] = value;
    }
    [[nodiscard]] std::optional<std::string> decodeString(std::string_view key) const override {
        const auto found = values.find(std::string(key));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    std::map<std::string, std::string> values;
};

class FakeMenuItem final : public toolkit::MenuItem {
public:
    explicit FakeMenuItem(std::string action, std::string title = "") : action_(action), title_(title) {}
    [[nodiscard]] std::string action() const override { return action_; }
    void setTitle(std::string_view title) override { title_ = title; }
    [[nodiscard]] std::string title() const override { return title_; }

private:
    std::string action_;
    std::string title_;
};

class FakeApplication final : public toolkit::Application {
public:
    explicit FakeApplication(Journal& journal) : journal_(journal) {}
    [[nodiscard]] bool isActive() const override { return active; }
    void terminate() override {
        if (!shouldTerminate || shouldTerminate()) journal_.add("application.terminate");
    }
    [[nodiscard]] int runModalForWindow(toolkit::Window& /*window*/) override { return 0; }
    void stopModal(int code) override { journal_.add("application.stopModal " + std::to_string(code)); }
    void beep() override { journal_.add("application.beep"); }
    void orderFrontStandardAboutPanel(const std::map<std::string, std::string>& options) override {
        aboutOptions = options;
        journal_.add("application.aboutPanel");
    }
    void openHelpAnchor(std::string_view anchor, std::string_view book) override {
        journal_.add("application.help " + std::string(book) + " " + std::string(anchor));
    }

    bool active = false;
    /// The application's delegate.
    std::function<bool()> shouldTerminate;
    std::map<std::string, std::string> aboutOptions;

private:
    Journal& journal_;
};

/// Alerts are answered from a list made beforehand (modal ones) or by `answerSheet`.
class FakeToolkit final : public toolkit::Toolkit {
public:
    explicit FakeToolkit(Journal& journal) : application_(journal), journal_(journal) {}

    [[nodiscard]] toolkit::Application& application() override { return application_; }
    [[nodiscard]] std::unique_ptr<toolkit::Alert> makeAlert() override {
        return std::make_unique<FakeAlert>(*this);
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabView> makeTabView(const toolkit::Rect& frame) override {
        madeTabViews.push_back(std::make_shared<FakeTabView>(journal_, "madeTabView"));
        madeTabViews.back()->setFrameForTest(frame);
        return madeTabViews.back();
    }
    [[nodiscard]] std::shared_ptr<toolkit::TabViewItem>
    makeTabViewItem(std::string_view identifier, std::shared_ptr<toolkit::View> view) override {
        return std::make_shared<FakeTabViewItem>(std::string(identifier), std::move(view));
    }
    [[nodiscard]] std::shared_ptr<toolkit::Toolbar> makeToolbar(std::string_view identifier) override {
        return std::make_shared<FakeToolbar>(journal_, std::string(identifier));
    }

    /// The next modal alert gets this answer.
    void willAnswer(int button) { answers_.push_back(button); }
    [[nodiscard]] const std::vector<ShownAlert>& alerts() const { return alerts_; }
    [[nodiscard]] FakeApplication& fakeApplication() { return application_; }
    [[nodiscard]] bool sheetIsOpen() const { return openSheet_ != nullptr; }
    /// The user answers the alert that runs as a sheet.
    void answerSheet(int button) {
        ASSERT_NE(openSheet_, nullptr) << "no alert is open as a sheet";
        openSheet_->answer(button);
    }

    std::vector<std::shared_ptr<FakeTabView>> madeTabViews;

private:
    class FakeAlert final : public toolkit::Alert {
    public:
        explicit FakeAlert(FakeToolkit& toolkit) : toolkit_(toolkit) {}
        ~FakeAlert() override { takeOff(); }
        FakeAlert(const FakeAlert&) = delete;
        FakeAlert& operator=(const FakeAlert&) = delete;

        void setMessageText(std::string_view text) override { shown_.message = text; }
        void setInformativeText(std::string_view text) override { shown_.information = text; }
        void setSpokenText(std::string_view text) override { shown_.spoken = text; }
        void addButton(std::string_view title) override { shown_.buttons.emplace_back(title); }
        [[nodiscard]] int runModal() override {
            toolkit_.alerts_.push_back(shown_);
            toolkit_.journal_.add("alert " + shown_.message);
            if (toolkit_.answers_.empty()) return shown_.buttons.size() == 1 ? 1 : closed;
            const int answer = toolkit_.answers_.front();
            toolkit_.answers_.erase(toolkit_.answers_.begin());
            return answer;
        }
        void beginSheet(toolkit::Window& parent, std::function<void(int)> ended) override {
            shown_.asSheet = true;
            toolkit_.alerts_.push_back(shown_);
            toolkit_.journal_.add("alertSheet " + shown_.message);
            toolkit_.openSheet_ = this;
            parent_ = &static_cast<FakeWindow&>(parent);
            parent_->alertSheetBegan();
            ended_ = std::move(ended);
        }
        void answer(int button) {
            takeOff();
            const auto ended = std::move(ended_);
            if (ended) ended(button); // may destroy this alert
        }

    private:
        void takeOff() {
            if (parent_ == nullptr) return;
            parent_->alertSheetEnded();
            parent_ = nullptr;
            toolkit_.openSheet_ = nullptr;
        }
        FakeToolkit& toolkit_;
        ShownAlert shown_;
        FakeWindow* parent_ = nullptr;
        std::function<void(int)> ended_;
    };

    FakeApplication application_;
    Journal& journal_;
    std::vector<int> answers_;
    std::vector<ShownAlert> alerts_;
    FakeAlert* openSheet_ = nullptr;
};

} // namespace corvane::fakes
